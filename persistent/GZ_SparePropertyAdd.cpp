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

#include <numeric>
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
    int placement(const std::string &label);
    int firstRunEnd(const std::vector<int> &match) const;
    int insertFolder(const std::string &label, int target);

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
    if (myParms.getParmWithName(name))
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
    HostSpareLayout layout;
    if (!def || !buildTemplates(c, *def, layout))
        return false;
    const char *category = def->myParmTags.getValue("spare_category");
    const std::string label = myDest.empty() ? str(category) : myDest;
    GZ_EditScriptedParms incoming;
    incoming.createParms(layout, myParms.getNode(), plainOptions());
    for (int i = 0; i < incoming.entries(); ++i)
    {
        const GZ_EditScriptedParm &parm = *incoming.getParm(i);
        if (!parm.getIsGroupEnd() && !parm.getName().empty() &&
            myParms.getParmWithName(parm.getName()))
        {
            myErrors += c.myName + ": Parameter '" + parm.getName() + "' already exists\n";
            return false;
        }
    }
    const int target = placement(label);
    const int first = myParms.entries();
    // The names were checked above, so the entries go in as they are (no renaming pass over
    // the whole set).
    for (auto &parm : incoming.releaseParms())
        myParms.addParm(std::move(parm));
    std::vector<int> moved(myParms.entries() - first);
    std::iota(moved.begin(), moved.end(), first);
    if (!moved.empty())
        myParms.moveParms(moved, target, /*fix_groups=*/false);
    return true;
}

bool Adder::buildTemplates(const gz_SpareClass &c, const HostScriptParm &def,
                           HostSpareLayout &layout)
{
    std::string ignored;
    if (def.isFolder())
    {
        // A one-page folder stands for what it holds; the folder itself is not added.
        if (c.folderPageCount(def) != 1)
        {
            myErrors += c.myName + ": Unable to create definition for parameter " + def.myName + "\n";
            return false;
        }
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
/// that label, else in a new folder of that label (after the insert-after folder, after the
/// leading run of folders, or after everything, packaged into "Main" on request).
int Adder::placement(const std::string &label)
{
    const std::vector<int> match = myParms.computeMatches();
    const int n = myParms.entries();
    int remembered = -1;
    for (int i = 0; i < n; ++i)
    {
        const GZ_EditScriptedParm &parm = *myParms.getParm(i);
        if (!isFolderOpener(parm))
            continue;
        if (parm.getLabel() == label && !parm.getInvisible())
        {
            const int end = match[i] < 0 ? n : match[i];
            for (int j = i + 1; j < end; ++j)
                if (isFolderOpener(*myParms.getParm(j)))
                    return j;
            return end;
        }
        if (!myAfter.empty() && parm.getLabel() == myAfter)
            remembered = i;
    }
    int target = n;
    if (remembered >= 0)
        target = (match[remembered] < 0 ? n : match[remembered]) + 1;
    else if (n > 0)
    {
        target = firstRunEnd(match);
        if (target < 0 && myPackage == GZ_SPARE_PROPERTY_PACKAGE_MAIN)
        {
            myParms.addParm(folderEntry(GZ_FOLDER_TABS, "", "Main"));
            myParms.addParm(folderEntry(GZ_FOLDER_END, "", ""));
            myParms.moveParms(std::vector<int>{n}, 0, /*fix_groups=*/false);
            target = n + 2;
        }
        else if (target < 0)
            target = n;
    }
    return insertFolder(label, target);
}

/// The index after the run of folders that starts at the first visible entry, or -1 when that
/// entry is no folder.
int Adder::firstRunEnd(const std::vector<int> &match) const
{
    const int n = myParms.entries();
    auto skip = [&](int i) { return (match[i] < 0 ? n - 1 : match[i]) + 1; };
    int i = 0;
    while (i < n && myParms.getParm(i)->getInvisible())
        i = myParms.getParm(i)->getIsGroupStart() ? skip(i) : i + 1;
    if (i >= n || !isFolderOpener(*myParms.getParm(i)))
        return -1;
    int after = i;
    while (i < n && isFolderOpener(*myParms.getParm(i)))
        after = i = skip(i);
    return after;
}

int Adder::insertFolder(const std::string &label, int target)
{
    const int n = myParms.entries();
    myParms.addParm(folderEntry(GZ_FOLDER_TABS, "", label));
    myParms.addParm(folderEntry(GZ_FOLDER_END, "", ""));
    myParms.moveParms(std::vector<int>{n, n + 1}, target, /*fix_groups=*/false);
    return target + 1;
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
