// Bindings workloads: reading bindings files, and the listing commands over large tables.
#include "host/HostCommandManager.h"
#include "host/HostOperatorTable.h"
#include "host/HostParmTemplate.h"
#include "host/HostReader.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/GZ_SelectorTemplate.h"

#include "CacheEviction.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <streambuf>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{

constexpr int theN = 4000;

GZ_ResourceManager &instance()
{
    // The instance first, so the readers' managers below stay apart from it.
    static GZ_ResourceManager *theInstance = []
    {
        GZ_ResourceManager *manager = GZcreateResourceManager(/*print_warnings=*/false);
        // Warnings stay off for the whole run: the workloads time reading, not reporting.
        static GZ_ResourceManager::WarningScope theQuiet(false);
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
    const fs::path dir =
        fs::temp_directory_path() / ("gz_bench_bindings_" + std::to_string(blocks));
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
    // Each read fills a new registry, as the host's one read at start-up does.
    const bool cold = coldRuns(state);
    for (auto _ : state)
    {
        if (cold)
            evictCaches(state);
        state.PauseTiming();
        auto manager = std::make_unique<ReaderManager>();
        state.ResumeTiming();
        manager->registerOpHandleBindings();
        state.PauseTiming();
        manager.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * blocks);
    state.SetComplexityN(blocks);
}

// Writing a registry read from a file of that many blocks back as a bindings file, as
// "omwrite" does.
void BM_WriteBindingsFile(benchmark::State &state)
{
    instance();
    const int blocks = static_cast<int>(state.range(0));
    HostReader::setSearchPath({bindingsFileDir(blocks)});
    ReaderManager manager;
    manager.registerOpHandleBindings();
    const fs::path out = fs::temp_directory_path() / "gz_bench_bindings_written";
    for (auto _ : state)
        if (!manager.writeBindingsFile(out.c_str()))
            state.SkipWithError("the bindings file could not be written");
    fs::remove(out);
    state.SetItemsProcessed(state.iterations() * blocks);
}

/// A stream buffer that only counts what is written, so that the benchmarks time the
/// commands rather than the growth of an output buffer.
class CountingBuffer : public std::streambuf
{
public:
    size_t count = 0;

protected:
    int_type overflow(int_type c) override
    {
        ++count;
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char *, std::streamsize n) override
    {
        count += static_cast<size_t>(n);
        return n;
    }
};

/// Runs a command; returns the number of characters it wrote.
size_t runCommand(const std::string &text)
{
    static CountingBuffer theBuffer;
    static std::ostream theOut(&theBuffer);
    theBuffer.count = 0;
    HostCommandManager *commands = HostCommandManager::getInstance();
    commands->setStreams(&theOut, &theOut);
    commands->execute(text);
    commands->setStreams(nullptr, nullptr);
    return theBuffer.count;
}

// "omwhere" over a table whose every operator type binds a handle. Operator types cannot be
// deleted while bound, so the sizes run in ascending order and each adds to the last.
void BM_WhereOverLargeTable(benchmark::State &state)
{
    GZ_ResourceManager &manager = instance();
    const int count = static_cast<int>(state.range(0));
    static int theBound = 0;
    ensureOperators(HOST_NETWORK_DOP, "bench_dop_", count);
    HostOperatorTable *table = HostOperatorTable::getTable(HOST_NETWORK_DOP);
    for (; theBound < count; ++theBound)
        manager.bind(table->getOperator("bench_dop_" + std::to_string(theBound)), "xform", "main",
                     "tx", "tx", nullptr);
    const bool cold = coldRuns(state);
    for (auto _ : state)
    {
        if (cold)
            evictCaches(state);
        benchmark::DoNotOptimize(runCommand("omwhere -t dop"));
    }
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
    const bool cold = coldRuns(state);
    for (auto _ : state)
    {
        if (cold)
            evictCaches(state);
        benchmark::DoNotOptimize(runCommand("omls -t top"));
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.SetComplexityN(count);
}

} // namespace

// The sizes of the command benchmarks must ascend.
void sizes(benchmark::internal::Benchmark *bench)
{
    warmAndColdSizes(bench, theN);
}

BENCHMARK(BM_ReadBindingsFile)->Apply(sizes)->MinTime(3.0);
BENCHMARK(BM_WriteBindingsFile)->Arg(theN)->Arg(10 * theN)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WhereOverLargeTable)->Apply(sizes)->MinTime(1.0);
BENCHMARK(BM_ListHandlesOfLargeRegistry)->Apply(sizes)->MinTime(1.0);
