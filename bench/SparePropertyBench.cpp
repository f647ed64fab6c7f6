// Spare properties: loading a catalogue of 20 and of 200 classes of 100 properties, and adding
// one property to a set of 500 and of 5,000 spare parameters.
#include "persistent/GZ_SpareProperty.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostParmTemplate.h"
#include "host/HostReader.h"

#include "CacheEviction.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{
/// The class file the benchmarks rewrite; registered once, so every load reads the built-in
/// files plus this one.
const std::string &catalogFile()
{
    static const std::string path = []
    {
        const std::string p = "/tmp/gz_bench_properties_" + std::to_string(::getpid()) + ".ds";
        std::ofstream(p) << "";
        HostReader::setSearchPath({GZ_DATA_DIR});
        std::string errors;
        GZ_SpareProperty::addClassFile(errors, p.c_str(), 0);
        return p;
    }();
    return path;
}

void writeCatalog(int classes, int properties)
{
    std::ofstream out(catalogFile());
    for (int c = 0; c < classes; ++c)
    {
        out << "{\n    name \"bench" << c << "\"\n    parmtag { \"spare_classtags\" \"bench\" }\n";
        for (int p = 0; p < properties; ++p)
            out << "    parm {\n        name \"b" << c << "_" << p << "\"\n        label \"B\"\n"
                << "        type float\n        default { \"0\" }\n"
                << "        parmtag { \"spare_category\" \"Cat" << p % 5 << "\" }\n    }\n";
        out << "}\n";
    }
}

void BM_CatalogLoad(benchmark::State &state)
{
    writeCatalog(static_cast<int>(state.range(0)), 100);
    for (auto _ : state)
    {
        std::string errors;
        GZ_SpareProperty::initialize(errors);
        benchmark::DoNotOptimize(errors);
    }
    writeCatalog(0, 0);
    std::string errors;
    GZ_SpareProperty::initialize(errors);
}
BENCHMARK(BM_CatalogLoad)->Arg(20)->Arg(200)->Unit(benchmark::kMillisecond);

/// `n` spare parameters in folders of 50, as a node's spare set holds them.
GZ_EditScriptedParms makeSpares(int n)
{
    HostParmTemplateList list;
    for (int f = 0; f * 50 < n; ++f)
    {
        HostParmTemplate sw(HOST_PARM_SWITCHER, "tabs" + std::to_string(f), "Tabs");
        sw.addFolder("Folder" + std::to_string(f), 50);
        list.append(sw);
        for (int i = 0; i < 50; ++i)
            list.append(HostParmTemplate(HOST_PARM_FLOAT,
                                         "p" + std::to_string(f) + "_" + std::to_string(i), "P"));
    }
    return GZ_EditScriptedParms(nullptr, list.data(), GZ_EditScriptedParms::BuildOptions());
}

bool addNote(GZ_EditScriptedParms &parms)
{
    std::string errors;
    return GZ_SpareProperty::addProperty(parms, nullptr, "notes", "gz_note_text", errors, nullptr,
                                         GZ_SPARE_PROPERTY_NO_FILTER, GZ_SPARE_PROPERTY_NO_PACKAGE,
                                         nullptr);
}

/// Takes out what the add put in (one block, inserted in one piece), so that the next add
/// starts from the same set; false when the set did not come back to `before`. A closed
/// block at the end goes with the set's index kept; were the index left stale, the lookup
/// at the end would rebuild it here, outside the timing.
bool removeAdded(GZ_EditScriptedParms &parms,
                 const std::vector<const GZ_EditScriptedParm *> &before)
{
    const int added = parms.entries() - static_cast<int>(before.size());
    int first = 0;
    while (first < static_cast<int>(before.size()) && parms.getParm(first) == before[first])
        ++first;
    if (added <= 0 || parms.removeParms(first, first + added - 1, false) != added)
        return false;
    for (int i = 0; i < parms.entries(); ++i)
        if (parms.getParm(i) != before[i])
            return false;
    return !parms.hasParmWithName("gz_note_text");
}

/// One property added to a set of N spare parameters. The set is built once; after each
/// timed add the added entries are removed outside the timing, so that every size adds to
/// a set the last add left in the caches (a copy of the set before each add, as this used
/// to do, left the small set in the caches and pushed the large one out). With the second
/// argument 1 the caches are emptied before each add instead, at both sizes.
void BM_AddPropertyToSpares(benchmark::State &state)
{
    catalogFile();
    GZ_EditScriptedParms parms = makeSpares(static_cast<int>(state.range(0)));
    std::vector<const GZ_EditScriptedParm *> before;
    for (int i = 0; i < parms.entries(); ++i)
        before.push_back(parms.getParm(i));
    const bool cold = coldRuns(state);
    for (auto _ : state)
    {
        if (cold)
            evictCaches(state);
        benchmark::DoNotOptimize(addNote(parms));
        state.PauseTiming();
        if (!removeAdded(parms, before))
            state.SkipWithError("the added property could not be taken out again");
        state.ResumeTiming();
    }
}
BENCHMARK(BM_AddPropertyToSpares)
    ->ArgNames({"n", "cold"})
    ->Args({500, 0})
    ->Args({5000, 0})
    ->Unit(benchmark::kMicrosecond);
// Emptying the caches takes far longer than the add: a fixed number of runs.
BENCHMARK(BM_AddPropertyToSpares)
    ->ArgNames({"n", "cold"})
    ->Args({500, 1})
    ->Args({5000, 1})
    ->Iterations(200)
    ->Unit(benchmark::kMicrosecond);
} // namespace
