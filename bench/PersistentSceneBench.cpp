// Benchmarks of persistent handle scenes: loading and saving N handles, each attached to a
// node, in groups of 100, at two sizes so that the growth can be read off.
#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostOperatorTable.h"
#include "host/HostUndoManager.h"
#include "persistent/GZ_Manager.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <memory>
#include <sstream>
#include <string>

namespace
{
constexpr int theGroupSize = 100;

/// A director holding `count` nodes of a private type, and the pom* lines of a scene that
/// puts one handle on each node and the handles in groups of 100, as a scene save writes
/// them.
struct PersistentScene
{
    explicit PersistentScene(int count)
    {
        director.makeCurrent();
        HostOperatorTable *table = HostOperatorTable::getTable("Object");
        if (!table->getOperator("benchpom"))
            table->addOperator("benchpom", "Bench Pom",
                               {HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3)}, "");
        GZ_ResourceManager *resources = GZcreateResourceManager(/*print_warnings=*/false);
        if (!resources->getOpHandleLinkTemplate("benchpom"))
        {
            static const char *names[] = {"tx", "ty", "tz", nullptr};
            resources->registerOpHandleLink(
                new GZ_GZTemplate("benchpom", "Bench", "object", "", names, 0, ~0u, false));
        }
        manager = GZgetManager();
        std::ostringstream os;
        for (int i = 0; i < count; ++i)
        {
            const std::string path = "/obj/n" + std::to_string(i);
            director.createNode("benchpom", path);
            os << "pomadd -e on -p on -c on -s on -r 1 0 0 h" << i << " benchpom\n"
               << "pomparm h" << i << " \"showoppath(0)\"\n"
               << "pomattach -i " << i << " h" << i << " " << path << " tx:tx ty:ty\n";
        }
        for (int g = 0; g < count / theGroupSize; ++g)
        {
            os << "pomadd -g g" << g << "\npomattach -g g" << g;
            for (int k = 0; k < theGroupSize; ++k)
                os << " h" << g * theGroupSize + k;
            os << "\n";
        }
        text = os.str();
    }

    ~PersistentScene()
    {
        clearHandles();
        director.clearScene();
    }

    void load(bool with_undo)
    {
        HostUndoManager &undo = director.getUndoManager();
        if (!with_undo)
            undo.disable();
        HostCommandManager::getInstance()->execute(text, /*add_to_history=*/false,
                                                   /*show_output=*/false);
        if (!with_undo)
            undo.enable();
    }

    void clearHandles()
    {
        HostUndoManager &undo = director.getUndoManager();
        undo.disable();
        manager->removeAllGZs();
        for (int i = manager->getNumGroups() - 1; i >= 0; --i)
            manager->removeGroup(manager->getGroup(i));
        undo.enable();
        undo.clear();
    }

    HostDirector director;
    GZ_Manager *manager = nullptr;
    std::string text;
};

std::size_t heapInUse()
{
    return mallinfo2().uordblks;
}

void loadScene(benchmark::State &state, bool with_undo)
{
    const int count = static_cast<int>(state.range(0));
    PersistentScene scene(count);
    double bytes_per_handle = 0.0;
    for (auto _ : state)
    {
        const std::size_t before = heapInUse();
        scene.load(with_undo);
        state.PauseTiming();
        bytes_per_handle = double(heapInUse() - before) / count;
        if (scene.manager->getNumGZs() != count || scene.manager->getNumGroups() != count / 100)
            state.SkipWithError("the scene did not load");
        scene.clearHandles();
        state.ResumeTiming();
    }
    state.counters["bytes_per_handle"] = bytes_per_handle;
    state.SetItemsProcessed(state.iterations() * count);
}
} // namespace

/// Runs the saved lines through the command interpreter as a scene load does (no undo).
static void BM_PersistentSceneLoad(benchmark::State &state)
{
    loadScene(state, /*with_undo=*/false);
}
BENCHMARK(BM_PersistentSceneLoad)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// The same lines sourced as ordinary commands: every change leaves its undo record.
static void BM_PersistentSceneLoadWithUndo(benchmark::State &state)
{
    loadScene(state, /*with_undo=*/true);
}
BENCHMARK(BM_PersistentSceneLoadWithUndo)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// Writes every handle and group as a scene save does.
static void BM_PersistentSceneSave(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    PersistentScene scene(count);
    scene.load(/*with_undo=*/false);
    std::size_t bytes = 0;
    for (auto _ : state)
    {
        std::ostringstream os;
        scene.manager->save(os);
        bytes = os.str().size();
    }
    state.counters["bytes_written"] = double(bytes);
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_PersistentSceneSave)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
