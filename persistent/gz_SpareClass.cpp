// gz_SpareClass: reading one class block of a property file.
#include "persistent/gz_SpareClass.h"

#include "host/HostBundleFilter.h"
#include "host/HostDialogStream.h"
#include "host/HostScriptPage.h"
#include "host/HostScriptParm.h"
#include "host/HostTagList.h"
#include "host/HostTagManager.h"

namespace
{
const char *const PARMLIST_CATEGORY = "__spare_parmlist";

/// "FILE[LINE]: message\n", the form of every message met while reading.
void report(std::string &errors, const HostDialogStream &in, int line, const std::string &message)
{
    errors += in.getFileName() + "[" + std::to_string(line) + "]: " + message + "\n";
}
} // namespace

gz_SpareClass::gz_SpareClass() = default;
gz_SpareClass::~gz_SpareClass() = default;

bool gz_SpareClass::read(HostDialogStream &in, std::string &errors)
{
    myPage = std::make_unique<HostScriptPage>();
    if (!myPage->parsePage(in))
        return false;
    myName = myPage->getName().empty() ? in.getFileName() : myPage->getName();
    myLabel = myPage->getLabel().empty() ? myName : myPage->getLabel();
    const int line = in.getLine();
    if (const char *filter = myPage->getTag("spare_opfilter"))
    {
        myFilter = HostBundleFilter::find(filter);
        if (!myFilter)
            report(errors, in, line, std::string("No filters match '") + filter + "'");
    }
    if (const char *tags = myPage->getTag("spare_classtags"))
    {
        std::string tag_errors;
        myTags = HostTagManager::get().createTagList(tags, tag_errors);
        if (!tag_errors.empty())
        {
            if (tag_errors.back() == '\n')
                tag_errors.pop_back();
            report(errors, in, line, "classtags error: '" + tag_errors + "'");
        }
    }
    for (int i = 0; i < myPage->getNumParms(); ++i)
        readParm(*myPage->getParm(i), i, in, errors);
    return true;
}

void gz_SpareClass::readParm(const HostScriptParm &parm, int index, HostDialogStream &in,
                             std::string &errors)
{
    const std::string &name = parm.myName;
    if (parm.myParmTags.tags().empty())
        return report(errors, in, parm.myLine, "No parmtags found for " + name);
    const char *category = parm.myParmTags.getValue("spare_category");
    if (!category)
        return report(errors, in, parm.myLine, "Missing 'parmtag spare_category' for " + name);
    if (!*category)
        return;
    if (myParameters.has(name) || (myCollections && myCollections->has(name)))
        return report(errors, in, parm.myLine, "Duplicate parameter found: " + name);
    if (std::string(category) == PARMLIST_CATEGORY)
    {
        const char *list = parm.myParmTags.getValue("spare_parmlist");
        if (!list || !*list)
            report(errors, in, parm.myLine, "Spare parmlist (" + name + ") with no parameter list");
        if (!myCollections)
            myCollections = std::make_unique<gz_SpareParmList>();
        myCollections->add(name, &parm);
        return;
    }
    if (parm.isFolder())
    {
        const int pages = myPage->getSwitcherFolderCount(index);
        myPageCounts[&parm] = pages;
        if (pages != 1)
            report(errors, in, parm.myLine, "Warning: Too many sections in collection " + name);
    }
    auto list = myCategoryLists.find(category);
    if (list == myCategoryLists.end())
    {
        myCategories.push_back(category);
        list = myCategoryLists.emplace(category, gz_SpareParmList()).first;
    }
    list->second.add(name, &parm);
    myParameters.add(name, &parm);
    addNested(parm);
}

void gz_SpareClass::addNested(const HostScriptParm &parm)
{
    myAllDefinitions.emplace(parm.myName, &parm);
    if (parm.myPage)
        for (int i = 0; i < parm.myPage->getNumParms(); ++i)
            addNested(*parm.myPage->getParm(i));
}

int gz_SpareClass::folderPageCount(const HostScriptParm &parm) const
{
    auto it = myPageCounts.find(&parm);
    return it == myPageCounts.end() ? 0 : it->second;
}

std::vector<std::string> gz_SpareClass::collectionNames(const HostScriptParm &collection)
{
    std::vector<std::string> names;
    const char *list = collection.myParmTags.getValue("spare_parmlist");
    std::string word;
    for (const char *c = list ? list : ""; ; ++c)
    {
        if (*c == '\0' || *c == ',' || *c == ' ' || *c == '\t' || *c == '\n')
        {
            if (!word.empty())
                names.push_back(word);
            word.clear();
            if (*c == '\0')
                break;
        }
        else
            word += *c;
    }
    return names;
}
