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
    Where survey(const std::string &label, const std::vector<std::string> &names,
                 std::vector<bool> &hit) const;
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
    const HostScriptParm *def = c.myParameters.find(name);
    const bool collection = follow && c.myCollections && c.myCollections->has(name);
    // Everything the set is asked about (the name, the names the property expands to, where
    // it goes) is found in one pass over the set.
    std::vector<std::string> names{name};
    GZ_EditScriptedParms incoming;
    HostSpareLayout layout;
    bool built = false;
    std::string label;
    if (def && !collection)
    {
        built = buildTemplates(c, *def, layout);
        incoming.createParms(layout, myParms.getNode(), plainOptions());
        for (int i = 0; i < incoming.entries(); ++i)
            if (!incoming.getParm(i)->getIsGroupEnd())
                names.push_back(incoming.getParm(i)->getName());
        const char *category = def->myParmTags.getValue("spare_category");
        label = myDest.empty() ? str(category) : myDest;
    }
    std::vector<bool> hit;
    Where where = survey(label, names, hit);
    if (hit[0])
    {
        myErrors += c.myName + ": Parameter '" + name + "' already exists\n";
        return true;
    }
    if (collection)
    {
        bool ok = true;
        for (const std::string &listed : gz_SpareClass::collectionNames(*c.myCollections->find(name)))
            ok = addOne(c, listed, false) && ok;
        return ok;
    }
    if (!def)
        return false;
    if (!built)
    {
        myErrors += c.myName + ": Unable to create definition for parameter " + name + "\n";
        return false;
    }
    for (std::size_t k = 1; k < names.size(); ++k)
        if (hit[k])
        {
            myErrors += c.myName + ": Parameter '" + names[k] + "' already exists\n";
            return false;
        }
    insert(where, label, incoming);
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

/// One pass over the set: which of `names` it holds (`hit`), and where a property of the
/// folder labelled `label` goes. That is inside the first visible folder of that label
/// (before the first folder nested in it), else in a new folder of that label: just after
/// the insert-after folder, else after the run of folders that starts at the first visible
/// entry, else after everything (packaged into "Main" on request). Blocks are matched with
/// a stack as the pass goes, so no entry is visited twice.
Adder::Where Adder::survey(const std::string &label, const std::vector<std::string> &names,
                           std::vector<bool> &hit) const
{
    const int n = myParms.entries();
    hit.assign(names.size(), false);
    std::vector<int> open;
    int found = -1, dest = -1, remembered = -1, remembered_end = -1, run_after = -1;
    enum { SKIPPING, IN_RUN, DONE } run = SKIPPING;
    for (int i = 0; i < n; ++i)
    {
        const GZ_EditScriptedParm &parm = *myParms.getParm(i);
        for (std::size_t k = 0; k < names.size(); ++k)
            if (!names[k].empty() && parm.getName() == names[k])
                hit[k] = true;
        if (parm.getIsGroupEnd())
        {
            if (open.empty())
                continue;
            const int opener = open.back();
            open.pop_back();
            if (opener == found && dest < 0)
                dest = i;
            if (opener == remembered)
                remembered_end = i;
            if (open.empty() && run == IN_RUN)
                run_after = i + 1;
            continue;
        }
        const bool folder = isFolderOpener(parm);
        if (open.empty() && run == SKIPPING && !parm.getInvisible())
            run = folder ? IN_RUN : DONE;
        else if (open.empty() && run == IN_RUN && !folder)
            run = DONE;
        if (!parm.getIsGroupStart())
            continue;
        if (found >= 0 && dest < 0 && folder)
            dest = i;
        else if (found < 0 && folder && parm.getLabel() == label && !parm.getInvisible())
            found = i;
        else if (found < 0 && folder && !myAfter.empty() && parm.getLabel() == myAfter)
        {
            remembered = i;
            remembered_end = -1;
        }
        open.push_back(i);
    }
    if (run == IN_RUN && !open.empty())
        run_after = n; // the run's last folder is never closed
    if (found >= 0)
        return {dest < 0 ? n : dest, false, false};
    if (remembered >= 0)
        return {remembered_end < 0 ? n : remembered_end + 1, true, false};
    if (n == 0)
        return {0, true, false};
    if (run_after >= 0)
        return {run_after, true, false};
    return {n, true, myPackage == GZ_SPARE_PROPERTY_PACKAGE_MAIN};
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
