// DragBench: cost of a handle drag written through a link against direct parameter writes.
#include "host/HostChannelManager.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "host/HostParm.h"
#include "link/GZ_OpHandleLink.h"
#include "resource/GZ_GZTemplate.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace
{

constexpr int theSteps = 10000;
constexpr int theComponents = 3;

/// A handle that exposes the write path a host handle class uses during a drag.
class DragLink : public GZ_OpHandleLink
{
public:
    using GZ_OpHandleLink::beginDistributedUndoBlock;
    using GZ_OpHandleLink::endDistributedUndoBlock;
    using GZ_OpHandleLink::GZ_OpHandleLink;
    using GZ_OpHandleLink::setParmValue;
};

/// One node of a transform type in a director of its own, and a link bound to its
/// translation.
class DragScene
{
public:
    DragScene()
    {
        myDirector.makeCurrent();
        HostOperatorTable *table = HostOperatorTable::getTable("Object");
        myOp = table->addOperator("benchxform", "Bench Xform",
                                  {HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3)});
        myNode = myDirector.createNode("benchxform", "/obj/moved");
        static const char *names[] = {"tx", "ty", "tz", nullptr};
        myTemplate = std::make_unique<GZ_GZTemplate>("benchdrag", "Bench Drag", "object", "", names,
                                                     0, ~0u, false);
        myLink = std::make_unique<DragLink>(*myTemplate);
        for (int i = 0; i < theComponents; ++i)
            myLink->linkOpParm("benchxform", i, names[i]);
        myLink->attach(*myNode);
        int k = -1;
        myParm = myNode->findChannel("tx", k);
    }

    ~DragScene()
    {
        myLink.reset();
        myDirector.clearScene();
        HostOperatorTable::getTable("Object")->deleteOperator("benchxform");
    }

    HostDirector myDirector;
    HostOperator *myOp = nullptr;
    HostNode *myNode = nullptr;
    HostParm *myParm = nullptr;
    std::unique_ptr<GZ_GZTemplate> myTemplate;
    std::unique_ptr<DragLink> myLink;
};

/// The value of component c at step s of drag number d: never within the write tolerance of
/// the previous one, so every write changes the parameter.
double dragValue(int d, int s, int c)
{
    return 1.0 + 0.001 * s + 0.25 * c + 0.0001 * (d % 7);
}

/// Reports component writes per second; microseconds per write are 1e6 / items_per_second.
void setWriteCounter(benchmark::State &state)
{
    state.SetItemsProcessed(state.iterations() * theSteps * theComponents);
}

void BM_DragThroughLink(benchmark::State &state)
{
    DragScene scene;
    int drag = 0;
    for (auto _ : state)
    {
        scene.myLink->beginDistributedUndoBlock("Drag");
        for (int s = 0; s < theSteps; ++s)
            for (int c = 0; c < theComponents; ++c)
                scene.myLink->setParmValue(c, dragValue(drag, s, c), /*set_key=*/false);
        scene.myLink->endDistributedUndoBlock();
        ++drag;
        state.PauseTiming();
        scene.myDirector.getUndoManager().clear();
        state.ResumeTiming();
    }
    setWriteCounter(state);
}

void BM_DragDirect(benchmark::State &state)
{
    DragScene scene;
    HostUndoManager &undo = scene.myDirector.getUndoManager();
    int drag = 0;
    for (auto _ : state)
    {
        const int block = undo.beginUndoBlock("Drag");
        const double time = HostChannelManager::get().getEvaluateTime();
        for (int s = 0; s < theSteps; ++s)
            for (int c = 0; c < theComponents; ++c)
            {
                scene.myNode->saveParmForUndo(*scene.myParm);
                scene.myParm->setValue(c, time, dragValue(drag, s, c), /*setKey=*/false);
            }
        undo.endUndoBlock(block);
        ++drag;
        state.PauseTiming();
        undo.clear();
        state.ResumeTiming();
    }
    setWriteCounter(state);
}

} // namespace

BENCHMARK(BM_DragThroughLink)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DragDirect)->Unit(benchmark::kMillisecond);
