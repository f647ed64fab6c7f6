// The listener list: the two duplicate rules, and listeners that change the list while called.
#include "host/HostCallbackList.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
using Callback = void (*)(void *);
std::string theCalls;
HostCallbackList<Callback> *theList = nullptr;

void callA(void *)
{
    theCalls += "a";
}
void callB(void *)
{
    theCalls += "b";
}
// Removes B and adds itself again while it is called.
void callMeddler(void *data)
{
    theCalls += "m";
    theList->remove(&callB, data);
    theList->add(&callMeddler, data);
}

std::string run(const HostCallbackList<Callback> &list)
{
    theCalls.clear();
    list.forEach([](Callback callback, void *data) { callback(data); });
    return theCalls;
}
} // namespace

TEST(HostCallbackList, DuplicateRulesAndChangesDuringACall)
{
    int data = 0;
    for (HostDuplicates rule : {HostDuplicates::Refused, HostDuplicates::Kept})
    {
        SCOPED_TRACE(static_cast<int>(rule));
        const bool kept = rule == HostDuplicates::Kept;
        HostCallbackList<Callback> list(rule);
        theList = &list;
        list.add(&callA, &data);
        list.add(&callB, &data);
        list.add(&callA, &data);
        list.add(&callA, nullptr); // other data: another listener under either rule
        EXPECT_EQ(run(list), kept ? "abaa" : "aba");
        list.remove(&callA, &data);
        EXPECT_EQ(run(list), kept ? "baa" : "ba");

        // The call goes to the entries there when it began.
        list.add(&callMeddler, &data);
        EXPECT_EQ(run(list), kept ? "baam" : "bam");
        EXPECT_EQ(run(list), kept ? "aamm" : "am");
        list.clear();
        EXPECT_TRUE(list.empty());
    }
    theList = nullptr;
}
