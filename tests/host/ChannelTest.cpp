// Tests of HostChannel: interpolation, holding, pending values, key queries.
#include "host/HostChannel.h"
#include "host/HostChannelManager.h"

#include <gtest/gtest.h>

namespace
{
HostChannel makeChannel(std::initializer_list<HostChannelKey> keys)
{
    HostChannel channel;
    for (const HostChannelKey &k : keys)
        channel.setKey(k.myTime, k.myValue);
    return channel;
}
} // namespace

TEST(HostChannelEvaluate, InterpolatesBetweenKeysAndHoldsOutside)
{
    HostChannel channel = makeChannel({{2.0, 30.0}, {0.0, 10.0}, {1.0, 20.0}});
    ASSERT_EQ(channel.getNumKeys(), 3);
    EXPECT_EQ(channel.getKey(0).myTime, 0.0); // inserted out of order, kept sorted
    EXPECT_EQ(channel.getKey(2).myTime, 2.0);
    for (const auto &[time, value] :
         {std::pair{0.5, 15.0}, {1.75, 27.5}, {1.0, 20.0}, {-5.0, 10.0}, {99.0, 30.0}})
        EXPECT_DOUBLE_EQ(channel.evaluate(time), value) << time;
    EXPECT_EQ(HostChannel().evaluate(1.0), 0.0);
}

TEST(HostChannelKeys, SegmentsPrevNextAndRemoval)
{
    HostChannel channel;
    EXPECT_EQ(channel.getNumSegments(), 0);
    channel.setKey(1.0, 5.0);
    EXPECT_EQ(channel.getNumSegments(), 1);
    channel.setKey(1.0 + 1e-9, 6.0); // same time within tolerance: replaces
    EXPECT_EQ(channel.getNumKeys(), 1);
    EXPECT_EQ(channel.evaluate(1.0), 6.0);
    channel.setKey(2.0, 7.0);
    channel.setKey(4.0, 9.0);
    EXPECT_EQ(channel.getNumSegments(), 2);

    double t = -1.0;
    EXPECT_TRUE(channel.getNextKeyTime(2.0, t));
    EXPECT_EQ(t, 4.0);
    EXPECT_TRUE(channel.getPrevKeyTime(2.0, t));
    EXPECT_EQ(t, 1.0);
    EXPECT_TRUE(channel.getPrevKeyTime(3.0, t));
    EXPECT_EQ(t, 2.0);
    EXPECT_FALSE(channel.getPrevKeyTime(1.0, t));
    EXPECT_FALSE(channel.getNextKeyTime(4.0, t));

    EXPECT_FALSE(channel.removeKey(3.0));
    EXPECT_TRUE(channel.removeKey(2.0));
    EXPECT_EQ(std::tuple(channel.findKey(2.0), channel.findKey(4.0)), std::tuple(-1, 1));
    EXPECT_DOUBLE_EQ(channel.evaluate(2.5), 7.5);
}

TEST(HostChannelPending, HeldUntilKeyedOrTimeChanges)
{
    HostChannelManager &manager = HostChannelManager::get();
    manager.reset();
    HostChannel channel = makeChannel({{0.0, 0.0}, {2.0, 10.0}});

    // Writing on a key, keying a pending value and a time change coming back are in the
    // channel_keys scenario. Between keys a value is pending: seen at that time only.
    channel.setValue(1.0, 100.0);
    EXPECT_TRUE(channel.isPendingAt(1.0));
    EXPECT_EQ(channel.evaluate(1.0), 100.0);
    EXPECT_DOUBLE_EQ(channel.evaluate(0.5), 2.5);
    EXPECT_DOUBLE_EQ(channel.evaluateKeys(1.0), 5.0);
    manager.setTime(1.0);
    EXPECT_FALSE(channel.hasPending());
    EXPECT_DOUBLE_EQ(channel.evaluate(1.0), 5.0);

    // Copying contents takes keys, never the pending value.
    HostChannel copy;
    channel.setValue(1.5, -1.0);
    copy.copyContents(channel);
    EXPECT_EQ(std::tuple(copy, copy.hasPending()), std::tuple(channel, false));
}
