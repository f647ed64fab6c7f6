// Renames and deletions of an edit (records, whole-token rewriting, repair warnings) and
// auto-links (resolution warnings, node moves), on scenes made with gzsh commands.
#include "SharedShell.h"

#include "scriptedit/GZ_EditScriptedParms.h"
#include "scriptedit/GZ_OldParms.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostSpareData.h"

#include <gtest/gtest.h>


namespace
{
std::string run(const std::string &text)
{
    std::string errors;
    const std::string out = runInSharedShell(text, &errors);
    return out + errors;
}

HostNode *node(const std::string &path)
{
    return HostDirector::instance()->findNode(path);
}

GZ_EditScriptedParms spares(const std::string &path)
{
    GZ_EditScriptedParms::BuildOptions options;
    options.myFallbackToOperator = false;
    return GZ_EditScriptedParms(node(path), options);
}

std::string joined(const std::vector<std::string> &lines)
{
    std::string out;
    for (const std::string &line : lines)
        out += line + "\n";
    return out;
}
} // namespace

TEST(OldParms, RecordsFollowRenamesAndDeletions)
{
    GZ_OldParms old;
    EXPECT_EQ(old.addOldParm("t", "tx", 0), 0);
    EXPECT_EQ(old.addOldParm("scale", "sc", 0), 1); // shorter channel: no suffix
    old.addOldParm("amp", nullptr, 0);
    EXPECT_EQ(old.getOldParm(0).myOriginalSuffix, "x");
    EXPECT_EQ(old.getOldParm(1).myOriginalSuffix, "");
    old.renameOldParmChannel("t", "x", "u");
    EXPECT_EQ(old.getOldParm(0).getNewChannel(), "tu");
    old.renameOldParm("amp", "gain");
    old.renameOldParm("gain", "level");
    old.renameOldParm(nullptr, "x");
    EXPECT_EQ(old.getNewName("amp"), "level");
    EXPECT_EQ(old.getOriginalName("level"), "amp");
    EXPECT_EQ(old.getNewName("never"), "never");
    old.renameOldParm("level", "amp"); // back: unchanged again
    EXPECT_FALSE(old.getOldParm(2).isChanged());
    old.deleteOldParm("scale");
    old.renameOldParm("scale", "size"); // deleted records do not follow
    EXPECT_TRUE(old.hasDeletedOldParm("scale"));
    old.undeleteOldParm("scale");
    EXPECT_FALSE(old.getOldParm(1).isChanged());
    old.deleteOldParm("amp");
    std::vector<std::string> deleted, from, to;
    old.getDeletedParms(deleted);
    old.getRenamedParms(from, to);
    EXPECT_EQ(deleted, std::vector<std::string>{"amp"});
    EXPECT_TRUE(from.empty()); // "t" kept its name: only its channel changed
}

TEST(OldParms, WholeTokensOnPathsThatLeadToTheEditedNode)
{
    run("scenenew; nodeadd geo /obj/geo1; nodeadd geo /obj/geo2; nodeadd geo /obj/other;"
        " nodeadd xform /obj/geo1/sub");
    struct Case
    {
        const char *from;
        const char *text;
        const char *expected; // null: unchanged
    };
    const Case cases[] = {
        {"/obj/geo2", "ch(\"../geo1/scale\") * 2", "ch(\"../geo1/size\") * 2"},
        {"/obj/geo2", "ch(\"/obj/geo1/scale\")+ch(\"../geo1/scale\")",
         "ch(\"/obj/geo1/size\")+ch(\"../geo1/size\")"},
        {"/obj/geo2", "ch(\"../geo1/scale2\")", nullptr},
        {"/obj/geo2", "ch(\"../geo1/prescale\")", nullptr},
        {"/obj/geo2", "ch(\"../geo1/scale/x\")", nullptr},
        {"/obj/geo2", "ch(\"../other/scale\")", nullptr},
        {"/obj/geo2", "ch(\"scale\")", nullptr},
        {"/obj/geo1", "ch(\"scale\") + ch(\"./scale\")", "ch(\"size\") + ch(\"./size\")"},
        {"/obj/geo1/sub", "ch(\"../scale\")", "ch(\"../size\")"},
        {"/obj/geo1/sub", "ch(\"scale\")", nullptr},
    };
    const HostNode *edited = node("/obj/geo1");
    for (const Case &c : cases)
    {
        std::string out;
        const bool changed =
            GZ_OldParms::getModifiedString(c.text, out, edited, node(c.from), "scale", "size");
        EXPECT_EQ(changed, c.expected != nullptr) << c.from << ": " << c.text;
        EXPECT_EQ(out, c.expected ? c.expected : c.text) << c.from;
    }
    std::string out;
    EXPECT_FALSE(GZ_OldParms::getModifiedString("scale", out, edited, edited, "", "size"));
    EXPECT_FALSE(GZ_OldParms::getModifiedString("scale", out, nullptr, edited, "scale", "x"));
}

TEST(OldParms, FieldsOfTheInterfaceAndLockedReferrers)
{
    run("scenenew; nodeadd geo /obj/geo1; nodeadd geo /obj/geo2; spareadd -s /obj/geo1 "
        "'parm { name amp label Amp type float default { 1 } } "
        "parm { name mix label Mix type float default { 0 } hidewhen \"{ amp > 1 }\" }'");
    run("parmset -e /obj/geo2 t 'ch(\"../geo1/amp\")' 'ch(\"../geo1/amp\") + 1' 0");
    GZ_EditScriptedParms parms = spares("/obj/geo1");
    GZ_EditScriptedParm *mix = parms.getParmWithName("mix");
    mix->setSpareValue(HostSpareData::CALLBACK_TAG, "echo `ch(\"amp\")`");
    mix->setCallbackLanguage(0);
    mix->setDefault(0, "ch(\"amp\") / 2");
    GZ_OldParms old;
    old.preserveOldParms(parms);
    old.renameOldParm("amp", "gain");
    parms.getParmWithName("amp")->setName("gain");
    node("/obj/geo2")->setPermissions(0);
    std::vector<std::string> warnings;
    ASSERT_EQ(old.updateNode(parms, warnings), 1);
    EXPECT_EQ(joined(warnings), "The parameter 'amp' has been renamed to 'gain',\n"
                                "        and is referenced by '/obj/geo2/tx'\n"
                                "        in the expression 'ch(\"../geo1/amp\")'.\n"
                                "        An attempt to modify this expression failed.\n"
                                "The parameter 'amp' has been renamed to 'gain',\n"
                                "        and is referenced by '/obj/geo2/ty'\n"
                                "        in the expression 'ch(\"../geo1/amp\") + 1'.\n"
                                "        An attempt to modify this expression failed.\n");
    node("/obj/geo2")->setPermissions(0777);
    GZ_EditScriptedParms after = spares("/obj/geo1");
    mix = after.getParmWithName("mix");
    ASSERT_NE(mix, nullptr);
    EXPECT_STREQ(mix->getSpareValue(HostSpareData::CALLBACK_TAG), "echo `ch(\"gain\")`");
    EXPECT_EQ(mix->getCondition(1), "{ gain > 1 }");
    EXPECT_EQ(mix->getDefault(0), "ch(\"gain\") / 2");

    // Deleting it: every field that names it is reported, none is changed.
    old.preserveOldParms(after);
    old.deleteOldParm("gain");
    warnings.clear();
    after.removeParms(after.getParmIndexWithName("gain"), after.getParmIndexWithName("gain"));
    GZ_OldParms::setParameterDeletionBehavior(2);
    ASSERT_EQ(old.updateNode(after, warnings), 1);
    GZ_OldParms::setParameterDeletionBehavior(0);
    const std::string text = joined(warnings);
    for (const char *field : {"Callback", "Hide When", "Default"})
        EXPECT_NE(text.find(std::string("The parameter 'gain' has been deleted,\n"
                                         "        but is referenced by the '") +
                            field + "' field of 'mix'.\n"),
                  std::string::npos)
            << field << " in\n"
            << text;
}

TEST(AutoLinks, ResolutionWarningsAndNodeMoves)
{
    run("scenenew; nodeadd geo /obj/geo1; nodeadd geo /obj/geo2; spareadd -s /obj/geo1 "
        "'parm { name amp label Amp type float default { 3 } } "
        "parm { name v label Vec type vector size 3 default { 0 0 0 } }'");
    GZ_EditScriptedParms parms = spares("/obj/geo1");
    GZ_EditScriptedParm *amp = parms.getParmWithName("amp");
    amp->setAutolink(0, "../geo2/nosuch ../geo2/tx");
    amp->setAutolinkChanged(0, 1);
    GZ_EditScriptedParm *vec = parms.getParmWithName("v");
    vec->setAutolink(1, "../nowhere/tx");
    vec->setAutolinkChanged(1, 1);
    vec->setAutolink(2, "../geo2/zz#");
    vec->setAutolinkChanged(2, 1);
    std::vector<std::string> warnings;
    std::vector<int> ids, indices;
    parms.applyAutoLinks(warnings, ids, indices);
    EXPECT_EQ(joined(warnings), "Unable to find destination channel: nosuch\n"
                                "Linking parameter: Amp\n"
                                "Unable to find autolink node: ../nowhere\n"
                                "Linking parameter: Vec\n"
                                "Unable to find destination multiparm channel: zz#\n"
                                "Linking parameter: Vec\n");
    EXPECT_TRUE(ids.empty()); // the failure ends its component: tx is not linked

    node("/obj/geo2")->setPermissions(0);
    amp->setAutolink(0, "../geo2/tx");
    vec->setAutolinkChanged(1, 0);
    vec->setAutolinkChanged(2, 0);
    warnings.clear();
    parms.applyAutoLinks(warnings, ids, indices);
    EXPECT_EQ(joined(warnings), "Couldn't modify autolink node: /obj/geo2\n"
                                "Linking parameter: Amp\n");
    node("/obj/geo2")->setPermissions(0777);

    // Taken links are refused with a warning; both lists stay.
    warnings.clear();
    std::vector<GZ_EditScriptedParm *> changed;
    parms.addParametersToAutolinks(vec, {"/obj/geo2/tx", "/obj/geo2/s"}, "/obj/geo1", true,
                                   changed, warnings);
    EXPECT_EQ(joined(warnings), "/obj/geo2/tx already linked to amp\n");
    EXPECT_EQ(vec->getAutolink(0), "/obj/geo2/sx");
    EXPECT_EQ(vec->getAutolink(1), "../nowhere/tx /obj/geo2/sy");
    vec->setAutolink(2, "");

    struct Move
    {
        const char *from, *to;
        bool changes;
        const char *amp;
    };
    const Move moves[] = {
        {"/obj/geo3", "/obj/geo4", false, "../geo2/tx"},
        {"/obj/geo2", "/obj/geo9", true, "/obj/geo9/tx"},
        {"", "/obj/x", false, "/obj/geo9/tx"},
    };
    for (const Move &m : moves)
    {
        EXPECT_EQ(parms.updateAutoLinksForNameChange("/obj/geo1", m.from, m.to), m.changes);
        EXPECT_EQ(amp->getAutolink(0), m.amp) << m.from;
    }
}

// Edits whose renames reuse names (instance patterns, swaps, a rename onto a deleted name):
// values, expressions and references end up under the new names, and undo brings back the
// old ones.
TEST(OldParms, RenamesCarryInstancesAndExchangedNames)
{
    const char *const setup =
        "scenenew; nodeadd geo /obj/geo1; nodeadd geo /obj/geo2; spareadd -s /obj/geo1 "
        "'parm { name a label A type float default { 1 } } "
        "parm { name b label B type float default { 2 } } "
        "multiparm { name pts label Pts default 2 parm { name pt# label Pt type float "
        "default { 0 } } }'; parmset /obj/geo1 a 4; parmset -e /obj/geo1 b '$F + 7'; "
        "parmset /obj/geo1 pt1 5; parmset -e /obj/geo1 pt2 'ch(\"pt1\") * 3'; "
        "parmset -e /obj/geo2 t 'ch(\"../geo1/a\") + 10 * ch(\"../geo1/b\")' "
        "'ch(\"../geo1/pt2\")' 0";
    const char *const before = "ch(\"../geo1/a\") + 10 * ch(\"../geo1/b\")\n"
                               "ch(\"../geo1/pt2\")\n4\n$F + 7\n5\nch(\"pt1\") * 3\n";
    const char *const show_before = "parmget -e /obj/geo2 tx; parmget -e /obj/geo2 ty; "
                                    "parmget -e /obj/geo1 a; parmget -e /obj/geo1 b; "
                                    "parmget -e /obj/geo1 pt1; parmget -e /obj/geo1 pt2";
    struct Case
    {
        const char *edit;
        const char *show;
        const char *expected;
    };
    const Case cases[] = {
        {"sparerename /obj/geo1 pt# point#",
         "parmget -e /obj/geo2 ty; parmget -e /obj/geo1 point1; parmget -e /obj/geo1 point2",
         "ch(\"../geo1/point2\")\n5\nch(\"point1\") * 3\n"},
        {"sparerename /obj/geo1 a b b a",
         "parmget -e /obj/geo2 tx; parmget -e /obj/geo1 a; parmget -e /obj/geo1 b",
         "ch(\"../geo1/b\") + 10 * ch(\"../geo1/a\")\n$F + 7\n4\n"},
    };
    for (const Case &c : cases)
    {
        run(setup);
        EXPECT_EQ(run(std::string(c.edit) + "; " + c.show), c.expected) << c.edit;
        run("undo");
        EXPECT_EQ(run(show_before), before) << c.edit;
    }

    // Deleting a and renaming b to a in one edit: a's referrers are baked, b's follow it.
    run(setup);
    run("parmset -e /obj/geo2 t 'ch(\"../geo1/a\")' 0 'ch(\"../geo1/b\")'");
    GZ_EditScriptedParms parms = spares("/obj/geo1");
    GZ_OldParms old;
    old.preserveOldParms(parms);
    parms.removeParms(parms.getParmIndexWithName("a"), parms.getParmIndexWithName("a"));
    old.deleteOldParm("a");
    parms.getParmWithName("b")->setName("a");
    old.renameOldParm("b", "a");
    std::vector<std::string> warnings;
    ASSERT_EQ(old.updateNode(parms, warnings), 1);
    EXPECT_EQ(run("parmget -e /obj/geo2 tx; parmget -e /obj/geo2 tz; parmget -e /obj/geo1 a"),
              "4\nch(\"../geo1/a\")\n$F + 7\n");
    EXPECT_TRUE(warnings.empty()) << joined(warnings);
}

// A link to an instance pattern drives every instance, those made later too; it follows
// renames at either end and node moves, goes or stays with a deletion by the deletion behaviour, and undo
// brings it back as it was.
TEST(AutoLinks, MultiparmLinksFollowRenamesAndDeletions)
{
    const char *const setup =
        "scenenew; nodeadd geo /obj/geo1; nodeadd geo /obj/geo2; spareadd -s /obj/geo1 "
        "'parm { name amp label Amp type float default { 3 } }'; spareadd -s /obj/geo2 "
        "'multiparm { name pts label Pts default 2 parm { name pt# label Pt type float "
        "default { 0 } } }'; sparelink /obj/geo1 amp /obj/geo2/pt#";
    // The second instance existed at the edit, the third is made after it.
    const char *const show = "parmget -e /obj/geo2 pt2; parmset /obj/geo2 pts 3; "
                             "parmget -e /obj/geo2 pt3";
    const char *const amp = "ch(\"../geo1/amp\")\n";
    struct Case
    {
        const char *edit;
        std::string expected;
        const char *show;
    };
    const char *const warnings = "The parameter 'amp' has been deleted,\n"
                                 "        and is referenced by '/obj/geo2/pt1'\n"
                                 "        in the expression 'ch(\"../geo1/amp\")'.\n"
                                 "The parameter 'amp' has been deleted,\n"
                                 "        and is referenced by '/obj/geo2/pt2'\n"
                                 "        in the expression 'ch(\"../geo1/amp\")'.\n"
                                 "The parameter 'amp' has been deleted,\n"
                                 "        and is referenced by '/obj/geo2/pt#'\n";
    const Case cases[] = {
        {"sparerename /obj/geo1 amp gain", "ch(\"../geo1/gain\")\nch(\"../geo1/gain\")\n", show},
        {"nodemv /obj/geo1 geo9", "ch(\"../geo9/amp\")\nch(\"../geo9/amp\")\n", show},
        {"spareunlink /obj/geo1 amp /obj/geo2/pt#", "3\n0\n", show},
        {"parmdeletebehavior 0; sparerm /obj/geo1 amp", "3\n0\n", show},
        {"parmdeletebehavior 2; sparerm /obj/geo1 amp", std::string(amp) + amp + warnings, show},
        {"sparerename /obj/geo2 pt# p#", std::string(amp) + amp,
         "parmget -e /obj/geo2 p2; parmset /obj/geo2 pts 3; parmget -e /obj/geo2 p3"},
    };
    run(setup);
    EXPECT_EQ(run(std::string("parmget /obj/geo2 pt1; ") + show), std::string("3\n") + amp + amp);
    for (const Case &c : cases)
    {
        run(setup);
        EXPECT_EQ(run(std::string(c.edit) + "; " + c.show), c.expected) << c.edit;
        run("undo");
        // Undo restores the link record too: a fresh instance follows amp again.
        EXPECT_EQ(run("parmget -e /obj/geo2 pt1; parmset /obj/geo2 pts 5; "
                      "parmget -e /obj/geo2 pt5"),
                  std::string(amp) + amp)
            << c.edit;
    }
    run("parmdeletebehavior 0");
}
