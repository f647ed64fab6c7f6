// Shared helpers of the link tests: a scene with operator types and an inspectable link.
#pragma once

#include "host/HostParm.h"
#include "link/GZ_OpHandleLink.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "tests/host/HostFixture.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace gztest
{

/// A link whose protected value operations are public, and which records the calls of its
/// hooks so that tests can see which handle parameters were linked and unlinked.
class TestLink : public GZ_OpHandleLink
{
public:
    using GZ_OpHandleLink::beginDistributedUndoBlock;
    using GZ_OpHandleLink::copyKeyStructure;
    using GZ_OpHandleLink::endDistributedUndoBlock;
    using GZ_OpHandleLink::getDistributedUndoBlockId;
    using GZ_OpHandleLink::getOpParmLabel;
    using GZ_OpHandleLink::getParmInstValue;
    using GZ_OpHandleLink::getParmInstVector3;
    using GZ_OpHandleLink::getParmState;
    using GZ_OpHandleLink::getParmValue;
    using GZ_OpHandleLink::getParmVector3;
    using GZ_OpHandleLink::GZ_OpHandleLink;
    using GZ_OpHandleLink::inDistributedUndoBlock;
    using GZ_OpHandleLink::modifyParm;
    using GZ_OpHandleLink::performParmCallback;
    using GZ_OpHandleLink::readParm;
    using GZ_OpHandleLink::setOpParmValue;
    using GZ_OpHandleLink::setParmInstValue;
    using GZ_OpHandleLink::setParmInstVector3;
    using GZ_OpHandleLink::setParmValue;
    using GZ_OpHandleLink::setParmVector3;
    using GZ_OpHandleLink::theUndoDebugFlag;

    int justLinked(int index) override
    {
        myLinked.push_back(index);
        return 1;
    }
    void justUnlinked(int index) override { myUnlinked.push_back(index); }
    void descriptionChanged(const char *previous) override
    {
        myDescriptionChanges.push_back(previous ? previous : "");
    }
    void updateFromOpParms() override { ++myUpdates; }
    GZ_Interest *getInputGroupInterests() const override
    {
        return myInterests.empty() ? GZ_OpHandleLink::getInputGroupInterests()
                                   : const_cast<GZ_Interest *>(myInterests.data());
    }

    /// Binds handle parameters 0, 1, ... of `type` in order; a null entry skips an index.
    void bind(const char *type, std::initializer_list<const char *> bindings)
    {
        int index = 0;
        for (const char *binding : bindings)
            if (const int i = index++; binding)
                linkOpParm(type, i, binding);
    }

    /// A read as (result, value), so that one check covers both.
    template <typename T> std::pair<int, T> get(int index, T dflt) const
    {
        T value{};
        const int result = getParmValue(index, value, dflt);
        return {result, value};
    }

    /// Makes the link watch handle parameter `index` through `callback`.
    void watch(int index, InterestCallback callback)
    {
        if (myInterests.empty())
            myInterests.emplace_back();
        myInterests.insert(myInterests.end() - 1, GZ_Interest(index, callback));
    }

    std::vector<int> myLinked;
    std::vector<int> myUnlinked;
    std::vector<std::string> myDescriptionChanges;
    int myUpdates = 0;
    std::vector<GZ_Interest> myInterests;
};

/// A fresh director with a transform-like object type and a box-like type; the handle
/// template drives tx, ty, tz, a scale and a group. Tests own their links and destroy them
/// before the scene goes.
class LinkFixture : public ::HostFixture
{
protected:
    static constexpr const char *theParmNames[] = {"tx", "ty", "tz", "uniform", "group", nullptr};

    void SetUp() override
    {
        HostFixture::SetUp();
        GZ_ResourceManager::setHideLockedHandleParts(true);
        HostParmTemplate t(HOST_PARM_XYZ, "t", "Translate", 3);
        HostParmTemplate s(HOST_PARM_FLOAT, "scale", "Scale");
        s.setDefault(0, HostParmDefault(1.0));
        HostParmTemplate still(HostParmType(HostParmBasic::Float, 0), "still", "Still");
        HostParmTemplate count(HOST_PARM_INT, "count", "Count");
        HostParmTemplate group(HOST_PARM_STRING, "group", "Group");
        myXform = addType("Object", "lxform", {t, s, still, count, group});
        myBox = addType("Object", "lbox", {t, s});
        myTemplate = std::make_unique<GZ_GZTemplate>("ltest", "Link Test", "obj sop", "",
                                                     theParmNames, 0, ~0u, false);
    }

    void TearDown() override
    {
        HostFixture::TearDown();
        GZ_ResourceManager::setHideLockedHandleParts(true);
    }

    std::unique_ptr<TestLink> makeLink() { return std::make_unique<TestLink>(*myTemplate); }

    /// A link bound on the type of `node` as TestLink::bind binds, and attached to it.
    std::unique_ptr<TestLink> makeLink(HostNode *node, std::initializer_list<const char *> bindings)
    {
        std::unique_ptr<TestLink> link = makeLink();
        link->bind(node->getOperatorName().c_str(), bindings);
        link->attach(*node);
        return link;
    }

    HostOperator *myXform = nullptr;
    HostOperator *myBox = nullptr;
    std::unique_ptr<GZ_GZTemplate> myTemplate;
};

} // namespace gztest
