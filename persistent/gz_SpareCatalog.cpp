// gz_SpareCatalog: loading the spare-property catalogue from its class files.
#include "persistent/gz_SpareCatalog.h"

#include "host/HostDiagnostics.h"
#include "host/HostDialogStream.h"
#include "host/HostPatternMatch.h"

#include <algorithm>

namespace
{
/// The files every catalogue starts with. The first may be absent and may include others;
/// the rest ship with the host.
const gz_SpareCatalog::FileEntry theBuiltinFiles[] = {
    {"parameters/QUMOparameters", 17},  {"properties/vop/VOPparameters", 0},
    {"properties/other/parameters", 0}, {"properties/obj/objmain.ds", 0},
    {"properties/op/opmain.ds", 0},     {"properties/op/events.ds", 0},
    {"properties/lop/lopmain.ds", 0},   {"properties/top/topmain.ds", 0},
};
} // namespace

gz_SpareCatalog &gz_SpareCatalog::get()
{
    static gz_SpareCatalog catalog;
    return catalog;
}

gz_SpareCatalog &gz_SpareCatalog::loaded()
{
    gz_SpareCatalog &catalog = get();
    if (!catalog.myLoaded)
    {
        std::string errors;
        catalog.load(errors);
        if (!errors.empty())
        {
            errors.pop_back();
            HostDiagnostics::report(HostDiagSeverity::Warning, "", 0, errors,
                                    "Spare Property Errors:\n" + errors);
        }
    }
    return catalog;
}

void gz_SpareCatalog::load(std::string &errors)
{
    myLoaded = true;
    if (!myHasBuiltins)
    {
        myHasBuiltins = true;
        myFiles.insert(myFiles.begin(), std::begin(theBuiltinFiles), std::end(theBuiltinFiles));
    }
    myClasses.clear();
    myNames.clear();
    for (const FileEntry &file : myFiles)
    {
        HostDialogStream in;
        if (!in.openFile(file.myPath, file.myOption))
            continue;
        while (!in.atEnd())
        {
            auto block = std::make_unique<gz_SpareClass>();
            if (!block->read(in, errors))
                break;
            auto it = myClasses.find(block->myName);
            if (it != myClasses.end())
            {
                errors += in.getFileName() + "[" + std::to_string(in.getLine()) +
                          "]: Warning, duplicate class specified\n";
                it->second = std::move(block);
            }
            else
            {
                myNames.push_back(block->myName);
                myClasses.emplace(block->myName, std::move(block));
            }
        }
    }
    std::sort(myNames.begin(), myNames.end());
}

const gz_SpareClass *gz_SpareCatalog::find(const std::string &name) const
{
    auto it = myClasses.find(name);
    return it == myClasses.end() ? nullptr : it->second.get();
}

std::vector<const gz_SpareClass *> gz_SpareCatalog::select(const std::string &pattern) const
{
    if (const gz_SpareClass *exact = find(pattern))
        return {exact};
    std::vector<const gz_SpareClass *> out;
    for (const std::string &name : myNames)
        if (HostPatternMatch::matchMulti(name, pattern))
            out.push_back(find(name));
    return out;
}
