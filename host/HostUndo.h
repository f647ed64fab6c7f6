// HostUndo: one undo record.
#pragma once

#include <cstddef>

/// One undoable change. Records are created before the change they record, handed to the
/// `HostUndoManager` (which owns them from then on) and played back with undo() and redo().
/// Records must find their objects again by name or id, never by a kept pointer.
class HostUndo
{
public:
    HostUndo() = default;
    HostUndo(const HostUndo &) = delete;
    HostUndo &operator=(const HostUndo &) = delete;
    virtual ~HostUndo();

    virtual void undo() = 0;
    virtual void redo() = 0;

    /// Whether the record still makes sense; invalid records are skipped on playback.
    virtual bool isValid() const { return true; }
    virtual bool isUndoNeeded() const { return true; }
    virtual bool isRedoNeeded() const { return true; }
    /// Whether the record is a block marker rather than a change.
    virtual bool isUndoBlock() const { return false; }
    /// Bytes the record holds, for the undo memory budget.
    virtual std::size_t getMemoryUsage() const { return myMemoryUsage; }

protected:
    void setMemoryUsage(std::size_t bytes) { myMemoryUsage = bytes; }

private:
    std::size_t myMemoryUsage = sizeof(HostUndo);
};
