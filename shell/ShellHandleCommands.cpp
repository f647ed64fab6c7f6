// ShellHandleCommands: handledrag and handleget, driving handles from the command line as a
// viewer drag would, either the handle a node's operator type binds or a persistent handle.
#include "shell/Shell.h"
#include "shell/ShellCommand.h"
#include "shell/ShellCommandSupport.h"
#include "shell/ShellHandle.h"
#include "shell/ShellParmAccess.h"

#include "host/HostNode.h"
#include "persistent/GZ_Manager.h"
#include "persistent/GZ_OHLPersistent.h"

#include <cstdio>
#include <memory>
#include <ostream>
#include <vector>

namespace
{
/// Presents a persistent handle through a live handle for the lifetime of the object: the
/// copy of its nodes and bindings through which a viewer reads and writes it.
class gz_Presenter
{
public:
    explicit gz_Presenter(GZ_OHLPersistent &handle) : myHandle(handle), myLink(handle.getTemplate())
    {
        myLink.setEqual(handle);
        myHandle.setGZOwner(&myLink);
    }
    ~gz_Presenter() { myHandle.setGZOwner(nullptr); }
    gz_Presenter(const gz_Presenter &) = delete;
    gz_Presenter &operator=(const gz_Presenter &) = delete;

    ShellHandle &link() { return myLink; }

private:
    GZ_OHLPersistent &myHandle;
    ShellHandle myLink;
};

/// A handle being driven by one command: a node's bound handle, built for the command and
/// detached after it (its settings go back to the tables once it was used), or a persistent
/// handle presented for the command.
class gz_Target
{
public:
    /// From "-P NAME" or "NODEPATH DESCRIPTION"; false after reporting what is missing.
    bool find(Shell &shell, const HostCommandArgs &args)
    {
        if (args.found('P'))
            return findPersistent(args);
        HostNode *node = shellFindNode(shell, args, args.arg(1));
        if (!node)
            return false;
        myBound = ShellHandle::create(*node, args.arg(2), args.commandName(), args.err());
        myName = args.arg(2) + " of " + node->getFullPath();
        return myBound != nullptr;
    }

    /// Puts a handle that was used back: its settings are remembered as a tool's would be.
    void finishUse()
    {
        if (!myBound)
            return;
        myBound->saveSettingsToAppropriateLocation();
        myBound->detachAll();
    }

    ShellHandle &link() { return myBound ? *myBound : myPresenter->link(); }
    /// How messages name the handle.
    const std::string &name() const { return myName; }
    /// Where the handle parameters start among the positional arguments.
    static int firstParmArg(const HostCommandArgs &args) { return args.found('P') ? 1 : 3; }

    /// The index of handle parameter `word`, or -1 after reporting it unknown.
    int parmIndex(const HostCommandArgs &args, const std::string &word)
    {
        const int index = link().findHandleParmIndex(word.c_str());
        if (index < 0)
            args.err() << args.commandName() << ": Unknown handle parameter: " << word << "\n";
        return index;
    }

private:
    bool findPersistent(const HostCommandArgs &args)
    {
        GZ_Manager *manager = GZgetManager();
        GZ_OHLPersistent *handle = manager->getGZ(manager->getGZIndex(args.argp('P')));
        if (!handle)
        {
            args.err() << args.commandName() << ": Unknown handle: " << args.argp('P') << "\n";
            return false;
        }
        myPresenter = std::make_unique<gz_Presenter>(*handle);
        myName = handle->getName();
        return true;
    }

    std::unique_ptr<ShellHandle> myBound;
    std::unique_ptr<gz_Presenter> myPresenter;
    std::string myName;
};

/// One handle parameter and the values a drag moves it through.
struct gz_Move
{
    int index;
    std::string parm;
    std::vector<double> values;
};

bool parseValue(const HostCommandArgs &args, const std::string &word, double &value)
{
    if (ShellParmAccess::parseNumber(word, value))
        return true;
    args.err() << args.commandName() << ": not a number: " << word << "\n";
    return false;
}

/// The moves of a drag: "HANDLEPARM VALUE..." for a persistent handle, "HANDLEPARM VALUE"
/// pairs for a bound one. Everything is checked before anything is written.
bool parseMoves(const HostCommandArgs &args, gz_Target &target, std::vector<gz_Move> &moves)
{
    const bool persistent = args.found('P');
    for (int a = gz_Target::firstParmArg(args); a < args.argc(); a += 2)
    {
        gz_Move move{target.parmIndex(args, args.arg(a)), args.arg(a), {}};
        if (move.index < 0)
            return false;
        const int last = persistent ? args.argc() - 1 : a + 1;
        for (int v = a + 1; v <= last; ++v)
        {
            double value = 0.0;
            if (!parseValue(args, args.arg(v), value))
                return false;
            move.values.push_back(value);
        }
        moves.push_back(std::move(move));
        if (persistent)
            break;
    }
    return true;
}

void cmdHandleDrag(Shell &shell, HostCommandArgs &args)
{
    gz_Target target;
    std::vector<gz_Move> moves;
    if (!target.find(shell, args) || !parseMoves(args, target, moves))
        return;
    ShellHandle &link = target.link();
    // The whole drag is one undo step, however many values and parameters it moves.
    link.beginDistributedUndoBlock("handledrag");
    for (const gz_Move &move : moves)
    {
        bool written = true;
        for (double value : move.values)
            written = link.setParmValue(move.index, value, /*set_key=*/args.found('k')) && written;
        if (!written)
            args.err() << "handledrag: cannot drive " << move.parm << " of " << target.name()
                       << "\n";
    }
    link.endDistributedUndoBlock();
    target.finishUse();
}

void cmdHandleGet(Shell &shell, HostCommandArgs &args)
{
    const int count = args.found('P') ? 2 : 4;
    gz_Target target;
    if (!target.find(shell, args))
        return;
    const std::string &parm = args.arg(count - 1);
    const int index = target.parmIndex(args, parm);
    if (index < 0)
        return;
    double value = 0.0;
    if (!target.link().getParmValue(index, value, 0.0))
    {
        args.err() << "handleget: " << parm << " of " << target.name() << " is not bound\n";
        return;
    }
    char text[64];
    std::snprintf(text, sizeof(text), "%g", value);
    args.out() << text << "\n";
}
} // namespace

std::vector<ShellCommand> shellHandleCommands()
{
    return {
        {"handledrag", "kP:",
         "handledrag [-k] NODEPATH DESCRIPTION HANDLEPARM VALUE [HANDLEPARM VALUE]... | "
         "handledrag [-k] -P NAME HANDLEPARM VALUE...",
         &cmdHandleDrag, true,
         "Drags the handle that the node's operator type binds under DESCRIPTION (see ombindinfo), "
         "as a viewer tool would.",
         "-k  set a key at the current time on animatable parameters\n-P NAME  drag the persistent "
         "handle NAME instead",
         // NODEPATH DESCRIPTION and whole HANDLEPARM VALUE pairs; with -P, HANDLEPARM VALUE...
         5, -1, 2, 'P', 3, -1},
        {"handleget",
         "P:", "handleget NODEPATH DESCRIPTION HANDLEPARM | handleget -P NAME HANDLEPARM",
         &cmdHandleGet, true, "Writes the value of a handle parameter as the handle reads it.",
         "-P NAME  read the persistent handle NAME instead", 4, 4, 1, 'P', 2, 2},
    };
}
