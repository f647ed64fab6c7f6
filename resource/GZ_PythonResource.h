// GZ_PythonResource: the vocabulary shared with the host's scripting layer for scripted
// handles and states, as far as the resource manager's interface needs it.
#pragma once

#include <string>

/// Types shared by scripted handles and states. A namespace rather than a class so that
/// the scripting side can add its own members (menus, callbacks, registration records) in
/// its own headers, and so that the resource manager can name the templates without
/// depending on them.
namespace GZ_PythonResource
{

/// Result of the unregister and unbind operations. Only the codes the library itself
/// returns are named; the scripting layer may return others.
enum Status : int
{
    STATUS_SUCCESS = 0,
    STATUS_WARNING = 1,
    STATUS_ERROR = 2,
    /// No scripting layer is installed to carry out the request.
    STATUS_UNSUPPORTED = 12
};

/// Result of the registration-status query.
enum RegisterStatus : int
{
    NOT_REGISTERED = 0,
    REGISTERED = 1
};

enum ResourceType : int
{
    RESOURCE_HANDLE = 0,
    RESOURCE_STATE = 1
};

/// An event about a scripted resource, broadcast through fireResourceEvent.
struct EventMessage
{
    enum Type : int
    {
        EVENT_REGISTERED = 0,
        EVENT_UNREGISTERED = 1,
        EVENT_RELOADED = 2
    };
    struct Data
    {
        std::string name;
    };
};

} // namespace GZ_PythonResource

namespace GZ_PythonHandle
{
class Template;
}

namespace GZ_PythonState
{
class Template;
}
