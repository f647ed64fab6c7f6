// HostUndoManager: the undo and redo stacks, built from named nestable blocks.
#pragma once

#include "host/HostUndo.h"

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

/// Kinds of undo block. A normal block is one step of its own when outermost; a merging
/// block joins the previous step when that step has the same name (successive drags).
enum HostUndoBlockType
{
    HOST_UNDO_BLOCK_NORMAL = 0,
    HOST_UNDO_BLOCK_MERGE = 1
};

/// Records changes as undo steps. Blocks nest: the outermost block collects every record
/// added inside it into one step named after it; a block in which nothing was recorded
/// leaves no step. Records added outside any block form a step of their own (named
/// "Unnamed"). While records play back, `willAcceptUndoAddition` is false and additions are
/// discarded, so playback never records itself. Owns every record. Making a new step clears
/// the redo stack.
class HostUndoManager
{
public:
    /// What happened inside one step, for inspection: the blocks opened, outermost first,
    /// with their nesting depth (0 outermost).
    struct BlockInfo
    {
        int myDepth;
        std::string myName;
    };

    HostUndoManager();
    ~HostUndoManager();
    HostUndoManager(const HostUndoManager &) = delete;
    HostUndoManager &operator=(const HostUndoManager &) = delete;

    /// The undo manager of the current director.
    static HostUndoManager &current();

    /// Opens a block; returns its id (ids grow and are never reused).
    int beginUndoBlock(const char *name, HostUndoBlockType type = HOST_UNDO_BLOCK_NORMAL);
    /// Closes the innermost block (id -1) or the block of that id together with the blocks
    /// opened inside it. Returns false when no such block is open.
    bool endUndoBlock(int id = -1);
    bool isInBlock() const { return !myOpen.empty(); }
    int getBlockDepth() const { return static_cast<int>(myOpen.size()); }
    /// Id of the innermost open block, or -1.
    int getCurrentBlockId() const;
    /// Number of blocks opened since construction or `clear`.
    int getNumBlocksOpened() const { return myBlocksOpened; }

    /// False while records play back or while the manager is disabled.
    bool willAcceptUndoAddition() const { return !myPlayingBack && myDisableDepth == 0; }
    bool isPlayingBack() const { return myPlayingBack; }
    /// Adds a record to the open step (or makes it a step of its own). When additions are not
    /// accepted the record is destroyed. Returns whether it was kept.
    bool addToUndoBlock(std::unique_ptr<HostUndo> undo);
    bool addToUndoBlock(HostUndo *undo) { return addToUndoBlock(std::unique_ptr<HostUndo>(undo)); }

    /// Stops (and restarts) recording; nests.
    void disable() { ++myDisableDepth; }
    void enable();

    /// Undoes the last step: its records in reverse order. False when there is none or a
    /// block is open.
    bool undo();
    /// Redoes the last undone step: its records in order.
    bool redo();
    int getUndoCount() const { return static_cast<int>(myUndo.size()); }
    int getRedoCount() const { return static_cast<int>(myRedo.size()); }
    /// Name of undo step i (0 the most recent), or empty.
    std::string getUndoName(int i = 0) const;
    std::string getRedoName(int i = 0) const;
    /// Number of records in undo step i (0 the most recent).
    int getUndoRecordCount(int i = 0) const;
    /// Blocks opened in undo step i (0 the most recent).
    std::vector<BlockInfo> getUndoBlocks(int i = 0) const;
    /// Memory used by every record of both stacks.
    std::size_t getMemoryUsage() const;

    /// Forgets every step. Open blocks stay open (their ids remain valid).
    void clear();

private:
    // Block names are kept once each (see intern): a block is opened for every change, and
    // copying its name into the step, the block list and the open list took several
    // allocations per change that the history then kept.
    struct StepBlock
    {
        int myDepth;
        const std::string *myName;
    };
    struct Step
    {
        const std::string *myName = nullptr;
        HostUndoBlockType myType = HOST_UNDO_BLOCK_NORMAL;
        std::vector<std::unique_ptr<HostUndo>> myRecords;
        std::vector<StepBlock> myBlocks;
    };
    struct OpenBlock
    {
        int myId;
        const std::string *myName;
    };

    /// The one copy of a block name; equal names give the same pointer.
    const std::string *intern(const char *name);

    void closeStep();
    void playBack(Step &step, bool undo);

    std::vector<std::unique_ptr<Step>> myUndo;
    std::vector<std::unique_ptr<Step>> myRedo;
    std::unique_ptr<Step> myPending;         ///< the step collected by the open blocks
    std::unordered_set<std::string> myNames; ///< every block name used so far
    std::vector<OpenBlock> myOpen;
    int myNextId = 0;
    int myBlocksOpened = 0;
    int myDisableDepth = 0;
    bool myPlayingBack = false;
    bool myMergeable = false; ///< the last step may take a merging block of the same name
};
