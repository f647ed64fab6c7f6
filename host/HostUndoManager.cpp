// HostUndoManager: blocks, steps, playback.
#include "host/HostUndoManager.h"

#include "host/HostDirector.h"

#include <algorithm>

namespace
{
const char *const theUnnamedStep = "Unnamed";
}

HostUndoManager::HostUndoManager() = default;
HostUndoManager::~HostUndoManager() = default;

HostUndoManager &HostUndoManager::current()
{
    return HostDirector::instance()->getUndoManager();
}

int HostUndoManager::beginUndoBlock(const char *name, HostUndoBlockType type)
{
    const int id = myNextId++;
    ++myBlocksOpened;
    const std::string *block_name = intern(name);
    if (myOpen.empty())
    {
        myPending = std::make_unique<Step>();
        myPending->myName = block_name;
        myPending->myType = type;
    }
    myPending->myBlocks.push_back({static_cast<int>(myOpen.size()), block_name});
    myOpen.push_back({id, block_name});
    return id;
}

bool HostUndoManager::endUndoBlock(int id)
{
    if (myOpen.empty())
        return false;
    if (id < 0)
        myOpen.pop_back();
    else
    {
        auto it = std::find_if(myOpen.begin(), myOpen.end(),
                               [id](const OpenBlock &b) { return b.myId == id; });
        if (it == myOpen.end())
            return false;
        myOpen.erase(it, myOpen.end());
    }
    if (myOpen.empty())
        closeStep();
    return true;
}

int HostUndoManager::getCurrentBlockId() const
{
    return myOpen.empty() ? -1 : myOpen.back().myId;
}

void HostUndoManager::closeStep()
{
    std::unique_ptr<Step> step = std::move(myPending);
    if (!step || step->myRecords.empty())
        return;
    if (step->myType == HOST_UNDO_BLOCK_MERGE && myMergeable && !myUndo.empty() &&
        myUndo.back()->myType == HOST_UNDO_BLOCK_MERGE && myUndo.back()->myName == step->myName)
    {
        Step &last = *myUndo.back();
        for (auto &record : step->myRecords)
            last.myRecords.push_back(std::move(record));
        for (auto &block : step->myBlocks)
            last.myBlocks.push_back(block);
        return;
    }
    myUndo.push_back(std::move(step));
    myRedo.clear();
    myMergeable = true;
}

bool HostUndoManager::addToUndoBlock(std::unique_ptr<HostUndo> undo)
{
    if (!undo || !willAcceptUndoAddition())
        return false;
    if (myPending)
    {
        myPending->myRecords.push_back(std::move(undo));
        return true;
    }
    auto step = std::make_unique<Step>();
    step->myName = intern(theUnnamedStep);
    step->myRecords.push_back(std::move(undo));
    myUndo.push_back(std::move(step));
    myRedo.clear();
    myMergeable = false;
    return true;
}

void HostUndoManager::enable()
{
    if (myDisableDepth > 0)
        --myDisableDepth;
}

void HostUndoManager::playBack(Step &step, bool undo)
{
    const bool was_playing = myPlayingBack;
    myPlayingBack = true;
    if (undo)
    {
        for (auto it = step.myRecords.rbegin(); it != step.myRecords.rend(); ++it)
            if ((*it)->isValid() && (*it)->isUndoNeeded())
                (*it)->undo();
    }
    else
    {
        for (auto &record : step.myRecords)
            if (record->isValid() && record->isRedoNeeded())
                record->redo();
    }
    myPlayingBack = was_playing;
}

bool HostUndoManager::undo()
{
    if (isInBlock() || myPlayingBack || myUndo.empty())
        return false;
    std::unique_ptr<Step> step = std::move(myUndo.back());
    myUndo.pop_back();
    playBack(*step, /*undo=*/true);
    myRedo.push_back(std::move(step));
    myMergeable = false;
    return true;
}

bool HostUndoManager::redo()
{
    if (isInBlock() || myPlayingBack || myRedo.empty())
        return false;
    std::unique_ptr<Step> step = std::move(myRedo.back());
    myRedo.pop_back();
    playBack(*step, /*undo=*/false);
    myUndo.push_back(std::move(step));
    myMergeable = false;
    return true;
}

std::string HostUndoManager::getUndoName(int i) const
{
    if (i < 0 || i >= getUndoCount())
        return std::string();
    return *myUndo[myUndo.size() - 1 - i]->myName;
}

std::string HostUndoManager::getRedoName(int i) const
{
    if (i < 0 || i >= getRedoCount())
        return std::string();
    return *myRedo[myRedo.size() - 1 - i]->myName;
}

int HostUndoManager::getUndoRecordCount(int i) const
{
    if (i < 0 || i >= getUndoCount())
        return 0;
    return static_cast<int>(myUndo[myUndo.size() - 1 - i]->myRecords.size());
}

std::vector<HostUndoManager::BlockInfo> HostUndoManager::getUndoBlocks(int i) const
{
    if (i < 0 || i >= getUndoCount())
        return {};
    std::vector<BlockInfo> blocks;
    for (const StepBlock &block : myUndo[myUndo.size() - 1 - i]->myBlocks)
        blocks.push_back({block.myDepth, *block.myName});
    return blocks;
}

const std::string *HostUndoManager::intern(const char *name)
{
    return &*myNames.insert(name ? name : "").first;
}

std::size_t HostUndoManager::getMemoryUsage() const
{
    std::size_t total = 0;
    for (const auto *stack : {&myUndo, &myRedo})
        for (const auto &step : *stack)
            for (const auto &record : step->myRecords)
                total += record->getMemoryUsage();
    return total;
}

void HostUndoManager::clear()
{
    myUndo.clear();
    myRedo.clear();
    if (myPending)
        myPending->myRecords.clear();
    myMergeable = false;
}
