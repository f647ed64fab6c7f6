// Parameter interfaces: build from templates, merge with unique names, write, parse; each at
// 1,000 and 10,000 parameters with nested folders and multiparms among them.
#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostParmTemplate.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <sstream>
#include <string>

namespace
{
/// About `n` templates: blocks of a switcher with two tabs (the first holding a collapsible
/// folder's worth of parameters and a multiparm of two children, the second plain
/// parameters). Names end in a letter so that a clash is resolved by one bump.
HostParmTemplateList makeTemplates(int n, const std::string &prefix)
{
    HostParmTemplateList list;
    int made = 0;
    for (int b = 0; made < n; ++b)
    {
        const std::string base = prefix + std::to_string(b);
        HostParmTemplate sw(HOST_PARM_SWITCHER, base + "tab", "Tabs");
        sw.addFolder("First", 9);
        sw.addFolder("Second", 12);
        list.append(sw);
        for (int i = 0; i < 8; ++i)
        {
            HostParmTemplate t(i % 2 ? HOST_PARM_XYZ : HOST_PARM_FLOAT,
                               base + "p" + std::to_string(i) + "v", "Parm", i % 2 ? 3 : 1);
            t.setDefault(0, HostParmDefault(0.5 * i));
            list.append(t);
        }
        HostParmTemplate multi(HOST_PARM_MULTIPARM, base + "m", "Points");
        multi.addChild(HostParmTemplate(HOST_PARM_FLOAT, base + "mx#", "X"));
        multi.addChild(HostParmTemplate(HOST_PARM_STRING, base + "ms#", "Name"));
        list.append(multi);
        for (int i = 0; i < 12; ++i)
        {
            HostParmTemplate t(HOST_PARM_INT, base + "q" + std::to_string(i) + "v", "Count");
            list.append(t);
        }
        made += 24;
    }
    return list;
}

GZ_EditScriptedParms makeSet(int n, const std::string &prefix)
{
    const HostParmTemplateList list = makeTemplates(n, prefix);
    return GZ_EditScriptedParms(nullptr, list.data(), GZ_EditScriptedParms::BuildOptions());
}

void BM_ParmsFromTemplates(benchmark::State &state)
{
    const HostParmTemplateList list = makeTemplates(static_cast<int>(state.range(0)), "a");
    for (auto _ : state)
    {
        GZ_EditScriptedParms parms(nullptr, list.data(), GZ_EditScriptedParms::BuildOptions());
        benchmark::DoNotOptimize(parms.entries());
    }
}

void BM_ParmsMergeUnique(benchmark::State &state)
{
    const int n = static_cast<int>(state.range(0));
    const GZ_EditScriptedParms target = makeSet(n, "a");
    // Half of the incoming names clash with the target's.
    GZ_EditScriptedParms incoming = makeSet(n / 2, "a");
    incoming.mergeParms(makeSet(n / 2, "b"));
    for (auto _ : state)
    {
        // Copying the target and freeing the result are not part of the merge.
        state.PauseTiming();
        auto parms = std::make_unique<GZ_EditScriptedParms>(target);
        state.ResumeTiming();
        parms->mergeParms(incoming);
        benchmark::DoNotOptimize(parms->entries());
        state.PauseTiming();
        parms.reset();
        state.ResumeTiming();
    }
}

void BM_ParmSectionWrite(benchmark::State &state)
{
    GZ_EditScriptedParms parms = makeSet(static_cast<int>(state.range(0)), "a");
    std::string errors;
    for (auto _ : state)
    {
        std::ostringstream os;
        parms.save(os, errors, /*check_joins=*/true);
        benchmark::DoNotOptimize(os.str().size());
    }
}

void BM_ParmSectionParse(benchmark::State &state)
{
    GZ_EditScriptedParms parms = makeSet(static_cast<int>(state.range(0)), "a");
    std::ostringstream os;
    std::string errors;
    parms.save(os, errors, /*check_joins=*/true);
    const std::string text = os.str();
    for (auto _ : state)
    {
        GZ_EditScriptedParms read;
        read.parseParmSection(text, "bench", errors);
        benchmark::DoNotOptimize(read.entries());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(text.size()));
}
} // namespace

BENCHMARK(BM_ParmsFromTemplates)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParmsMergeUnique)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParmSectionWrite)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParmSectionParse)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
