// CacheEviction: empties the processor's caches between timed runs.
#pragma once

#include <benchmark/benchmark.h>

#include <vector>

/// Walks a buffer larger than the processor's private caches, outside the timed part, so
/// that the next timed run starts cold whatever the size of its data.
inline void evictCaches(benchmark::State &state)
{
    static std::vector<char> theBuffer(256u << 20, 1);
    state.PauseTiming();
    long sum = 0;
    for (size_t i = 0; i < theBuffer.size(); i += 64)
        sum += ++theBuffer[i];
    benchmark::DoNotOptimize(sum);
    state.ResumeTiming();
}

/// The second argument of a benchmark run both ways: 1 evicts the caches before each timed
/// run, so that both sizes start cold, as a command typed once does; 0 runs with warm
/// caches, where the smaller size may still fit them and the larger does not.
inline bool coldRuns(const benchmark::State &state)
{
    return state.range(1) != 0;
}

/// Sizes n and 10n, each warm then cold (arguments "n" and "cold"), in ascending size.
inline void warmAndColdSizes(benchmark::internal::Benchmark *bench, int n)
{
    bench->Args({n, 0})->Args({n, 1})->Args({10 * n, 0})->Args({10 * n, 1});
    bench->ArgNames({"n", "cold"})->Unit(benchmark::kMillisecond);
}
