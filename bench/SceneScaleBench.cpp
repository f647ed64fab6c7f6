// Benchmarks of everyday gzsh operations that must grow linearly with the scene: automatic
// node names, group membership with undo, and undoing the deletion of nodes whose handles
// share one group. Each runs at two sizes, a tenth apart, so that the growth can be read off.
#include "CacheEviction.h"
#include "ScaleShell.h"
#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "persistent/GZ_Manager.h"
#include "persistent/GZ_OHLGroup.h"

#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

namespace
{
/// Nodes /obj/nI, each with a handle hI attached.
std::string handlesScript(int count)
{
    return script(count,
                  [](int i)
                  {
                      const std::string n = std::to_string(i);
                      return "nodeadd geo /obj/n" + n + "\npomadd h" + n + " xform\npomattach h" +
                             n + " /obj/n" + n + " tx:tx";
                  });
}

/// 5,000 and 50,000, warm and cold. Warm, the scene the untimed part just built or tore
/// down is still partly in the caches at the smaller size and not at the larger one, so the
/// pair also measures the cache sizes.
void sizes(benchmark::internal::Benchmark *bench)
{
    warmAndColdSizes(bench, 5000);
}

int groupSize()
{
    const GZ_Manager *manager = GZgetManager();
    return manager->getNumGroups() == 0 ? -1 : manager->getGroup(0)->getNumGZs();
}
} // namespace

/// "nodeadd geo /obj/" N times: each node asks for a free name made from its type.
static void BM_AutomaticNodeNames(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    const bool cold = coldRuns(state);
    ScaleShell &shell = ScaleShell::get();
    const std::string text = script(count, [](int) { return "nodeadd geo /obj/"; });
    for (auto _ : state)
    {
        state.PauseTiming();
        shell.reset();
        state.ResumeTiming();
        if (cold)
            evictCaches(state);
        shell.run(text);
        state.PauseTiming();
        if (!shell.director().findNode("/obj/geo" + std::to_string(count)))
            state.SkipWithError("the nodes were not named geo1..N");
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_AutomaticNodeNames)->Apply(sizes);

/// "pomattach -g g hI" N times, with undo records.
static void BM_GroupMembersWithUndo(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    const bool cold = coldRuns(state);
    ScaleShell &shell = ScaleShell::get();
    const std::string setup = handlesScript(count) + "pomadd -g g\n";
    const std::string text =
        script(count, [](int i) { return "pomattach -g g h" + std::to_string(i); });
    for (auto _ : state)
    {
        state.PauseTiming();
        shell.reset();
        shell.run(setup);
        state.ResumeTiming();
        if (cold)
            evictCaches(state);
        shell.run(text);
        state.PauseTiming();
        if (groupSize() != count)
            state.SkipWithError("the members were not added");
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_GroupMembersWithUndo)->Apply(sizes);

/// "noderm /obj/nI" for every node while the N handles share one group, then "undo" N
/// times; the time is that of the undos.
static void BM_UndoNodeDeletionsInBigGroup(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    const bool cold = coldRuns(state);
    ScaleShell &shell = ScaleShell::get();
    const std::string setup =
        handlesScript(count) + "pomadd -g g\n" +
        script(count, [](int i) { return "pomattach -g g h" + std::to_string(i); });
    const std::string deletions =
        script(count, [](int i) { return "noderm /obj/n" + std::to_string(i); });
    const std::string undos = script(count, [](int) { return "undo"; });
    for (auto _ : state)
    {
        state.PauseTiming();
        shell.reset();
        shell.run(setup);
        shell.run(deletions);
        if (groupSize() != 0)
            state.SkipWithError("the handles were not deleted with their nodes");
        state.ResumeTiming();
        if (cold)
            evictCaches(state);
        shell.run(undos);
        state.PauseTiming();
        if (groupSize() != count)
            state.SkipWithError("undo did not bring the members back");
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_UndoNodeDeletionsInBigGroup)->Apply(sizes);
