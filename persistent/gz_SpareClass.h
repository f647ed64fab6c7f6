// gz_SpareClass: one class of the spare-property catalogue (one block of a property file).
#pragma once

#include "persistent/gz_SpareParmList.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class HostBundleFilter;
class HostDialogStream;
class HostScriptPage;
class HostScriptParm;
class HostTagList;

/// A class block as read: its page (which owns every definition), the categorised top-level
/// parameters, the categories in order of first appearance, the collections and the class's
/// tags and operator filter.
class gz_SpareClass
{
public:
    gz_SpareClass();
    ~gz_SpareClass();

    /// Reads the next class block of `in`. False at the end of the file or when the block
    /// does not parse (the file ends there). Problems go to `errors`, prefixed with file and
    /// line.
    bool read(HostDialogStream &in, std::string &errors);

    /// The page's folder group size of parameter `parm` (0 when it is no folder).
    int folderPageCount(const HostScriptParm &parm) const;
    /// The names listed by a collection (its "spare_parmlist" value split at commas, blanks,
    /// tabs and newlines).
    static std::vector<std::string> collectionNames(const HostScriptParm &collection);

    std::string myName;
    std::string myLabel;
    std::shared_ptr<const HostTagList> myTags;
    std::vector<std::string> myCategories;
    std::map<std::string, gz_SpareParmList> myCategoryLists;
    std::map<std::string, const HostScriptParm *> myAllDefinitions;
    std::unique_ptr<HostScriptPage> myPage;
    gz_SpareParmList myParameters;
    std::unique_ptr<gz_SpareParmList> myCollections;
    const HostBundleFilter *myFilter = nullptr;

private:
    void addNested(const HostScriptParm &parm);
    void readParm(const HostScriptParm &parm, int index, HostDialogStream &in,
                  std::string &errors);
    std::map<const HostScriptParm *, int> myPageCounts;
};
