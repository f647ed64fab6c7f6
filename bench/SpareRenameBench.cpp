// Renaming a spare parameter repairs its referrers, found through the reverse reference
// index: the cost must follow the referrers, not the scene.
#include "ScaleShell.h"

#include "host/HostNode.h"
#include "host/HostDirector.h"
#include "host/HostUndoManager.h"
#include "host/HostParm.h"

#include <benchmark/benchmark.h>

#include <string>

namespace
{
/// /obj/geo0 with the spare parameter "amp", `nodes` - 1 more nodes, of which the first
/// `referrers` read it in their tx; each iteration renames amp to gain and back.
void renameSpare(benchmark::State &state, int nodes, int referrers)
{
    ScaleShell &shell = ScaleShell::get();
    shell.reset();
    shell.run("nodeadd geo /obj/geo0\nspareadd -s /obj/geo0 'parm { name amp label Amp type "
              "float default { 2 } }'");
    shell.run(script(nodes - 1,
                     [referrers](int i)
                     {
                         const std::string n = std::to_string(i + 1);
                         std::string line = "nodeadd geo /obj/geo" + n;
                         if (i < referrers)
                             line += "\nparmset -e /obj/geo" + n + " tx 'ch(\"../geo0/amp\") * 2'";
                         return line;
                     }));
    for (auto _ : state)
    {
        shell.run("sparerename /obj/geo0 amp gain");
        shell.run("sparerename /obj/geo0 gain amp");
        // Each rename keeps an undo record per referrer; a history of thousands of renames
        // is not what is measured here.
        state.PauseTiming();
        shell.director().getUndoManager().clear();
        state.ResumeTiming();
    }
    const HostNode *last = shell.director().findNode("/obj/geo" + std::to_string(referrers));
    if (!last || last->getParm("t")->getExpression(0) != "ch(\"../geo0/amp\") * 2")
        state.SkipWithError("the reference was not repaired");
    state.SetItemsProcessed(state.iterations() * 2);
    shell.reset();
}
} // namespace

/// Ten referrers in scenes of 10,000 and 100,000 nodes.
static void BM_RenameSpareTenReferrers(benchmark::State &state)
{
    renameSpare(state, static_cast<int>(state.range(0)), 10);
}
BENCHMARK(BM_RenameSpareTenReferrers)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

/// 1,000 and 10,000 referrers, each its own node.
static void BM_RenameSpareManyReferrers(benchmark::State &state)
{
    const int referrers = static_cast<int>(state.range(0));
    renameSpare(state, referrers + 1, referrers);
}
BENCHMARK(BM_RenameSpareManyReferrers)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
