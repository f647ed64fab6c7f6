// ShellPersistentCommands: dragging and reading persistent handles by name, and clearing
// them with the scene.
#include "shell/ShellPersistent.h"

#include "shell/Shell.h"
#include "shell/ShellParmAccess.h"

#include "host/HostDirector.h"
#include "host/HostExpression.h"
#include "host/HostUndoManager.h"
#include "link/GZ_OpHandleLink.h"
#include "persistent/GZ_Manager.h"
#include "persistent/GZ_OHLPersistent.h"

#include <ostream>
#include <vector>

namespace
{
/// The live handle a viewer would show for a persistent handle: a copy of its nodes and
/// bindings, through which values are read and written as a drag does.
class gz_DragLink : public GZ_OpHandleLink
{
public:
    using GZ_OpHandleLink::beginDistributedUndoBlock;
    using GZ_OpHandleLink::endDistributedUndoBlock;
    using GZ_OpHandleLink::getParmValue;
    using GZ_OpHandleLink::GZ_OpHandleLink;
    using GZ_OpHandleLink::setParmValue;
};

/// Presents a persistent handle through a drag link for the lifetime of the object.
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

    gz_DragLink &link() { return myLink; }

private:
    GZ_OHLPersistent &myHandle;
    gz_DragLink myLink;
};

/// The persistent handle named by -P and the index of the handle parameter in argument 1;
/// reports and returns false when either is missing.
bool findTarget(HostCommandArgs &args, int least, int most, GZ_OHLPersistent *&handle, int &index)
{
    if (!args.found('P') || args.argc() < least || (most >= 0 && args.argc() > most))
    {
        args.err() << args.commandName() << ": wrong number of arguments\n";
        args.showUsage();
        return false;
    }
    GZ_Manager *manager = GZgetManager();
    handle = manager->getGZ(manager->getGZIndex(args.argp('P')));
    if (!handle)
    {
        args.err() << args.commandName() << ": Unknown handle: " << args.argp('P') << "\n";
        return false;
    }
    index = handle->findHandleParmIndex(args.argv(1));
    if (index < 0)
    {
        args.err() << args.commandName() << ": Unknown handle parameter: " << args.arg(1) << "\n";
        return false;
    }
    return true;
}

void cmdHandleDrag(Shell &, HostCommandArgs &args)
{
    GZ_OHLPersistent *handle = nullptr;
    int index = -1;
    if (!findTarget(args, 3, -1, handle, index))
        return;
    std::vector<double> values;
    for (int a = 2; a < args.argc(); ++a)
    {
        double value = 0.0;
        if (!ShellParmAccess::parseNumber(args.arg(a), value))
        {
            args.err() << "handledrag: not a number: " << args.arg(a) << "\n";
            return;
        }
        values.push_back(value);
    }
    gz_Presenter presenter(*handle);
    gz_DragLink &link = presenter.link();
    // One drag through every value, one undo step.
    link.beginDistributedUndoBlock("handledrag");
    bool written = true;
    for (double value : values)
        written = link.setParmValue(index, value, /*set_key=*/args.found('k')) && written;
    link.endDistributedUndoBlock();
    if (!written)
        args.err() << "handledrag: cannot drive " << args.arg(1) << " of " << handle->getName()
                   << "\n";
}

void cmdHandleGet(Shell &, HostCommandArgs &args)
{
    GZ_OHLPersistent *handle = nullptr;
    int index = -1;
    if (!findTarget(args, 2, 2, handle, index))
        return;
    gz_Presenter presenter(*handle);
    double value = 0.0;
    if (!presenter.link().getParmValue(index, value, 0.0))
    {
        args.err() << "handleget: " << args.arg(1) << " of " << handle->getName()
                   << " is not bound\n";
        return;
    }
    args.out() << HostExpression::formatNumber(value) << "\n";
}
} // namespace

void ShellPersistent::clear(HostDirector &director)
{
    GZ_Manager *manager = GZgetManager();
    HostUndoManager &undo = director.getUndoManager();
    undo.disable();
    manager->removeAllGZs();
    for (int i = manager->getNumGroups() - 1; i >= 0; --i)
        manager->removeGroup(manager->getGroup(i));
    undo.enable();
}

std::vector<ShellCommand> ShellPersistent::commands()
{
    return {
        {"handledrag", "kP:", "handledrag [-k] -P NAME HANDLEPARM VALUE...", &cmdHandleDrag},
        {"handleget", "P:", "handleget -P NAME HANDLEPARM", &cmdHandleGet},
    };
}
