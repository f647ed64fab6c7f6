// Bindings of handles and selectors to operator types.
#include "gz_ResourceTestEnv.h"

#include "link/GZ_SettingList.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "tests/DiagnosticsRecorder.h"

#include <memory>
#include <tuple>

using gztest::ScratchManager;

namespace
{
DiagnosticsRecorder theDiagnostics;

// A scratch registry with a Sop/Object handle, a Cop2-capable handle and two selectors.
class Bindings : public testing::Test
{
protected:
    void SetUp() override
    {
        static const char *const xform_parms[] = {"input", "tx", "ty", "tz", "rx", nullptr};
        static const char *const ladder_parms[] = {"parm0", "parm1", nullptr};
        myManager.registerOpHandleLink(new GZ_GZTemplate("xform", "Transformer", "Sop Object", "",
                                                         xform_parms, 0, ~0u, false));
        myManager.registerOpHandleLink(new GZ_GZTemplate("ladder", "Ladder", "Sop Object Dop Cop2",
                                                         "", ladder_parms, 2, ~0u, false));
        myManager.registerSelector(new GZ_SelectorTemplate("prims", "Primitives", "Sop", false));
        myManager.registerSelector(new GZ_SelectorTemplate("dopsel", "Dops", "Dop", false));
        mySop = gztest::addOperator(HOST_NETWORK_SOP, "xformop", gztest::transformTemplates());
    }

    const GZ_BindingHandleInfo &handle(HostOperator *op, int i)
    {
        return (*myManager.getBindingHandles(op))[i];
    }

    /// A selector with the usual prompt and flags: what a refusal depends on is all that varies.
    int bindSelector(HostOperator *op, const char *selector, const char *parm, bool skip = false)
    {
        return myManager.bindSelector(op, selector, "d", "Select", parm, 0, 1, "", 0, "", 0, "",
                                      skip);
    }

    ScratchManager myManager;
    HostOperator *mySop = nullptr;
};

// Loads its bindings on first use of its templates, like a definition read on demand.
class LazyOperator : public HostOperator
{
public:
    LazyOperator(const std::string &name, GZ_ResourceManager &manager)
        : HostOperator(name, name, gztest::transformTemplates()), myManager(manager)
    {
    }
    int myLoads = 0;

protected:
    void ensureTemplatesLoaded() override
    {
        if (myLoads++ == 0)
            myManager.bindScriptOp(this, "xform", "lazy", "tx", "tx", "");
    }

private:
    GZ_ResourceManager &myManager;
};

} // namespace

TEST_F(Bindings, LinksBuildInstancesWithIds)
{
    EXPECT_EQ(myManager.getBindingHandles(mySop), nullptr);
    EXPECT_EQ(myManager.bind(mySop, "xform", "main", "tx", "tx", "showoppath(1)"), 1);
    EXPECT_EQ(myManager.bind(mySop, "xform", "main", "ty", "ty", "showoppath(0)"), 1);
    EXPECT_EQ(myManager.bind(mySop, "xform", "main", "tx", "tx", nullptr), -5);
    // The same operator channel may drive another handle parameter.
    EXPECT_EQ(myManager.bind(mySop, "xform", "main", "tx", "rx", nullptr), 1);

    const std::vector<GZ_BindingHandleInfo> *handles = myManager.getBindingHandles(mySop);
    ASSERT_NE(handles, nullptr);
    ASSERT_EQ(handles->size(), 1u);
    const GZ_BindingHandleInfo &main = (*handles)[0];
    EXPECT_EQ(std::tuple(main.getGZName(), main.getGZDescription()), std::tuple("xform", "main"));
    EXPECT_EQ(main.getId(), 0);
    ASSERT_EQ(main.getBindings().size(), 3u);
    EXPECT_EQ(main.getBindings()[1].getOpParm(), "ty");
    EXPECT_EQ(main.getBindings()[2].getGZParm(), "rx");
    // Settings come from the first binding of the instance only.
    bool showoppath = false;
    main.getDefaultSettings().getSetting("showoppath", showoppath, false);
    EXPECT_TRUE(showoppath);

    // A second description makes a second instance; the short form binds no parameter.
    EXPECT_EQ(myManager.bind(mySop, "xform", "pivot", "tz", "tz", nullptr), 1);
    EXPECT_EQ(myManager.bind(mySop, "ladder", "slider", nullptr), 1);
    EXPECT_EQ(myManager.bind(mySop, "ladder", "slider", nullptr), 1);
    ASSERT_EQ(myManager.getBindingHandles(mySop)->size(), 3u);
    EXPECT_EQ(handle(mySop, 1).getId(), 1);
    EXPECT_EQ(handle(mySop, 2).getId(), 2);
    EXPECT_TRUE(handle(mySop, 2).getBindings().empty());

    // Identity, not field equality.
    GZ_BindingHandleInfo copy(handle(mySop, 0));
    EXPECT_FALSE(copy == handle(mySop, 0));
    EXPECT_TRUE(handle(mySop, 0) == handle(mySop, 0));
    EXPECT_EQ(copy.getBindings().size(), 3u);
}

TEST_F(Bindings, RefusalCodes)
{
    EXPECT_EQ(myManager.bind(mySop, "nosuch", "d", "tx", "tx", nullptr), -2);
    EXPECT_EQ(myManager.bind(mySop, "nosuch", "d", nullptr), -2);
    EXPECT_EQ(myManager.bind(mySop, "xform", "d", "tx", "nosuchparm", nullptr), -4);
    // A handle parameter is checked before the network.
    HostOperator *cop = gztest::addOperator(HOST_NETWORK_COP2, "copop");
    EXPECT_EQ(myManager.bind(cop, "xform", "d", "tx", "nosuchparm", nullptr), -4);
    EXPECT_EQ(myManager.bind(cop, "xform", "d", "tx", "tx", nullptr), -6);
    EXPECT_EQ(myManager.bind(cop, "xform", "d", nullptr), -6);
    EXPECT_EQ(myManager.bind(cop, "ladder", "d", "tx", "parm0", nullptr), 1);
    EXPECT_EQ(myManager.bind(nullptr, "ladder", "d", "tx", "parm0", nullptr), -6);
    EXPECT_EQ(myManager.getBindingHandles(mySop), nullptr);

    EXPECT_EQ(bindSelector(mySop, "nosuch", "group"), -2);
    EXPECT_EQ(bindSelector(mySop, "dopsel", "group"), -6);
    // The selection goes into a whole parameter: neither a component nor an unknown name.
    EXPECT_EQ(bindSelector(mySop, "prims", "tx"), -3);
    EXPECT_EQ(bindSelector(mySop, "prims", "t"), -3);
    EXPECT_EQ(bindSelector(mySop, "prims", "tx", /*skip=*/true), 1);
    EXPECT_EQ(
        myManager.bindSelector(mySop, "prims", "e", "Select", "", 0, 1, "", 0, "", 0, "", false),
        1);
    EXPECT_EQ(myManager.getBindingSelectors(mySop)->size(), 2u);
}

TEST_F(Bindings, OperatorsOutsideTheNetworkTablesCannotBeBound)
{
    static HostOperatorTable *theTable = HostOperatorTable::createTable("Vop", "VOP");
    ASSERT_NE(theTable, nullptr);
    HostOperator *vop =
        theTable->addOperator(gztest::uniqueName("vopop"), "Vop", gztest::transformTemplates());
    ASSERT_NE(vop, nullptr);

    theDiagnostics.start();
    EXPECT_EQ(myManager.bind(vop, "ladder", "d", "tx", "parm0", nullptr), -6);
    EXPECT_EQ(myManager.bind(vop, "ladder", "d", nullptr), -6);
    EXPECT_EQ(myManager.bindScriptOp(vop, "ladder", "d", "tx", "parm0", ""), -6);
    EXPECT_EQ(bindSelector(vop, "prims", "group"), -6);
    EXPECT_EQ(myManager.unbind(vop, nullptr, ""), -6);
    EXPECT_EQ(myManager.unbindSelector(vop, nullptr), -6);
    EXPECT_EQ(myManager.getBindingHandles(vop), nullptr);
    EXPECT_EQ(myManager.getBindingSelectors(vop), nullptr);
    EXPECT_EQ(GZ_ResourceManager::getOperatorKey(vop), "");
    // Refusals are codes only.
    EXPECT_EQ(theDiagnostics.take(), "");
}

TEST_F(Bindings, UnbindByDescriptionAndByParameter)
{
    ASSERT_EQ(myManager.bind(mySop, "xform", "a", "tx", "tx", nullptr), 1);
    ASSERT_EQ(myManager.bind(mySop, "xform", "a", "ty", "ty", nullptr), 1);
    ASSERT_EQ(myManager.bind(mySop, "xform", "b", "tx", "tx", nullptr), 1);
    ASSERT_EQ(myManager.bind(mySop, "ladder", "c", "ty", "parm0", nullptr), 1);
    ASSERT_EQ(myManager.bind(mySop, "ladder", "bare", nullptr), 1);

    // Without a description every instance is chosen: "b" loses its only link and goes,
    // and so does the bare instance, which holds none.
    EXPECT_EQ(myManager.unbind(mySop, nullptr, "tx"), 1);
    const std::vector<GZ_BindingHandleInfo> *handles = myManager.getBindingHandles(mySop);
    ASSERT_EQ(handles->size(), 2u);
    EXPECT_EQ((*handles)[0].getGZDescription(), "a");
    ASSERT_EQ((*handles)[0].getBindings().size(), 1u);
    EXPECT_EQ((*handles)[0].getBindings()[0].getOpParm(), "ty");
    EXPECT_EQ((*handles)[1].getGZDescription(), "c");

    // Parameter names are case-sensitive; an unbind that finds nothing still succeeds.
    EXPECT_EQ(myManager.unbind(mySop, nullptr, "TY"), 1);
    EXPECT_EQ(myManager.getBindingHandles(mySop)->size(), 2u);

    // Ids are never reused while the entry lives.
    ASSERT_EQ(myManager.bind(mySop, "xform", "b", "tz", "tz", nullptr), 1);
    EXPECT_EQ(handle(mySop, 2).getId(), 4);

    // A description with an empty parameter removes that instance only; others with no
    // links of their own are left alone.
    ASSERT_EQ(myManager.bind(mySop, "ladder", "empty", nullptr), 1);
    EXPECT_EQ(myManager.unbind(mySop, "a", ""), 1);
    handles = myManager.getBindingHandles(mySop);
    ASSERT_EQ(handles->size(), 3u);
    EXPECT_EQ((*handles)[0].getGZDescription(), "c");
    EXPECT_EQ((*handles)[2].getGZDescription(), "empty");

    // Everything: the entry goes, and a new one starts its ids at 0 again.
    EXPECT_EQ(myManager.unbind(mySop, nullptr, ""), 1);
    EXPECT_EQ(myManager.getBindingHandles(mySop), nullptr);
    ASSERT_EQ(myManager.bind(mySop, "xform", "again", "tx", "tx", nullptr), 1);
    EXPECT_EQ(handle(mySop, 0).getId(), 0);

    // After the current instance was removed, binding still finds instances by description.
    ASSERT_EQ(myManager.bind(mySop, "xform", "other", "ty", "ty", nullptr), 1);
    EXPECT_EQ(myManager.unbind(mySop, "other", ""), 1);
    EXPECT_EQ(myManager.bind(mySop, "xform", "again", "tx", "tx", nullptr), -5);
    EXPECT_EQ(myManager.bind(mySop, "xform", "again", "ty", "ty", nullptr), 1);
    EXPECT_EQ(handle(mySop, 0).getBindings().size(), 2u);
}

TEST_F(Bindings, SelectorsAreReplacedByDescription)
{
    ASSERT_EQ(myManager.bindSelector(mySop, "prims", "main", "Select prims", "group", 0, 1, "poly",
                                     0, "menu1", 0, "", false),
              1);
    ASSERT_EQ(myManager.bindSelector(mySop, "prims", "second", "Other", "", 1, 0, "", 1, "", 1, "",
                                     false),
              1);
    ASSERT_EQ(myManager.bindSelector(mySop, "prims", "main", "Pick again", "group", 2, 0, "nurbs",
                                     7, "menu2", 3, "extra", false),
              1);
    const std::vector<GZ_BindingSelectorInfo> *selectors = myManager.getBindingSelectors(mySop);
    ASSERT_NE(selectors, nullptr);
    ASSERT_EQ(selectors->size(), 2u);
    const GZ_BindingSelectorInfo &main = (*selectors)[0];
    EXPECT_EQ(std::tuple(main.getDescription(), main.getPrompt(), main.getOpInput(),
                         main.getOpInputReq(), main.getPrimMask()),
              std::tuple("main", "Pick again", 2, false, "nurbs"));
    EXPECT_EQ(
        std::tuple(main.getAllowDrag(), main.getMenu(), main.getAstSelAll(), main.getExtraInfo()),
        std::tuple(true, "menu2", true, "extra"));
    EXPECT_TRUE((*selectors)[1].getOpInputReq() == false && (*selectors)[1].getAllowDrag());

    EXPECT_EQ(myManager.unbindSelector(mySop, "nosuch"), 1);
    EXPECT_EQ(myManager.unbindSelector(mySop, "main"), 1);
    ASSERT_EQ(myManager.getBindingSelectors(mySop)->size(), 1u);
    EXPECT_EQ((*myManager.getBindingSelectors(mySop))[0].getDescription(), "second");
    // The index follows the removal: "second" is still replaced, not duplicated.
    ASSERT_EQ(
        myManager.bindSelector(mySop, "prims", "second", "New", "", 0, 0, "", 0, "", 0, "", false),
        1);
    ASSERT_EQ(myManager.getBindingSelectors(mySop)->size(), 1u);
    EXPECT_EQ((*myManager.getBindingSelectors(mySop))[0].getPrompt(), "New");

    ASSERT_EQ(myManager.bind(mySop, "xform", "main", "tx", "tx", nullptr), 1);
    myManager.removeAllBindings(mySop);
    EXPECT_EQ(myManager.getBindingSelectors(mySop), nullptr);
    EXPECT_EQ(myManager.getBindingHandles(mySop), nullptr);
}

TEST_F(Bindings, LookupsLoadOnDemandDefinitionsFirst)
{
    HostOperatorTable *sop = HostOperatorTable::getTable(HOST_NETWORK_SOP);
    auto *lazy = static_cast<LazyOperator *>(
        sop->addOperator(std::make_unique<LazyOperator>(gztest::uniqueName("lazy"), myManager)));
    ASSERT_NE(lazy, nullptr);
    const std::vector<GZ_BindingHandleInfo> *handles = myManager.getBindingHandles(lazy);
    ASSERT_NE(handles, nullptr);
    EXPECT_EQ((*handles)[0].getGZDescription(), "lazy");
}
