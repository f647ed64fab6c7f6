// Bindings workloads: reading bindings files, and the listing commands over large tables.
#include "host/HostCommandManager.h"
#include "host/HostOperatorTable.h"
#include "host/HostParmTemplate.h"
#include "host/HostReader.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/GZ_SelectorTemplate.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

namespace
{

constexpr int theN = 4000;

GZ_ResourceManager &instance()
{
    // The instance first, so the readers' managers below stay apart from it.
    static GZ_ResourceManager *theInstance = [] {
        GZ_ResourceManager *manager = GZcreateResourceManager(/*print_warnings=*/false);
        GZ_ResourceManager::ourPrintWarnings = false;
        return manager;
    }();
    return *theInstance;
}

HostParmTemplateList transformTemplates()
{
    return HostParmTemplateList{HostParmTemplate(HOST_PARM_STRING, "group", "Group", 1),
                                HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3),
                                HostParmTemplate(HOST_PARM_XYZ, "r", "Rotate", 3)};
}

/// Operator types "<prefix><i>" for i below `count` in a standard table.
void ensureOperators(HostNetworkType type, const std::string &prefix, int count)
{
    HostOperatorTable *table = HostOperatorTable::getTable(type);
    const HostParmTemplateList templates = transformTemplates();
    for (int i = 0; i < count; ++i)
    {
        const std::string name = prefix + std::to_string(i);
        if (!table->getOperator(name))
            table->addOperator(name, name, templates);
    }
}

/// A bindings file of `blocks` operator blocks (one handle of six links and one selector
/// each), written once per size; returns its directory.
std::string bindingsFileDir(int blocks)
{
    static std::map<int, std::string> theDirs;
    auto found = theDirs.find(blocks);
    if (found != theDirs.end())
        return found->second;
    ensureOperators(HOST_NETWORK_SOP, "bench_sop_", blocks);
    const fs::path dir = fs::temp_directory_path() / ("gz_bench_bindings_" + std::to_string(blocks));
    fs::create_directories(dir);
    std::ofstream file(dir / "OPbindings", std::ios::binary);
    for (int i = 0; i < blocks; ++i)
    {
        file << "Sop/bench_sop_" << i << "\n{\n"
             << "    bindhandle xform main \"color(1 0 0) showoppath(1)\"\n    {\n"
             << "\ttx tx\n\tty ty\n\ttz tz\n\trx rx\n\try ry\n\trz rz\n    }\n"
             << "    bindselector everything sel\n    {\n\tPick\n\tgroup 0 1 all 0 menu 0\n"
             << "    }\n}\n\n";
    }
    return theDirs[blocks] = dir.string();
}

/// A registry with the handle and selector the generated files bind.
class ReaderManager : public GZ_ResourceManager
{
public:
    ReaderManager()
    {
        static const char *const parms[] = {"tx", "ty", "tz", "rx", "ry", "rz", nullptr};
        registerOpHandleLink(
            new GZ_GZTemplate("xform", "Transformer", "Sop Object", "", parms, 0, ~0u, false));
        registerSelector(new GZ_SelectorTemplate("everything", "Everything", "Sop", false));
    }
};

void BM_ReadBindingsFile(benchmark::State &state)
{
    instance();
    const int blocks = static_cast<int>(state.range(0));
    HostReader::setSearchPath({bindingsFileDir(blocks)});
    ReaderManager manager;
    for (auto _ : state)
        manager.registerOpHandleBindings();
    state.SetItemsProcessed(state.iterations() * blocks);
    state.SetComplexityN(blocks);
}

/// Runs a command with its output kept in memory; returns the output's size.
size_t runCommand(const std::string &text)
{
    static std::ostringstream theOut, theErr;
    theOut.str(std::string());
    HostCommandManager *commands = HostCommandManager::getInstance();
    commands->setStreams(&theOut, &theErr);
    commands->execute(text);
    commands->setStreams(nullptr, nullptr);
    return theOut.str().size();
}

// "omwhere" over a table whose every operator type binds a handle. The two sizes use two
// tables, so each table holds exactly its size.
void BM_WhereOverLargeTable(benchmark::State &state)
{
    GZ_ResourceManager &manager = instance();
    const int count = static_cast<int>(state.range(0));
    const bool small = count == theN;
    const HostNetworkType type = small ? HOST_NETWORK_DOP : HOST_NETWORK_LOP;
    const std::string prefix = small ? "bench_dop_" : "bench_lop_";
    ensureOperators(type, prefix, count);
    HostOperatorTable *table = HostOperatorTable::getTable(type);
    for (int i = 0; i < count; ++i)
        manager.bind(table->getOperator(prefix + std::to_string(i)), "xform", "main", "tx", "tx",
                     nullptr);
    const std::string command = small ? "omwhere -t dop" : "omwhere -t lop";
    for (auto _ : state)
        benchmark::DoNotOptimize(runCommand(command));
    state.SetItemsProcessed(state.iterations() * count);
    state.SetComplexityN(count);
}

// "omls" over a registry of that many bindable handles of one network. Handles cannot be
// unregistered, so the sizes run in ascending order and each adds to the last.
void BM_ListHandlesOfLargeRegistry(benchmark::State &state)
{
    GZ_ResourceManager &manager = instance();
    const int count = static_cast<int>(state.range(0));
    static int theRegistered = 0;
    static const char *const parms[] = {"value", nullptr};
    for (; theRegistered < count; ++theRegistered)
    {
        const std::string name = "bench_gz_" + std::to_string(theRegistered);
        manager.registerOpHandleLink(
            new GZ_GZTemplate(name.c_str(), name.c_str(), "Top", "", parms, 0, ~0u, false));
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(runCommand("omls -t top"));
    state.SetItemsProcessed(state.iterations() * count);
    state.SetComplexityN(count);
}

} // namespace

BENCHMARK(BM_ReadBindingsFile)->Arg(theN)->Arg(10 * theN)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WhereOverLargeTable)->Arg(theN)->Arg(10 * theN)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListHandlesOfLargeRegistry)
    ->Arg(theN)
    ->Arg(10 * theN)
    ->Unit(benchmark::kMillisecond);
