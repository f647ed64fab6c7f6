// HostRenameRepair: rewrites the channel paths that a node rename would break.
#pragma once

#include "host/HostParmType.h"

#include <string>
#include <vector>

class HostNode;

/// The repair of ch() and chs() paths that lead into a node about to be renamed (to the node
/// itself or to a node under it), in any parameter of the scene that the reference index
/// names. Built before the rename, while the old paths still resolve; `apply` after it
/// writes the new texts, each parameter saved for undo first, so that the caller's undo
/// block restores the old texts.
///
/// Only the path components that step into the renamed node by its name change: "../geo1/tx"
/// becomes "../geo2/tx", "/obj/geo1/box1/ty" becomes "/obj/geo2/box1/ty", and a path that
/// reaches the node without naming it ("../tx" from a child) stays as written. Multiparm
/// link records (whose texts are such paths) are rewritten by the same rule.
class HostRenameRepair
{
public:
    HostRenameRepair(HostNode &node, const std::string &newName);

    /// Number of components that will be rewritten.
    int getNumRewrites() const { return static_cast<int>(myRewrites.size()); }
    /// Writes the new texts at `time`. A component the user may not modify keeps its text
    /// and adds a line "PATH/CHANNEL: cannot update the reference to OLDPATH" to `warnings`.
    void apply(double time, std::vector<std::string> &warnings) const;

    /// The text with every literal ch()/chs() path of a node at `from` that steps into
    /// `node` by its name rewritten to step in by `newName`; `text` when none does.
    static std::string rewriteText(const std::string &text, const HostNode &from,
                                   const HostNode &node, const std::string &newName);

private:
    struct Rewrite
    {
        int myNodeId;
        std::string myParm;
        int myComponent;
        std::string myText;
        HostStringMeaning myMeaning;
    };

    struct LinkRewrite
    {
        int myNodeId;
        std::string myPattern;
        std::string myText;
    };

    HostNode *myNode;
    std::string myOldPath;
    std::vector<Rewrite> myRewrites;
    std::vector<LinkRewrite> myLinkRewrites; // multiparm link records, by the same rule
};
