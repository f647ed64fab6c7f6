// The spare-property catalogue read from a damaged file, adding by pattern and collection,
// and the property map's name index.
#include "link/GZ_PropertyMap.h"
#include "persistent/GZ_SpareProperty.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostDiagnostics.h"
#include "host/HostReader.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
class SparePropertyTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        HostReader::setSearchPath({GZ_SOURCE_DIR "/data"});
        HostDiagnosticCapture capture; // the parser's own report of the unterminated block
        // The shipped catalogue alone, loaded twice: clean, and listed the same each time.
        for (std::string &listing : theShippedLists)
        {
            GZ_SpareProperty::initialize(theShippedErrors);
            GZ_SpareProperty::list(theShippedErrors, listing, "*", "*", false);
        }
        const std::string path = GZ_TEST_DATA_DIR "/props_bad.ds";
        GZ_SpareProperty::addClassFile(theErrors, path.c_str(), 0);
        // Messages name the file as found; compare them without the directory.
        for (std::size_t at; (at = theErrors.find(path)) != std::string::npos;)
            theErrors.replace(at, path.size(), "props_bad.ds");
    }
    static std::string labels(const GZ_EditScriptedParms &parms)
    {
        std::string out;
        for (int i = 0; i < parms.entries(); ++i)
            out += (parms.getParm(i)->getIsGroupEnd()     ? ")"
                    : parms.getParm(i)->getIsGroupStart() ? parms.getParm(i)->getLabel() + "("
                                                          : parms.getParm(i)->getName() + " ");
        return out;
    }
    static std::string theErrors, theShippedErrors, theShippedLists[2];
};
std::string SparePropertyTest::theErrors, SparePropertyTest::theShippedErrors,
    SparePropertyTest::theShippedLists[2];

TEST_F(SparePropertyTest, ShippedCatalogueLoadsCleanAndListsTheSameEachTime)
{
    EXPECT_EQ(theShippedErrors, "");
    EXPECT_NE(theShippedLists[0].find("Spare Class render"), std::string::npos);
    EXPECT_EQ(theShippedLists[0], theShippedLists[1]);
}

TEST_F(SparePropertyTest, DamagedFileReportsEachProblemAndLoadingGoesOn)
{
    EXPECT_EQ(theErrors, "props_bad.ds[45]: No filters match 'no_such_filter'\n"
                         "props_bad.ds[45]: classtags error: 'Invalid tag 'bad!tag''\n"
                         "props_bad.ds[7]: No parmtags found for untagged\n"
                         "props_bad.ds[11]: Missing 'parmtag spare_category' for nocategory\n"
                         "props_bad.ds[26]: Duplicate parameter found: twice\n"
                         "props_bad.ds[31]: Spare parmlist (emptylist) with no parameter list\n"
                         "props_bad.ds[35]: Warning: Too many sections in collection tabs\n"
                         "props_bad.ds[40]: Warning: Too many sections in collection tabs_1\n"
                         "props_bad.ds[58]: Warning, duplicate class specified\n");
    // The later "notes" wins and is listed once; the unterminated block is dropped.
    std::vector<std::string> classes;
    GZ_SpareProperty::getClasses(classes, nullptr);
    EXPECT_EQ(std::count(classes.begin(), classes.end(), "notes"), 1);
    EXPECT_STREQ(GZ_SpareProperty::getClassLabel("notes"), "Replacement Notes");
    EXPECT_FALSE(GZ_SpareProperty::isClass("broken"));
    // A folder of two pages cannot become a definition, and that is a failure.
    GZ_EditScriptedParms parms;
    std::string errors;
    EXPECT_FALSE(GZ_SpareProperty::addProperty(parms, nullptr, "badfilter", "tabs", errors, nullptr,
                                               GZ_SPARE_PROPERTY_NO_FILTER,
                                               GZ_SPARE_PROPERTY_NO_PACKAGE, nullptr));
    EXPECT_EQ(errors, "badfilter: Unable to create definition for parameter tabs\n");
}

TEST_F(SparePropertyTest, PatternsCollectionsAndExistingNames)
{
    struct Case
    {
        const char *pattern;
        const char *labels;
    };
    // "*" takes every property and no collection; a collection's members go to their own
    // categories' folders; "gz_shade_b*" matches only the collection.
    const Case cases[] = {
        {"*", "Surface(gz_shade_diffuse gz_shade_rough )Opacity(gz_shade_opacity )"},
        {"gz_shade_basic", "Surface(gz_shade_diffuse )Opacity(gz_shade_opacity )"},
        {"gz_shade_b*", "Surface(gz_shade_diffuse )Opacity(gz_shade_opacity )"},
    };
    for (const Case &c : cases)
    {
        GZ_EditScriptedParms parms;
        std::string errors;
        EXPECT_TRUE(GZ_SpareProperty::addProperty(parms, nullptr, "shading", c.pattern, errors,
                                                  nullptr, GZ_SPARE_PROPERTY_NO_FILTER,
                                                  GZ_SPARE_PROPERTY_NO_PACKAGE, nullptr));
        EXPECT_EQ(labels(parms), c.labels) << c.pattern;
        EXPECT_EQ(errors, "") << c.pattern;
        // Asking again for a name the set has is reported, yet succeeds.
        EXPECT_TRUE(GZ_SpareProperty::addProperty(parms, nullptr, "shading", "gz_shade_opacity",
                                                  errors, nullptr, GZ_SPARE_PROPERTY_NO_FILTER,
                                                  GZ_SPARE_PROPERTY_NO_PACKAGE, nullptr));
        EXPECT_EQ(errors, "shading: Parameter 'gz_shade_opacity' already exists\n");
    }
}

TEST_F(SparePropertyTest, PlacementSkipsHiddenFoldersAndGoesBeforeNestedOnes)
{
    // A hidden "Render" is passed over; the visible one takes the property before the folder
    // nested in it. "Sampling" has no folder yet: its new folder follows the leading run.
    const char *section = "group { name \"h\" label \"Render\" invisibletab\n"
                          "  parm { name \"x\" type float } }\n"
                          "group { name \"r\" label \"Render\"\n"
                          "  parm { name \"y\" type float }\n"
                          "  groupsimple { name \"n\" label \"Nested\"\n"
                          "    parm { name \"z\" type float } } }\n"
                          "parm { name \"w\" type float }\n";
    GZ_EditScriptedParms parms;
    std::string messages, errors;
    ASSERT_TRUE(parms.parseParmSection(section, "test.ds", messages)) << messages;
    for (const char *name : {"gz_render_matte", "gz_render_samples"})
        EXPECT_TRUE(GZ_SpareProperty::addProperty(parms, nullptr, "render", name, errors, nullptr,
                                                  GZ_SPARE_PROPERTY_NO_FILTER,
                                                  GZ_SPARE_PROPERTY_NO_PACKAGE, nullptr));
    EXPECT_EQ(labels(parms), "Render(x )Render(y gz_render_matte Nested(z ))Sampling("
                             "gz_render_samples )w ");
    EXPECT_EQ(errors, "");
}

TEST_F(SparePropertyTest, ListFormatsAndCategoryGroups)
{
    // A class's property listing is in the props_commands scenario; here: the category form.
    std::string errors, out;
    GZ_SpareProperty::list(errors, out, "lens,notes", "", false);
    EXPECT_EQ(out, "Parameter Categories\nSpare Class lens\nDepth of Field\n"
                   "Spare Class notes\nNotes\n");
    EXPECT_EQ(errors, "");
    // A folder property expands to several entries, which share one fresh group id.
    GZ_EditScriptedParms parms;
    GZ_SpareProperty::getCategoryPropertiesAsParameters(parms, "render", "Sampling");
    ASSERT_EQ(parms.entries(), 3);
    EXPECT_EQ(parms.getParm(0)->getPropertyGroupId(), -1);
    EXPECT_GE(parms.getParm(1)->getPropertyGroupId(), 0);
    EXPECT_EQ(parms.getParm(1)->getPropertyGroupId(), parms.getParm(2)->getPropertyGroupId());
    EXPECT_EQ(parms.getParm(2)->getSpareCategory(), "Sampling");
}

TEST(PropertyMapTest, IndexRenamesAndUnknownChannels)
{
    const GZ_PropertyMapDef rows[] = {
        {"tx", "render", "gz_render_visible", nullptr, "ty", "tz", nullptr},
        {"r", "render", "gz_render_matte", "rx"},
        {"rot", "render", "gz_render_shadow", "rx"},
    };
    GZ_PropertyMap map;
    map.setMap(3, rows);
    EXPECT_EQ(map.find("tx"), map.find("tz"));
    EXPECT_EQ(map.find("tx"), map.find("ty"));
    EXPECT_STREQ(map.find("rx")->getParm(), "r"); // the first claim keeps a channel name
    EXPECT_FALSE(map.renameParameter("ty", "y2", nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(map.renameParameter("tx", "t2", nullptr, nullptr, nullptr, nullptr));
    EXPECT_STREQ(map.find("tx")->getRename(), "t2");
    EXPECT_STREQ(map.find("tx")->getChRename(0), "t2");
    EXPECT_STREQ(rows[0].getRename(), "tx");
    GZ_EditScriptedParms parms;
    EXPECT_FALSE(map.createFromChannel(parms, nullptr, "nosuch"));
    EXPECT_EQ(parms.entries(), 0);
}
} // namespace
