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
    /// Returns the record (owned by the undo manager), or null.
    template <typename R, typename... Args> R *add(Args &&...args)
    {
        if (!accepts())
            return nullptr;
        auto record = std::make_unique<R>(std::forward<Args>(args)...);
        R *kept = record.get();
        return myUndo.addToUndoBlock(std::move(record)) ? kept : nullptr;
    }

private:
    HostUndoManager &myUndo;
    int myId;
};
