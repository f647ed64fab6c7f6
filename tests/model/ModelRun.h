// ModelRun: one seed's random command sequence in a model test, and how it fails.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// One seed's sequence. A derived test runs a prefix of it in check(); a fault fails the
/// test with the seed, the shortest failing prefix and that prefix as a gzsh script.
class ModelRun
{
public:
    explicit ModelRun(unsigned seed) : mySeed(seed) {}
    virtual ~ModelRun() = default;

    /// Runs the first `steps` lines (recording them in myLines); the first fault, or "".
    virtual std::string check(int steps) = 0;

    void expectNoFault(int steps)
    {
        if (check(steps).empty())
            return;
        // Bisects, assuming that a prefix longer than a failing one fails too.
        int lo = 1, hi = steps;
        while (lo < hi)
        {
            const int mid = (lo + hi) / 2;
            if (check(mid).empty())
                lo = mid + 1;
            else
                hi = mid;
        }
        const std::string fault = check(hi);
        std::string script;
        for (const std::string &line : myLines)
            script += line + "\n";
        ADD_FAILURE() << "seed " << mySeed << " (GZ_MODEL_SEED=" << mySeed
                      << "), shortest failing prefix " << hi << " lines: " << fault << "\n"
                      << script;
    }

protected:
    unsigned seed() const { return mySeed; }

    std::vector<std::string> myLines;

private:
    unsigned mySeed;
};
