// GZ_SpareProperty: loading, queries and listing of the spare-property catalogue.
#include "persistent/GZ_SpareProperty.h"

#include "persistent/gz_SpareCatalog.h"

#include "host/HostBundleFilter.h"
#include "host/HostPatternMatch.h"
#include "host/HostScriptParm.h"
#include "host/HostTagExpression.h"
#include "host/HostTagList.h"
#include "host/HostTagManager.h"

#include <algorithm>
#include <cstdio>

namespace
{
const char *const PARMLIST_CATEGORY = "__spare_parmlist";

std::string str(const char *s)
{
    return s ? s : "";
}

const gz_SpareClass *findClass(const char *name)
{
    return name ? gz_SpareCatalog::loaded().find(name) : nullptr;
}

void listClasses(std::string &errors, std::string &out, bool terse)
{
    const gz_SpareCatalog &catalog = gz_SpareCatalog::loaded();
    if (catalog.myNames.empty())
    {
        errors += "Can't list: No spare class properties defined\n";
        return;
    }
    if (!terse)
        out += "Supported classes\n";
    for (const std::string &name : catalog.myNames)
    {
        const gz_SpareClass &c = *catalog.find(name);
        out += name + " (" + std::to_string(c.myParameters.myNames.size()) + " parameters)";
        if (c.myCollections)
            out += " (" + std::to_string(c.myCollections->myNames.size()) + " parameter lists)";
        if (c.myFilter)
            out += " (Filter: \"" + c.myFilter->getLabel() + "\")";
        out += "\n";
    }
}

void listCollections(const gz_SpareClass &c, std::string &out, bool terse)
{
    if (!c.myCollections || c.myCollections->myNames.empty())
        return;
    if (!terse)
        out += "-- Parameter List Collections --\n";
    for (const std::string &name : c.myCollections->myNames)
    {
        const std::vector<std::string> names =
            gz_SpareClass::collectionNames(*c.myCollections->find(name));
        if (names.empty())
            continue;
        char head[256];
        std::snprintf(head, sizeof head, "%20s: { ", name.c_str());
        out += head;
        for (std::size_t i = 0; i < names.size(); ++i)
            out += (i ? ", " : "") + names[i];
        out += " }\n";
    }
}

void listParameters(const gz_SpareClass &c, const std::string &pattern, std::string &out,
                    bool terse)
{
    std::vector<const std::string *> categories;
    for (const std::string &category : c.myCategories)
        if (HostPatternMatch::matchMulti(category, pattern))
            categories.push_back(&category);
    for (const std::string *category : categories)
        for (const std::string &name : c.myCategoryLists.at(*category).myNames)
        {
            if (terse || categories.size() == 1)
            {
                out += name + "\n";
                continue;
            }
            // Names longer than the column widen the line rather than being cut.
            std::string line(name.size() < 20 ? 20 - name.size() : 0, ' ');
            out += line + name + " (" + *category + ")\n";
        }
    listCollections(c, out, terse);
}
} // namespace

bool GZ_SpareProperty::initialize(std::string &errors)
{
    gz_SpareCatalog::get().load(errors);
    return true;
}

bool GZ_SpareProperty::addClassFile(std::string &errors, const char *path, int streamOption)
{
    gz_SpareCatalog &catalog = gz_SpareCatalog::loaded();
    catalog.myFiles.push_back({str(path), streamOption});
    return initialize(errors);
}

int GZ_SpareProperty::getClassFiles(std::vector<std::string> &out)
{
    const gz_SpareCatalog &catalog = gz_SpareCatalog::loaded();
    for (const auto &file : catalog.myFiles)
        out.push_back(file.myPath);
    std::sort(out.begin(), out.end());
    return static_cast<int>(catalog.myFiles.size());
}

bool GZ_SpareProperty::isClass(const char *name)
{
    return findClass(name) != nullptr;
}

int GZ_SpareProperty::getClasses(std::vector<std::string> &out, const char *tagExpression)
{
    const gz_SpareCatalog &catalog = gz_SpareCatalog::loaded();
    std::shared_ptr<const HostTagExpression> expr;
    if (tagExpression)
    {
        std::string parse_errors;
        expr = HostTagManager::get().createExpression(tagExpression, parse_errors);
        if (expr && (!expr->isValid() || expr->isAlwaysTrue()))
            expr.reset();
    }
    for (const std::string &name : catalog.myNames)
        if (!expr || expr->evaluate(catalog.find(name)->myTags.get()))
            out.push_back(name);
    std::sort(out.begin(), out.end());
    return static_cast<int>(catalog.myNames.size());
}

const char *GZ_SpareProperty::getClassLabel(const char *className)
{
    const gz_SpareClass *c = findClass(className);
    return c ? c->myLabel.c_str() : nullptr;
}

int GZ_SpareProperty::getCategories(std::vector<std::string> &out, const char *className)
{
    const gz_SpareClass *c = findClass(className);
    if (!c)
        return 0;
    out.insert(out.end(), c->myCategories.begin(), c->myCategories.end());
    std::sort(out.begin(), out.end());
    return static_cast<int>(c->myCategories.size());
}

int GZ_SpareProperty::getParameters(std::vector<std::string> &out, const char *className,
                                    const char *category)
{
    const gz_SpareClass *c = findClass(className);
    if (!c || !category)
        return 0;
    const gz_SpareParmList *list = nullptr;
    if (str(category) == PARMLIST_CATEGORY)
        list = c->myCollections.get();
    else if (c->myCategoryLists.count(category))
        list = &c->myCategoryLists.at(category);
    if (!list)
        return 0;
    out.insert(out.end(), list->myNames.begin(), list->myNames.end());
    return static_cast<int>(list->myNames.size());
}

const HostScriptParm *GZ_SpareProperty::getParmDefinition(const char *className,
                                                          const char *parmName)
{
    const gz_SpareClass *c = findClass(className);
    if (!c || !parmName)
        return nullptr;
    auto it = c->myAllDefinitions.find(parmName);
    return it == c->myAllDefinitions.end() ? nullptr : it->second;
}

bool GZ_SpareProperty::getClassName(const HostScriptParm *parm, std::string &className)
{
    className.clear();
    if (!parm)
        return false;
    const gz_SpareCatalog &catalog = gz_SpareCatalog::loaded();
    for (const auto &entry : catalog.myClasses)
    {
        auto it = entry.second->myAllDefinitions.find(parm->myName);
        if (it != entry.second->myAllDefinitions.end() && it->second == parm)
        {
            className = entry.first;
            return true;
        }
    }
    return false;
}

void GZ_SpareProperty::list(std::string &errors, std::string &out, const char *classPattern,
                            const char *parmPattern, bool terse)
{
    if (!classPattern)
        return listClasses(errors, out, terse);
    const std::vector<const gz_SpareClass *> classes =
        gz_SpareCatalog::loaded().select(classPattern);
    if (classes.empty())
    {
        errors += "Can't list: No classes match pattern '" + str(classPattern) + "'\n";
        return;
    }
    const bool categories_only = !parmPattern || !*parmPattern;
    if (categories_only && !terse)
        out += "Parameter Categories\n";
    for (const gz_SpareClass *c : classes)
    {
        if (!terse && classes.size() > 1)
            out += "Spare Class " + c->myName + "\n";
        if (!categories_only)
            listParameters(*c, parmPattern, out, terse);
        else
            for (const std::string &category : c->myCategories)
                out += category + "\n";
    }
}
