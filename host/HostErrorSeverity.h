// HostErrorSeverity: the severity codes that host operations such as scene saving return.
#pragma once

/// How badly an operation went. Ordered: a larger value is worse, so callers that run
/// several steps can stop at the first result other than HOST_ERR_NONE.
enum HostErrorSeverity
{
    HOST_ERR_NONE = 0,
    HOST_ERR_MESSAGE = 1,
    HOST_ERR_WARNING = 2,
    HOST_ERR_ABORT = 3,
    HOST_ERR_FATAL = 4
};
