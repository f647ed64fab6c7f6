// ModelSeeds: which seeds a randomized model test runs.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

/// The seeds of a randomized test: `count` fixed seeds from `first`, so every run checks the
/// same sequences. GZ_MODEL_SEED=N runs only seed N (to reproduce a reported failure) and
/// GZ_MODEL_SEEDS=COUNT changes the count (to search longer).
class ModelSeeds
{
public:
    static std::vector<unsigned> get(unsigned first, int count)
    {
        if (const char *one = std::getenv("GZ_MODEL_SEED"))
            return {static_cast<unsigned>(std::strtoul(one, nullptr, 10))};
        if (const char *many = std::getenv("GZ_MODEL_SEEDS"))
            count = std::atoi(many);
        std::vector<unsigned> seeds;
        for (int i = 0; i < count; ++i)
            seeds.push_back(first + static_cast<unsigned>(i));
        return seeds;
    }
};
