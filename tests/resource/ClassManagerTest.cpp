// The class manager keeps handle and selector classes in parallel, in order of addition.
#include "resource/GZ_ClassManager.h"

#include <gtest/gtest.h>

TEST(ClassManager, KeepsParallelArraysInOrder)
{
    GZ_ClassManager classes;
    int ctorA = 0, ctorB = 0, data = 0;
    classes.addGZ("xform", &ctorA);
    classes.addGZ("pivot", &ctorB);
    classes.addSelector("prims", &data, &ctorA);

    ASSERT_EQ(classes.getNumGZs(), 2);
    EXPECT_EQ(classes.getGZName(1), "pivot");
    EXPECT_EQ(classes.getGZConstructor(1), &ctorB);
    ASSERT_EQ(classes.getNumSelectors(), 1);
    // The second argument of addSelector is the data, the third the constructor.
    EXPECT_EQ(classes.getSelectorData(0), &data);
    EXPECT_EQ(classes.getSelectorConstructor(0), &ctorA);

    GZ_ClassManager copy(classes);
    EXPECT_EQ(copy.getGZName(0), "xform");
    EXPECT_EQ(GZgetClassManager(), GZgetClassManager());
}
