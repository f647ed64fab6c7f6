// Test fixture: a fresh director with a small catalogue of operator types.
#pragma once

#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "host/HostParm.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// Adds operator types to the process-wide tables for one test and removes them afterwards,
/// so tests do not see each other's types. Names carry a prefix to stay clear of other suites.
class HostFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        myDirector.makeCurrent();
        HostParmTemplate t(HOST_PARM_XYZ, "t", "Translate", 3);
        HostParmTemplate r(HOST_PARM_XYZ, "r", "Rotate", 3);
        HostParmTemplate s(HOST_PARM_FLOAT, "scale", "Scale");
        s.setDefault(0, HostParmDefault(1.0));
        HostParmTemplate name(HOST_PARM_STRING, "label", "Label");
        addType("Object", "tgeo", {t, r, s}, "Sop");
        addType("Object", "tnull", {t, r, s});
        addType("Sop", "tbox", {HostParmTemplate(HOST_PARM_XYZ, "size", "Size", 3), name});
    }

    void TearDown() override
    {
        myDirector.clearScene();
        for (auto it = myTypes.rbegin(); it != myTypes.rend(); ++it)
            HostOperatorTable::getTable(it->first)->deleteOperator(it->second);
    }

    HostOperator *addType(const std::string &table, const std::string &name,
                          const HostParmTemplateList &templates, const std::string &child = "")
    {
        HostOperator *op = HostOperatorTable::getTable(table)->addOperator(name, name + " label",
                                                                           templates, child);
        if (op)
            myTypes.emplace_back(table, name);
        return op;
    }

    HostNode *make(const std::string &type, const std::string &path)
    {
        std::string error;
        HostNode *node = myDirector.createNode(type, path, &error);
        EXPECT_NE(node, nullptr) << error;
        return node;
    }

    HostParm *parm(HostNode *node, const char *channel, int &k)
    {
        return node->findChannel(channel, k);
    }
    HostParm *parm(HostNode *node, const char *channel)
    {
        int k = -1;
        return node->findChannel(channel, k);
    }

    /// Value of a channel ("tx") of a node at the current time.
    double value(HostNode *node, const char *channel)
    {
        int k = -1;
        HostParm *parm = node->findChannel(channel, k);
        EXPECT_NE(parm, nullptr) << channel;
        return parm ? parm->evalFloat(k, myDirector.getTime()) : 0.0;
    }

    HostDirector myDirector;
    std::vector<std::pair<std::string, std::string>> myTypes;
};
