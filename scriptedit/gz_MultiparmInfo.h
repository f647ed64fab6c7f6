// gz_MultiparmInfo: the process-wide multiparm instance information and its lock.
#pragma once

#include <map>
#include <string>

class HostNode;

/// Instance counts of a node's multiparms, by multiparm name, kept process-wide while
/// templates are turned into definitions. Clearing is refused while anyone holds the lock,
/// so a conversion nested inside another cannot pull the table from under it.
class gz_MultiparmInfo
{
public:
    static void build(HostNode *node);
    static const std::map<std::string, int> &get();
    /// Empties the table unless it is locked; returns whether it was emptied.
    static bool clear();
    static void lock();
    static void release();
    static int lockCount();
};
