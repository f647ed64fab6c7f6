// ShellChannelCommands: gzsh's channel commands — keys, channels, copies, scopes — and the
// expression and key lines of scene files.
#include "shell/Shell.h"
#include "shell/ShellChannels.h"
#include "shell/ShellCommand.h"
#include "shell/ShellCommandSupport.h"
#include "shell/ShellParmAccess.h"
#include "shell/ShellScene.h"

#include "host/HostChannelManager.h"
#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParm.h"

#include <algorithm>
#include <functional>
#include <ostream>

namespace
{

/// The components a command names: a whole parameter or one channel of it.
struct Target
{
    HostNode *myNode = nullptr;
    HostParm *myParm = nullptr;
    int myFirst = 0;
    int myCount = 0;
};

bool findTarget(Shell &shell, const HostCommandArgs &args, int pathArg, Target &target)
{
    target.myNode = shellFindNode(shell, args, args.arg(pathArg));
    if (!target.myNode)
        return false;
    const std::string &name = args.arg(pathArg + 1);
    target.myParm = ShellParmAccess::resolve(*target.myNode, name, target.myFirst, target.myCount);
    if (!target.myParm || target.myCount < 1)
    {
        args.err() << args.commandName() << ": " << target.myNode->getFullPath()
                   << " has no parameter or channel " << name << "\n";
        return false;
    }
    if (!target.myParm->getType().isNumeric())
    {
        args.err() << args.commandName() << ": " << name << " does not hold numbers\n";
        return false;
    }
    return true;
}

/// Finds "NODEPATH/CHANNEL".
bool findChannelPath(Shell &shell, const HostCommandArgs &args, const std::string &path,
                     HostNode *&node, HostParm *&parm, int &k)
{
    if (shell.director().getRoot()->resolveChannel(path, node, parm, k))
        return true;
    args.err() << args.commandName() << ": no channel " << path << "\n";
    return false;
}

bool checkModifiable(const HostCommandArgs &args, const HostNode &node, const HostParm &parm, int k)
{
    if (node.canModifyFromUI(parm, k))
        return true;
    args.err() << args.commandName() << ": cannot change " << parm.getChannelName(k) << " of "
               << node.getFullPath() << " (locked or not writable)\n";
    return false;
}

/// Saves the parameter for undo, announces the change, applies it, and notifies.
void change(HostNode &node, HostParm &parm, const std::function<void()> &apply)
{
    node.saveParmForUndo(parm);
    node.parmChanging(parm);
    apply();
    node.parmChanged(parm);
}

bool parseTime(const HostCommandArgs &args, int i, double &time)
{
    if (ShellParmAccess::parseNumber(args.arg(i), time))
        return true;
    args.err() << args.commandName() << ": not a number: " << args.arg(i) << "\n";
    return false;
}

// chkey PATH CHANNEL [TIME [VALUE]]
void cmdChKey(Shell &shell, HostCommandArgs &args)
{
    Target t;
    if (!findTarget(shell, args, 1, t))
        return;
    double time = shell.director().getTime();
    double value = 0.0;
    if (args.argc() > 3 && !parseTime(args, 3, time))
        return;
    const bool hasValue = args.argc() > 4;
    if (hasValue && !parseTime(args, 4, value))
        return;
    if (hasValue && t.myCount != 1)
    {
        args.err() << "chkey: a value needs a single channel\n";
        return;
    }
    for (int k = t.myFirst; k < t.myFirst + t.myCount; ++k)
    {
        if (!checkModifiable(args, *t.myNode, *t.myParm, k))
            return;
    }
    ShellUndoBlock block(shell, args);
    change(*t.myNode, *t.myParm,
           [&]()
           {
               for (int k = t.myFirst; k < t.myFirst + t.myCount; ++k)
               {
                   if (hasValue)
                       t.myParm->setKey(k, time, value);
                   else
                       t.myParm->setKey(k, time);
               }
           });
}

// chkeyrm PATH CHANNEL [TIME]
void cmdChKeyRm(Shell &shell, HostCommandArgs &args)
{
    Target t;
    if (!findTarget(shell, args, 1, t))
        return;
    double time = shell.director().getTime();
    if (args.argc() > 3 && !parseTime(args, 3, time))
        return;
    bool any = false;
    for (int k = t.myFirst; k < t.myFirst + t.myCount; ++k)
    {
        any = any || t.myParm->isKeyAt(k, time);
        if (t.myParm->isKeyAt(k, time) && !checkModifiable(args, *t.myNode, *t.myParm, k))
            return;
    }
    if (!any)
    {
        args.err() << "chkeyrm: " << args.arg(2) << " of " << t.myNode->getFullPath()
                   << " has no key at " << ShellScene::formatNumber(time) << "\n";
        return;
    }
    ShellUndoBlock block(shell, args);
    change(*t.myNode, *t.myParm,
           [&]()
           {
               for (int k = t.myFirst; k < t.myFirst + t.myCount; ++k)
               {
                   // Removing the last key removes the channel; its value stays.
                   const HostChannel *channel = t.myParm->getChannel(k);
                   if (channel && channel->getNumKeys() == 1 && channel->isKeyAt(time))
                       t.myParm->destroyChannel(k, time);
                   else
                       t.myParm->removeKey(k, time);
               }
           });
}

// chkeyls PATH CHANNEL: "TIME VALUE" per key of each named channel.
void cmdChKeyLs(Shell &shell, HostCommandArgs &args)
{
    Target t;
    if (!findTarget(shell, args, 1, t))
        return;
    for (int k = t.myFirst; k < t.myFirst + t.myCount; ++k)
    {
        const HostChannel *channel = t.myParm->getChannel(k);
        if (!channel)
            continue;
        if (t.myCount > 1)
            args.out() << t.myParm->getChannelName(k) << ":\n";
        for (const HostChannelKey &key : channel->getKeys())
        {
            args.out() << ShellScene::formatNumber(key.myTime) << " "
                       << ShellScene::formatNumber(key.myValue) << "\n";
        }
    }
}

// chrm PATH CHANNEL...: the channels go; their values at the current time stay.
void cmdChRm(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = shellFindNode(shell, args, args.arg(1));
    if (!node)
        return;
    ShellUndoBlock block(shell, args);
    const double time = shell.director().getTime();
    for (int i = 2; i < args.argc(); ++i)
    {
        int first = 0, count = 0;
        HostParm *parm = ShellParmAccess::resolve(*node, args.arg(i), first, count);
        if (!parm)
        {
            args.err() << "chrm: " << node->getFullPath() << " has no parameter or channel "
                       << args.arg(i) << "\n";
            continue;
        }
        bool animated = false, allowed = true;
        for (int k = first; k < first + count; ++k)
        {
            animated = animated || parm->hasChannel(k);
            allowed = allowed && (!parm->hasChannel(k) || node->canModifyFromUI(*parm, k));
        }
        if (!animated)
        {
            args.err() << "chrm: " << args.arg(i) << " of " << node->getFullPath()
                       << " has no channel\n";
            continue;
        }
        if (!allowed)
        {
            args.err() << "chrm: cannot change " << args.arg(i) << " of " << node->getFullPath()
                       << " (locked or not writable)\n";
            continue;
        }
        change(*node, *parm,
               [&]()
               {
                   for (int k = first; k < first + count; ++k)
                       parm->destroyChannel(k, time);
               });
    }
}

// chcp SRCPATH/CHANNEL DSTPATH/CHANNEL: the destination takes the source's animation (its
// channel, else its expression, else its value).
void cmdChCp(Shell &shell, HostCommandArgs &args)
{
    HostNode *srcNode = nullptr, *dstNode = nullptr;
    HostParm *src = nullptr, *dst = nullptr;
    int sk = -1, dk = -1;
    if (!findChannelPath(shell, args, args.arg(1), srcNode, src, sk) ||
        !findChannelPath(shell, args, args.arg(2), dstNode, dst, dk))
        return;
    if (!src->getType().isNumeric() || !dst->getType().isNumeric())
    {
        args.err() << "chcp: both channels must hold numbers\n";
        return;
    }
    if (!checkModifiable(args, *dstNode, *dst, dk))
        return;
    ShellUndoBlock block(shell, args);
    const double time = shell.director().getTime();
    change(*dstNode, *dst,
           [&]()
           {
               if (src->hasChannel(sk))
                   dst->copyChannel(dk, *src, sk);
               else if (src->hasExpression(sk))
                   dst->setExpression(dk, src->getExpression(sk), src->getStringMeaning(sk));
               else
                   dst->setValue(dk, time, src->getValue(sk), /*setKey=*/false,
                                 /*propagate=*/false);
           });
}

// chrename NODEPATH/OLD NEW: channel NEW of the same node takes OLD's value, expression and
// channel; OLD keeps its value at the current time as a constant.
void cmdChRename(Shell &shell, HostCommandArgs &args)
{
    HostNode *node = nullptr;
    HostParm *from = nullptr;
    int fk = -1;
    if (!findChannelPath(shell, args, args.arg(1), node, from, fk))
        return;
    HostNode *same = nullptr;
    HostParm *to = nullptr;
    int tk = -1;
    if (!node->resolveChannel(args.arg(2), same, to, tk))
    {
        args.err() << "chrename: " << node->getFullPath() << " has no channel " << args.arg(2)
                   << "\n";
        return;
    }
    if (to == from && tk == fk)
        return;
    if (!checkModifiable(args, *node, *from, fk) || !checkModifiable(args, *node, *to, tk))
        return;
    ShellUndoBlock block(shell, args);
    const double time = shell.director().getTime();
    change(*node, *to,
           [&]()
           {
               if (from->hasChannel(fk))
                   to->copyChannel(tk, *from, fk);
               else if (from->hasExpression(fk))
                   to->setExpression(tk, from->getExpression(fk), from->getStringMeaning(fk));
               else
                   to->setValue(tk, time, from->getValue(fk), /*setKey=*/false,
                                /*propagate=*/false);
           });
    change(*node, *from,
           [&]()
           {
               const double value = from->evalFloat(fk, time);
               from->destroyChannel(fk, time);
               from->setValue(fk, time, value, /*setKey=*/false, /*propagate=*/false);
           });
}

// chscope [-w] [-a] [PATTERN...]: "+path" adds, "-path" removes, a plain path replaces the
// scope (the first plain pattern clears it). A pattern is NODEPATH/CHANNEL[,CHANNEL...].
// Without -a only channels that are animated are scoped. Without patterns, lists the scope,
// sorted.
void cmdChScope(Shell &shell, HostCommandArgs &args)
{
    HostChannelManager &manager = HostChannelManager::get();
    if (args.argc() == 1)
    {
        std::vector<std::string> paths = manager.getScopedChannels();
        std::sort(paths.begin(), paths.end());
        for (const std::string &path : paths)
            args.out() << path << "\n";
        return;
    }
    bool all = args.found('a');
    bool cleared = false;
    for (int i = 1; i < args.argc(); ++i)
    {
        std::string pattern = args.arg(i);
        // Generated commands repeat the flags between patterns.
        if (pattern == "-a" || pattern == "-w")
        {
            all = all || pattern == "-a";
            continue;
        }
        char mode = '=';
        if (!pattern.empty() && (pattern[0] == '+' || pattern[0] == '-'))
        {
            mode = pattern[0];
            pattern.erase(0, 1);
        }
        const size_t slash = pattern.rfind('/');
        HostNode *node = slash == std::string::npos
                             ? nullptr
                             : shell.director().findNode(pattern.substr(0, slash));
        if (!node)
        {
            args.err() << "chscope: no node in " << args.arg(i) << "\n";
            continue;
        }
        if (mode == '=' && !cleared)
        {
            manager.clearScope();
            cleared = true;
        }
        const std::string list = pattern.substr(slash + 1);
        size_t start = 0;
        while (start <= list.size())
        {
            size_t comma = list.find(',', start);
            if (comma == std::string::npos)
                comma = list.size();
            const std::string name = list.substr(start, comma - start);
            start = comma + 1;
            HostNode *owner = nullptr;
            HostParm *parm = nullptr;
            int k = -1;
            if (!node->resolveChannel(name, owner, parm, k))
            {
                args.err() << "chscope: " << node->getFullPath() << " has no channel " << name
                           << "\n";
                continue;
            }
            const std::string path = owner->getFullPath() + "/" + parm->getChannelName(k);
            if (mode == '-')
                manager.removeFromScope(path);
            else if (all || parm->hasChannel(k))
                manager.addToScope(path);
        }
    }
}

// chopscope [PATH...]: remembers the motion-channel paths; without paths lists them.
void cmdChopScope(Shell &, HostCommandArgs &args)
{
    HostChannelManager &manager = HostChannelManager::get();
    if (args.argc() == 1)
    {
        for (const std::string &path : manager.getMotionScope())
            args.out() << path << "\n";
        return;
    }
    manager.setMotionScope(std::vector<std::string>(args.args().begin() + 1, args.args().end()));
}
} // namespace

bool ShellChannels::setExpressions(HostNode &node, const std::string &name,
                                   const std::vector<std::string> &texts,
                                   HostStringMeaning language, std::string &error)
{
    int first = 0;
    HostParm *parm = ShellParmAccess::resolveForWrite(node, name, texts.size(), first, error);
    if (!parm || !ShellParmAccess::canModify(node, *parm, first, texts.size(), error))
        return false;
    change(node, *parm,
           [&]()
           {
               for (size_t i = 0; i < texts.size(); ++i)
                   parm->setExpression(first + static_cast<int>(i), texts[i], language);
           });
    return true;
}

void ShellChannels::writeAnimation(std::ostream &os, const std::string &path, const HostParm &parm)
{
    const std::string quotedPath = HostCommandManager::protectString(path);
    for (int k = 0; k < parm.getVectorSize(); ++k)
    {
        const std::string channel = HostCommandManager::protectString(parm.getChannelName(k));
        if (const HostChannel *keys = parm.getChannel(k))
        {
            for (const HostChannelKey &key : keys->getKeys())
            {
                os << "chkey " << quotedPath << " " << channel << " "
                   << ShellScene::formatNumber(key.myTime) << " "
                   << ShellScene::formatNumber(key.myValue) << "\n";
            }
            continue;
        }
        if (!parm.hasExpression(k))
            continue;
        os << "parmset " << (parm.getStringMeaning(k) == HOST_STRING_SCRIPT ? "-p " : "-e ")
           << quotedPath << " " << channel << " "
           << HostCommandManager::protectString(parm.getExpression(k)) << "\n";
    }
}

std::vector<ShellCommand> shellChannelCommands()
{
    return {
        {"chkey", "", "chkey PATH CHANNEL [TIME [VALUE]]", &cmdChKey, true,
         "Sets a key on a channel, or on every component of a parameter, at TIME (default the "
         "current time).",
         "", 3, 5},
        {"chkeyrm", "", "chkeyrm PATH CHANNEL [TIME]", &cmdChKeyRm, true,
         "Removes the key at TIME (default the current time); an error when there is none.", "", 3,
         4},
        {"chkeyls", "", "chkeyls PATH CHANNEL", &cmdChKeyLs, true,
         "Lists the keys, one TIME VALUE line each; a whole parameter lists each animated "
         "component under a NAME: line.",
         "", 3, 3},
        {"chrm", "", "chrm PATH CHANNEL...", &cmdChRm, true,
         "Removes channels; each component keeps its value at the current time as its constant.",
         "", 3, -1},
        {"chcp", "", "chcp NODEPATH/CHANNEL NODEPATH/CHANNEL", &cmdChCp, true,
         "Gives the second channel the first one's animation.", "", 3, 3},
        {"chrename", "", "chrename NODEPATH/CHANNEL NEWCHANNEL", &cmdChRename, true,
         "Moves a channel's animation (keys or expression) to another channel of the same node; "
         "the old channel keeps its current value as a constant.",
         "", 3, 3},
        {"chscope", "wa", "chscope [-w] [-a] [[+|-]NODEPATH/CHANNEL[,CHANNEL...]...]", &cmdChScope,
         true, "Sets the channel scope.",
         "-a  add channels that are not animated too\n-w  open the channel editor (no effect in "
         "gzsh)"},
        {"chopscope", "", "chopscope [PATH...]", &cmdChopScope, true,
         "Remembers the motion-channel paths given; without paths lists them."},
    };
}
