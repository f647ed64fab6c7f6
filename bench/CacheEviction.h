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
