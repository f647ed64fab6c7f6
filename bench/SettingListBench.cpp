// Settings text: parse + write of a typical handle line and of a long one.
#include "link/GZ_SettingList.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

namespace
{
const char *const theTypicalLine = "color(0.5 0.5 1) showoppath(1) ownerop('geo1')";

const char *const theLongLine =
    "color(0.5 0.5 1) showoppath(1) ownerop('geo1') scale(1 1 1) pivot(0 0.25 0) "
    "orient(0 0 0 1) uv(0.5 0.5) mode('world') snap(0) snapsize(0.10000000000000001) "
    "label('Transform \\'main\\'') visible(1) alpha(0.75) size(2.5) tooltip('drag to move') "
    "highlight(1 0.80000000000000004 0.20000000000000001 1) ticks(10) axis(0 1 0) "
    "owner('/obj/geo1/xform1') precision(17)";

void parseAndWrite(benchmark::State &state, const char *line)
{
    GZ_SettingList list;
    std::string out;
    for (auto _ : state)
    {
        list.loadFromSettingString(line);
        list.generateSettingString(out);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::strlen(line)));
    state.SetItemsProcessed(state.iterations());
}

void parseOnly(benchmark::State &state, const char *line)
{
    GZ_SettingList list;
    for (auto _ : state)
    {
        list.loadFromSettingString(line);
        benchmark::DoNotOptimize(&list);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::strlen(line)));
}

void writeOnly(benchmark::State &state, const char *line)
{
    GZ_SettingList list;
    list.loadFromSettingString(line);
    std::string out;
    for (auto _ : state)
    {
        list.generateSettingString(out);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(out.size()));
}

/// A line of `count` settings of every value form, each name once.
std::string settingsLine(int count)
{
    static const char *const theValues[] = {
        "(0.5)", "(1 2 3)", "('text \\'quoted\\'')", "(0.25 0.5 0.75 1)", "(7)", "(0 1)"};
    std::string line;
    for (int i = 0; i < count; ++i)
        line += (i ? " s" : "s") + std::to_string(i) + theValues[i % 6];
    return line;
}

// The same work over lines of N settings, at two sizes so that the growth can be read off.
void BM_SettingParseWriteN(benchmark::State &state)
{
    const std::string line = settingsLine(static_cast<int>(state.range(0)));
    parseAndWrite(state, line.c_str());
}

void BM_SettingParseWriteTypical(benchmark::State &state)
{
    parseAndWrite(state, theTypicalLine);
}
void BM_SettingParseWrite20(benchmark::State &state)
{
    parseAndWrite(state, theLongLine);
}
void BM_SettingParseTypical(benchmark::State &state)
{
    parseOnly(state, theTypicalLine);
}
void BM_SettingWriteTypical(benchmark::State &state)
{
    writeOnly(state, theTypicalLine);
}
} // namespace

BENCHMARK(BM_SettingParseWriteTypical);
BENCHMARK(BM_SettingParseWrite20);
BENCHMARK(BM_SettingParseTypical);
BENCHMARK(BM_SettingWriteTypical);
BENCHMARK(BM_SettingParseWriteN)->Arg(10)->Arg(100);
