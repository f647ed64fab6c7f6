// Tests of the parameter cache periods: nesting, clearing and the behaviour flags.
#include "resource/GZ_ResourceManager.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

/// Opens and closes cache periods, which only a derived manager may do.
class CacheControl : public GZ_ResourceManager
{
public:
    using GZ_ResourceManager::getParmsCache;
    using GZ_ResourceManager::getParmsCacheBehaviour;
    using GZ_ResourceManager::startParmsCache;
    using GZ_ResourceManager::stopParmsCache;

    static size_t size()
    {
        std::vector<HostNode *> *nodes = nullptr;
        std::vector<HostParm *> *parms = nullptr;
        std::vector<int> *indices = nullptr;
        getParmsCache(nodes, parms, indices);
        EXPECT_EQ(nodes->size(), indices->size());
        EXPECT_EQ(parms->size(), indices->size());
        return indices->size();
    }
};

} // namespace

TEST(ParmCache, OnlyTheOutermostStopClearsAndResets)
{
    // Stopping with nothing open changes nothing.
    GZ_ResourceManager::setParmsCacheBehaviour(true, false, true);
    GZ_ResourceManager::appendToParmsCache(nullptr, nullptr, 5);
    CacheControl::stopParmsCache();
    EXPECT_EQ(GZ_ResourceManager::cacheParms(), 0);
    EXPECT_EQ(CacheControl::size(), 1u);

    CacheControl::startParmsCache();
    CacheControl::startParmsCache();
    GZ_ResourceManager::appendToParmsCache(nullptr, nullptr, 2);
    GZ_ResourceManager::appendToParmsCache(nullptr, nullptr, 2); // duplicates stay
    GZ_ResourceManager::setParmsCacheBehaviour(false, true, false);
    CacheControl::stopParmsCache();
    EXPECT_EQ(GZ_ResourceManager::cacheParms(), 1);
    EXPECT_EQ(CacheControl::size(), 3u);

    // The last behaviour set is what the host reads before the outermost stop.
    bool set_key = true, scope = false, append = true;
    CacheControl::getParmsCacheBehaviour(set_key, scope, append);
    EXPECT_FALSE(set_key);
    EXPECT_TRUE(scope);
    EXPECT_FALSE(append);

    CacheControl::stopParmsCache();
    EXPECT_EQ(GZ_ResourceManager::cacheParms(), 0);
    EXPECT_EQ(CacheControl::size(), 0u);
    CacheControl::getParmsCacheBehaviour(set_key, scope, append);
    EXPECT_FALSE(set_key || scope || append);
}
