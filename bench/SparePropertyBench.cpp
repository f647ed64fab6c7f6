// Spare properties: loading a catalogue of 20 and of 200 classes of 100 properties, and adding
// one property to a set of 500 and of 5,000 spare parameters.
#include "persistent/GZ_SpareProperty.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostParmTemplate.h"
#include "host/HostReader.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <unistd.h>
#include <fstream>
#include <string>

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

void BM_AddPropertyToSpares(benchmark::State &state)
{
    catalogFile();
    const GZ_EditScriptedParms base = makeSpares(static_cast<int>(state.range(0)));
    // The set is copied (and the last one freed) outside the timed part: only the adding
    // itself is measured.
    GZ_EditScriptedParms parms;
    for (auto _ : state)
    {
        state.PauseTiming();
        parms = base;
        state.ResumeTiming();
        std::string errors;
        GZ_SpareProperty::addProperty(parms, nullptr, "notes", "gz_note_text", errors, nullptr,
                                      GZ_SPARE_PROPERTY_NO_FILTER, GZ_SPARE_PROPERTY_NO_PACKAGE,
                                      nullptr);
        benchmark::DoNotOptimize(parms.entries());
    }
}
BENCHMARK(BM_AddPropertyToSpares)->Arg(500)->Arg(5000)->Unit(benchmark::kMicrosecond);
} // namespace
