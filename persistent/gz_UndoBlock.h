// gz_UndoBlock: a named host undo block that closes on every path out of a scope.
#pragma once

#include "host/HostUndo.h"
#include "host/HostUndoManager.h"

#include <memory>
#include <utility>

/// Opens a block on the current undo manager and closes that same block when it goes out
/// of scope. Records are offered through `add`, which builds nothing unless the manager
/// accepts additions (it refuses while records play back), so playback never pays for
/// records it would throw away.
class gz_UndoBlock
{
public:
    explicit gz_UndoBlock(const char *name)
        : myUndo(HostUndoManager::current()), myId(myUndo.beginUndoBlock(name))
    {
    }
    ~gz_UndoBlock() { myUndo.endUndoBlock(myId); }
    gz_UndoBlock(const gz_UndoBlock &) = delete;
    gz_UndoBlock &operator=(const gz_UndoBlock &) = delete;

    bool accepts() const { return myUndo.willAcceptUndoAddition(); }

    /// Builds a record of type R from `args` and adds it, when additions are accepted.
    template <typename R, typename... Args> void add(Args &&...args)
    {
        if (accepts())
            myUndo.addToUndoBlock(std::make_unique<R>(std::forward<Args>(args)...));
    }

private:
    HostUndoManager &myUndo;
    int myId;
};
