// GZ_SpareProperty: adding catalogue properties to parameter sets, inside category folders.
#include "persistent/GZ_SpareProperty.h"

#include "persistent/gz_SpareCatalog.h"

#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostBundleFilter.h"
#include "host/HostNode.h"
#include "host/HostPatternMatch.h"
#include "host/HostScriptPage.h"
#include "host/HostScriptParm.h"
#include "host/HostSpareLayout.h"
#include "host/HostVariableName.h"

#include <unordered_set>

namespace
{
/// Ids that tie together the definitions one property expands to; they stay unique for the
/// whole process so that sets built at different times never share one.
int thePropertyGroupCounter = -1;

std::string str(const char *s)
{
    return s ? s : "";
}

bool isFolderOpener(const GZ_EditScriptedParm &parm)
{
    return parm.getFolderType() <= GZ_FOLDER_RADIO;
}

std::unique_ptr<GZ_EditScriptedParm> folderEntry(GZ_EditScriptedParmFolderType type,
                                                 const std::string &name,
                                                 const std::string &label)
{
    auto parm = std::make_unique<GZ_EditScriptedParm>(type);
    parm->setName(name);
    parm->setLabel(label);
    return parm;
}

GZ_EditScriptedParms::BuildOptions plainOptions()
{
    GZ_EditScriptedParms::BuildOptions options;
    options.myFallbackToOperator = false;
    return options;
}

/// One addProperty call: the set it fills and the names already handled across classes.
class Adder
{
public:
    Adder(GZ_EditScriptedParms &parms, const char *after, std::string &errors,
          GZ_SPARE_PROPERTY_PACKAGE package, const char *dest)
        : myParms(parms), myAfter(str(after)), myErrors(errors), myPackage(package),
          myDest(str(dest))
    {
    }

    bool addClass(const gz_SpareClass &c, const std::string &pattern);

private:
    bool matches(const gz_SpareClass &c, const HostScriptParm &parm,
                 const std::string &pattern) const;
    bool addOne(const gz_SpareClass &c, const std::string &name, bool follow);
    bool buildTemplates(const gz_SpareClass &c, const HostScriptParm &def,
                        HostSpareLayout &layout);
    /// Where new entries go, and whether they need a new folder around them.
    struct Where
    {
        int myIndex;
        bool myNewFolder;
        bool myPackageMain; ///< wrap the set's entries into "Main" first
    };
    Where survey(const std::string &label) const;
    int afterLeadingFolders() const;
    void insert(Where where, const std::string &label, GZ_EditScriptedParms &incoming);

    GZ_EditScriptedParms &myParms;
    std::string myAfter;
    std::string &myErrors;
    GZ_SPARE_PROPERTY_PACKAGE myPackage;
    std::string myDest;
    std::unordered_set<std::string> myHandled;
};

bool Adder::addClass(const gz_SpareClass &c, const std::string &pattern)
{
    if (c.myParameters.has(pattern))
        return addOne(c, pattern, true);
    int count = 0;
    // "*" stands for every property, not for every collection on top of them.
    if (c.myCollections && pattern != "*")
        for (const std::string &name : c.myCollections->myNames)
            if (HostPatternMatch::matchMulti(name, pattern))
                for (const std::string &listed :
                     gz_SpareClass::collectionNames(*c.myCollections->find(name)))
                    if (c.myParameters.has(listed) && addOne(c, listed, false))
                        ++count;
    for (const std::string &name : c.myParameters.myNames)
        if (matches(c, *c.myParameters.find(name), pattern) && addOne(c, name, false))
            ++count;
    if (count == 0)
    {
        myErrors += c.myName + ": No parameters match " + pattern + "\n";
        return false;
    }
    return true;
}

bool Adder::matches(const gz_SpareClass &c, const HostScriptParm &parm,
                    const std::string &pattern) const
{
    if (HostPatternMatch::matchMulti(parm.myName, pattern))
        return true;
    if (!parm.isFolder() || !parm.myPage || c.folderPageCount(parm) != 1)
        return false;
    for (int i = 0; i < parm.myPage->getNumParms(); ++i)
        if (HostPatternMatch::matchMulti(parm.myPage->getParm(i)->myName, pattern))
            return true;
    return false;
}

bool Adder::addOne(const gz_SpareClass &c, const std::string &name, bool follow)
{
    if (!myHandled.insert(name).second)
        return false;
    if (myParms.hasParmWithName(name))
    {
        myErrors += c.myName + ": Parameter '" + name + "' already exists\n";
        return true;
    }
    if (follow && c.myCollections && c.myCollections->has(name))
    {
        bool ok = true;
        for (const std::string &listed : gz_SpareClass::collectionNames(*c.myCollections->find(name)))
            ok = addOne(c, listed, false) && ok;
        return ok;
    }
    const HostScriptParm *def = c.myParameters.find(name);
    if (!def)
        return false;
    HostSpareLayout layout;
    if (!buildTemplates(c, *def, layout))
    {
        myErrors += c.myName + ": Unable to create definition for parameter " + name + "\n";
        return false;
    }
    GZ_EditScriptedParms incoming;
    incoming.createParms(layout, myParms.getNode(), plainOptions());
    for (int i = 0; i < incoming.entries(); ++i)
    {
        const GZ_EditScriptedParm &parm = *incoming.getParm(i);
        if (!parm.getIsGroupEnd() && myParms.hasParmWithName(parm.getName()))
        {
            myErrors += c.myName + ": Parameter '" + parm.getName() + "' already exists\n";
            return false;
        }
    }
    const std::string label =
        myDest.empty() ? str(def->myParmTags.getValue("spare_category")) : myDest;
    insert(survey(label), label, incoming);
    return true;
}

void Adder::insert(Where where, const std::string &label, GZ_EditScriptedParms &incoming)
{
    if (where.myPackageMain)
    {
        // "Main" encloses everything the set held; the new folder follows it.
        std::vector<std::unique_ptr<GZ_EditScriptedParm>> opener;
        opener.push_back(folderEntry(GZ_FOLDER_TABS, "", "Main"));
        myParms.insertParms(0, std::move(opener));
        myParms.addParm(folderEntry(GZ_FOLDER_END, "", ""));
        where.myIndex = myParms.entries();
    }
    std::vector<std::unique_ptr<GZ_EditScriptedParm>> block;
    if (where.myNewFolder)
        block.push_back(folderEntry(GZ_FOLDER_TABS, "", label));
    for (auto &parm : incoming.releaseParms())
        block.push_back(std::move(parm));
    if (where.myNewFolder)
        block.push_back(folderEntry(GZ_FOLDER_END, "", ""));
    myParms.insertParms(where.myIndex, std::move(block));
}

bool Adder::buildTemplates(const gz_SpareClass &c, const HostScriptParm &def,
                           HostSpareLayout &layout)
{
    std::string ignored;
    if (def.isFolder())
    {
        // A one-page folder stands for what it holds; the folder itself is not added.
        if (c.folderPageCount(def) != 1)
            return false;
        if (def.myPage)
            def.myPage->buildTemplates(layout, ignored);
    }
    else
        HostScriptPage::buildBlockTemplates(def, layout, ignored);
    const char *cook = def.myParmTags.getValue("spare_cook");
    if (cook && std::string(cook) == "0")
        for (int i = 0; i < layout.myTemplates.size(); ++i)
            layout.myTemplates[i].setCooks(false);
    return true;
}

/// Where a property of the folder labelled `label` goes: inside the first visible folder of
/// that label (before the first folder nested in it), else in a new folder of that label:
/// just after the insert-after folder, else after the run of folders that starts at the
/// first visible entry, else after everything (packaged into "Main" on request). Asked of
/// the set's index, so only folders and group entries are visited, not the whole set.
Adder::Where Adder::survey(const std::string &label) const
{
    const int n = myParms.entries();
    for (int f : myParms.getOpenerIndicesWithLabel(label))
    {
        const GZ_EditScriptedParm &parm = *myParms.getParm(f);
        if (!isFolderOpener(parm) || parm.getInvisible())
            continue;
        const int nested = myParms.getFirstNestedFolderIndex(f);
        const int end = myParms.getMatchingGroupParm(f);
        return {nested >= 0 ? nested : end < 0 ? n : end, false, false};
    }
    if (!myAfter.empty())
    {
        const std::vector<int> &after = myParms.getOpenerIndicesWithLabel(myAfter);
        for (auto it = after.rbegin(); it != after.rend(); ++it)
            if (isFolderOpener(*myParms.getParm(*it)))
            {
                const int end = myParms.getMatchingGroupParm(*it);
                return {end < 0 ? n : end + 1, true, false};
            }
    }
    if (n == 0)
        return {0, true, false};
    const int run_after = afterLeadingFolders();
    if (run_after >= 0)
        return {run_after, true, false};
    return {n, true, myPackage == GZ_SPARE_PROPERTY_PACKAGE_MAIN};
}

/// The index just after the run of folders that starts at the first visible top-level
/// entry (invisible blocks skipped whole, stray group ends ignored); -1 when that entry is
/// not a folder. A folder left open runs to the end.
int Adder::afterLeadingFolders() const
{
    const int n = myParms.entries();
    int i = 0;
    while (i < n)
    {
        const GZ_EditScriptedParm &parm = *myParms.getParm(i);
        if (!parm.getIsGroupEnd() && !parm.getInvisible())
            break;
        const int end = parm.getIsGroupStart() ? myParms.getMatchingGroupParm(i) : i;
        i = end < 0 ? n : end + 1;
    }
    return i < n ? myParms.getFolderRunEnd(i) : -1;
}

} // namespace

bool GZ_SpareProperty::addProperty(GZ_EditScriptedParms &parms, const char *insertAfterFolder,
                                   const char *classPattern, const char *parmPattern,
                                   std::string &errors, HostNode *node,
                                   GZ_SPARE_PROPERTY_FILTER filter,
                                   GZ_SPARE_PROPERTY_PACKAGE package, const char *destFolder)
{
    const std::vector<const gz_SpareClass *> classes =
        gz_SpareCatalog::loaded().select(str(classPattern));
    if (classes.empty())
    {
        errors += "No classes match pattern '" + str(classPattern) + "'\n";
        return false;
    }
    Adder adder(parms, insertAfterFolder, errors, package, destFolder);
    bool ok = true;
    for (const gz_SpareClass *c : classes)
    {
        if (filter == GZ_SPARE_PROPERTY_USE_FILTER && node && c->myFilter &&
            !c->myFilter->accepts(node))
        {
            errors += "The " + c->myName + " properties can only be applied to " +
                      c->myFilter->getLabel() + ", node " + node->getFullPath() +
                      " doesn't match the criteria\n";
            continue;
        }
        ok = adder.addClass(*c, str(parmPattern)) && ok;
    }
    return ok;
}

bool GZ_SpareProperty::addProperty(HostNode *node, const char *insertAfterFolder,
                                   const char *classPattern, const char *parmPattern,
                                   std::string &errors, GZ_SPARE_PROPERTY_FILTER filter,
                                   GZ_SPARE_PROPERTY_PACKAGE package, const char *destFolder)
{
    if (!node)
        return false;
    GZ_EditScriptedParms parms(node, plainOptions());
    const int before = parms.entries();
    bool ok = addProperty(parms, insertAfterFolder, classPattern, parmPattern, errors, node,
                          filter, package, destFolder);
    // Nothing added means nothing to hand back: no empty change reaches the node's history.
    if (parms.entries() == before)
        return ok;
    std::string error;
    if (!parms.updateNode(&error))
    {
        errors += error + "\n";
        return false;
    }
    return ok;
}

void GZ_SpareProperty::getClassAsParameters(GZ_EditScriptedParms &parms, const char *className)
{
    const char *label = getClassLabel(className);
    parms.addParm(folderEntry(GZ_FOLDER_TABS, str(className), str(label)));
    std::vector<std::string> categories;
    getCategories(categories, className);
    for (const std::string &category : categories)
        getCategoryAsParameters(parms, className, category.c_str());
    parms.addParm(folderEntry(GZ_FOLDER_END, str(className), str(className)));
}

void GZ_SpareProperty::getCategoryAsParameters(GZ_EditScriptedParms &parms, const char *className,
                                               const char *category)
{
    std::string name = str(category);
    HostVariableName::forceValidName(name);
    for (GZ_EditScriptedParmFolderType type : {GZ_FOLDER_TABS, GZ_FOLDER_END})
    {
        auto entry = folderEntry(type, name, str(category));
        entry->setSpareClass(str(className));
        parms.addParm(std::move(entry));
        if (type == GZ_FOLDER_TABS)
            getCategoryPropertiesAsParameters(parms, className, category);
    }
}

void GZ_SpareProperty::getCategoryPropertiesAsParameters(GZ_EditScriptedParms &parms,
                                                         const char *className,
                                                         const char *category)
{
    std::vector<std::string> names;
    getParameters(names, className, category);
    for (const std::string &name : names)
    {
        GZ_EditScriptedParms incoming;
        std::string discarded;
        addProperty(incoming, nullptr, className, name.c_str(), discarded, nullptr,
                    GZ_SPARE_PROPERTY_NO_FILTER, GZ_SPARE_PROPERTY_NO_PACKAGE, nullptr);
        if (incoming.entries() >= 3)
            incoming.removeParms(0, 0, /*fix_joins=*/false);
        const int group = incoming.entries() > 1 ? ++thePropertyGroupCounter : -1;
        for (int i = 0; i < incoming.entries(); ++i)
        {
            auto copy = std::make_unique<GZ_EditScriptedParm>(*incoming.getParm(i));
            copy->setSpareClass(str(className));
            copy->setSpareCategory(str(category));
            copy->setPropertyGroupId(group);
            parms.addParm(std::move(copy));
        }
    }
}
