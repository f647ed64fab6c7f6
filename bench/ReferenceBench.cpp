// Renaming a node whose channels few parameters refer to, in scenes of growing size: the
// referrers come from the reference index, so the cost must not follow the scene.
#include "ScaleShell.h"

#include "host/HostNode.h"
#include "host/HostParm.h"

#include <benchmark/benchmark.h>

#include <string>

/// A chain /obj/geo0..N-1, each tx reading its predecessor's tx; every rename of geo500 and
/// back rewrites the one expression in geo501.
static void BM_RenameNodeWithFewReferrers(benchmark::State &state)
{
    const int count = static_cast<int>(state.range(0));
    ScaleShell &shell = ScaleShell::get();
    shell.reset();
    shell.run(script(count,
                     [](int i)
                     {
                         const std::string n = std::to_string(i);
                         std::string line = "nodeadd geo /obj/geo" + n;
                         if (i > 0)
                             line += "\nparmset -e /obj/geo" + n + " tx 'ch(\"../geo" +
                                     std::to_string(i - 1) + "/tx\") + 1'";
                         return line;
                     }));
    for (auto _ : state)
    {
        shell.run("nodemv /obj/geo500 moved");
        shell.run("nodemv /obj/moved geo500");
    }
    const HostNode *next = shell.director().findNode("/obj/geo501");
    if (!next || next->getParm("t")->getExpression(0) != "ch(\"../geo500/tx\") + 1")
        state.SkipWithError("the reference was not repaired");
    state.SetItemsProcessed(state.iterations() * 2);
    shell.reset();
}
BENCHMARK(BM_RenameNodeWithFewReferrers)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
