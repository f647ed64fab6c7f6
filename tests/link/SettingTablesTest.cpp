// Tests of the handle setting tables: keys, defaults, recording, saving and loading.
#include "gz_LinkTestEnv.h"

#include "host/HostDiagnostics.h"
#include "host/HostStringHash.h"
#include "link/GZ_SettingList.h"

#include <sstream>

using gztest::LinkFixture;
using gztest::TestLink;

namespace
{

/// A handle that also keeps a visibility setting, as the host's handles do.
class VisibleLink : public TestLink
{
public:
    using TestLink::TestLink;

    void saveSettings(GZ_SettingList &settings, bool for_node) const override
    {
        GZ_OpHandleLink::saveSettings(settings, for_node);
        if (myInvisible)
            settings.appendSetting("invisible", true);
    }
    void loadSettings(const GZ_SettingList &settings) override
    {
        GZ_OpHandleLink::loadSettings(settings);
        settings.getSetting("invisible", myInvisible, false);
    }

    bool myInvisible = false;
};

/// The "omparm" lines of a saved scene that mention `name`.
std::string omparmLines(const std::string &name)
{
    std::ostringstream os;
    saveGZResourceManagerCallback(os);
    std::istringstream lines(os.str());
    std::string result;
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("omparm " + name + " ", 0) == 0)
            result += line + "\n";
    return result;
}

/// Handle settings tests share the process-wide manager: each registers a handle type and
/// binding descriptions of its own.
class SettingTables : public LinkFixture
{
protected:
    void SetUp() override
    {
        LinkFixture::SetUp();
        myManager = GZcreateResourceManager(/*print_warnings=*/true);
        static int theCounter = 0;
        myType = "stab" + std::to_string(++theCounter);
        static const char *names[] = {"tx", "ty", "tz", nullptr};
        myGZ = new GZ_GZTemplate(myType.c_str(), "Settings Test", "object sop", "", names, 0, ~0u,
                                 false);
        ASSERT_EQ(myManager->registerOpHandleLink(myGZ), 1);
        myNode = make("lxform", "/obj/a");
    }

    /// A link of this test's handle type, with the description of a binding.
    template <class T = TestLink> std::unique_ptr<T> handle(const char *description)
    {
        auto link = std::make_unique<T>(*myGZ);
        link->setRootDescription(description);
        link->attach(*myNode);
        return link;
    }

    GZ_ResourceManager *myManager = nullptr;
    GZ_GZTemplate *myGZ = nullptr;
    std::string myType;
    HostNode *myNode = nullptr;
};

} // namespace

TEST(OpGZKey, EqualityAndHashIgnoreTheType)
{
    using Key = GZ_ResourceManager::GZ_OpGZKey;
    const Key a("mover", "xform", 12);
    EXPECT_EQ(a, Key("mover", "other", 12));
    EXPECT_NE(a, Key("mover", "xform", 13));
    EXPECT_NE(a, Key("moved", "xform", 12));
    EXPECT_EQ(Key(nullptr, nullptr, 1).gzNameInSettingTable(), "");

    // Equal keys hash alike; the host's string hash is FNV-1a, the same on every platform.
    EXPECT_EQ(a.hash(), Key("mover", "other", 12).hash());
    EXPECT_NE(a.hash(), Key("mover", "xform", 13).hash());
    EXPECT_EQ(HostStringHash("a"), 0xaf63dc4c8601ec8cull);
}

TEST_F(SettingTables, DefaultsComeFromTheFirstMatchingBinding)
{
    ASSERT_EQ(myManager->bind(myXform, myType.c_str(), "main", "tx", "tx", "color(0 1 0)"), 1);
    ASSERT_EQ(myManager->bind(myXform, myType.c_str(), "other", "ty", "ty", "showoppath(0)"), 1);
    const GZ_SettingList *defaults =
        myManager->getDefaultGZSettings(*myXform, myType.c_str(), "other");
    ASSERT_NE(defaults, nullptr);
    std::string written;
    defaults->generateSettingString(written);
    EXPECT_EQ(written, "showoppath(0)");
    EXPECT_EQ(myManager->getDefaultGZSettings(*myXform, myType.c_str(), "none"), nullptr);
    EXPECT_EQ(myManager->getDefaultGZSettings(*myBox, myType.c_str(), "main"), nullptr);

    // A handle with no stored settings loads the binding's defaults.
    auto link = handle("main");
    link->loadSettingsFromTables(true);
    EXPECT_EQ(link->getActiveColor(), HostColor(HostColor::RGB, 0, 1, 0));
    // Without an operator-type restriction there are no defaults: an empty list is loaded.
    link->setAllowUsingOpTypeSettings(false);
    link->loadSettingsFromTables(true);
    EXPECT_EQ(link->getActiveColor(), GZ_OpHandleLink::getDefaultColor());
}

TEST_F(SettingTables, RecordedEntriesAreCompletedFromTheDefaults)
{
    ASSERT_EQ(
        myManager->bind(myXform, myType.c_str(), "rec", "tx", "tx", "showoppath(1) color(0 1 0)"),
        1);
    myDirector.setLoading(true);
    myManager->recordGZSettings("rec", myType.c_str(), *myNode, "showoppath(0)");
    myDirector.setLoading(false);

    auto link = handle("rec");
    link->loadSettingsFromTables(false);
    EXPECT_FALSE(link->getShowOpPath());
    EXPECT_EQ(link->getActiveColor(), HostColor(HostColor::RGB, 0, 1, 0));

    // Recorded outside a scene load, the entry stands as it is.
    myManager->recordGZSettings("rec", myType.c_str(), *myNode, "showoppath(0)");
    auto plain = handle("rec");
    plain->loadSettingsFromTables(false);
    EXPECT_FALSE(plain->getShowOpPath());
    EXPECT_EQ(plain->getActiveColor(), GZ_OpHandleLink::getDefaultColor());

    // A handle that does not read a recorded setting is warned about.
    myManager->recordGZSettings("rec", myType.c_str(), *myNode, "showoppath(0) bogus(1 2)");
    HostDiagnosticCapture capture;
    plain->loadSettingsFromTables(false);
    EXPECT_EQ(capture.text(), "Warning: The following settings are unrecognized by the " + myType +
                                  " handle:\nbogus(1 2)\n");
}

TEST_F(SettingTables, SavingWritesOmparmLinesUnlessAtDefaults)
{
    ASSERT_EQ(myManager->bind(myXform, myType.c_str(), "save", "tx", "tx", ""), 1);
    auto link = handle("save");
    link->saveSettingsToAppropriateLocation();
    EXPECT_EQ(omparmLines("save"), "");

    link->setActiveColor(HostColor(HostColor::RGB, 0, 0, 1));
    link->saveSettingsToAppropriateLocation();
    EXPECT_EQ(omparmLines("save"), "omparm save " + myType + " /obj/a \"color(0 0 1)\"\n");

    auto again = handle("save");
    again->loadSettingsFromTables(false);
    EXPECT_EQ(again->getActiveColor(), HostColor(HostColor::RGB, 0, 0, 1));

    // Written lines read back through recording give the same entry.
    myManager->recordGZSettings("save", myType.c_str(), *myNode, "color(0 0 1) ownerop('x')");
    EXPECT_EQ(omparmLines("save"),
              "omparm save " + myType + " /obj/a \"color(0 0 1) ownerop('x')\"\n");

    // Removing the link's settings removes its entries from both tables.
    myManager->removeGZSettingsFromTables(*link);
    EXPECT_EQ(omparmLines("save"), "");
    EXPECT_EQ(myManager->getLastGZSettingTable().count(
                  GZ_ResourceManager::lastGZSettingsKey(myType.c_str(), "save", "lxform")),
              0u);
}

TEST_F(SettingTables, LastTableKeepsOnlyDepartures)
{
    ASSERT_EQ(myManager->bind(myXform, myType.c_str(), "last", "tx", "tx", "color(0 1 0)"), 1);
    const std::string key = GZ_ResourceManager::lastGZSettingsKey(myType.c_str(), "last", "lxform");
    EXPECT_EQ(key, myType + "-last-lxform");
    auto link = handle("last");
    link->setAllowUsingPerOpSettingsTable(false);
    link->setActiveColor(HostColor(HostColor::RGB, 0, 0, 1));
    link->saveSettingsToAppropriateLocation();
    ASSERT_EQ(myManager->getLastGZSettingTable().count(key), 1u);

    // Another node of the type picks up the last settings.
    HostNode *b = make("lxform", "/obj/b");
    TestLink other(*myGZ);
    other.setRootDescription("last");
    other.attach(*b);
    other.loadSettingsFromTables(true);
    EXPECT_EQ(other.getActiveColor(), HostColor(HostColor::RGB, 0, 0, 1));
    other.loadSettingsFromTables(false); // not asked to use it: the defaults
    EXPECT_EQ(other.getActiveColor(), HostColor(HostColor::RGB, 0, 1, 0));

    // Back at the defaults, the entry goes and loading falls back to the defaults.
    link->setActiveColor(HostColor(HostColor::RGB, 0, 1, 0));
    link->saveSettingsToAppropriateLocation();
    EXPECT_EQ(myManager->getLastGZSettingTable().count(key), 0u);
    other.loadSettingsFromTables(true);
    EXPECT_EQ(other.getActiveColor(), HostColor(HostColor::RGB, 0, 1, 0));

    // Without an operator-type restriction the key has no type and no defaults apply.
    link->setAllowUsingOpTypeSettings(false);
    link->saveSettingsToAppropriateLocation();
    EXPECT_EQ(myManager->getLastGZSettingTable().count(myType + "-last-"), 1u);
    link->setActiveColor(GZ_OpHandleLink::getDefaultColor());
    link->saveSettingsToAppropriateLocation();
    EXPECT_EQ(myManager->getLastGZSettingTable().count(myType + "-last-"), 0u);
}

TEST_F(SettingTables, LastVisibilityIsTheDefaultOneWhenNotAllowed)
{
    ASSERT_EQ(myManager->bind(myXform, myType.c_str(), "shown", "tx", "tx", ""), 1);
    ASSERT_EQ(myManager->bind(myXform, myType.c_str(), "hidden", "ty", "ty", "invisible(1)"), 1);
    std::string stored;
    for (const char *description : {"shown", "hidden"})
    {
        auto link = handle<VisibleLink>(description);
        link->setAllowUsingLastVisibilitySetting(false);
        link->setActiveColor(HostColor(HostColor::RGB, 0, 0, 1));
        link->myInvisible = description[0] == 's'; // the user's choice is the other one
        link->saveSettingsToAppropriateLocation();
        myManager->getLastGZSettingTable()
            .at(GZ_ResourceManager::lastGZSettingsKey(myType.c_str(), description, "lxform"))
            ->generateSettingString(stored);
        EXPECT_EQ(stored, description[0] == 's' ? "color(0 0 1)" : "color(0 0 1) invisible(1)");
    }
}

TEST_F(SettingTables, RemovingAnOperatorTypesSettings)
{
    HostOperator *scripted =
        addType("Object", "lscripted", {HostParmTemplate(HOST_PARM_XYZ, "t", "T", 3)});
    ASSERT_NE(scripted, nullptr);
    ASSERT_EQ(myManager->bind(scripted, myType.c_str(), "gone", "tx", "tx", ""), 1);
    HostNode *node = make("lscripted", "/obj/s");
    TestLink link(*myGZ);
    link.setRootDescription("gone");
    link.attach(*node);
    link.setActiveColor(HostColor(HostColor::RGB, 0, 0, 1));
    link.saveSettingsToAppropriateLocation();
    const std::string key =
        GZ_ResourceManager::lastGZSettingsKey(myType.c_str(), "gone", "lscripted");
    EXPECT_EQ(omparmLines("gone"), "omparm gone " + myType + " /obj/s \"color(0 0 1)\"\n");

    // Only types that keep their own bindings reset their handles' settings.
    myManager->removeGZSettingsFromTables(*scripted);
    EXPECT_EQ(myManager->getLastGZSettingTable().count(key), 1u);
    scripted->setFlags(scripted->getFlags() | HostOperator::FLAG_SCRIPTED);
    myManager->removeGZSettingsFromTables(*scripted);
    EXPECT_EQ(myManager->getLastGZSettingTable().count(key), 0u);
    EXPECT_EQ(omparmLines("gone"), "");
}
