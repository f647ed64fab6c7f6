// gz_SpareCatalog: the process-wide state behind GZ_SpareProperty.
#pragma once

#include "persistent/gz_SpareClass.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

/// The class-file entries, the classes by name and their sorted names.
struct gz_SpareCatalog
{
    struct FileEntry
    {
        std::string myPath;
        int myOption = 0;
    };

    static gz_SpareCatalog &get();
    /// The catalogue, loaded first when it is not (problems printed once to stderr).
    static gz_SpareCatalog &loaded();

    void load(std::string &errors);
    const gz_SpareClass *find(const std::string &name) const;
    /// The class named exactly `pattern`, else every class whose name matches it, in name
    /// order.
    std::vector<const gz_SpareClass *> select(const std::string &pattern) const;

    std::vector<FileEntry> myFiles;
    std::map<std::string, std::unique_ptr<gz_SpareClass>> myClasses;
    std::vector<std::string> myNames;
    bool myLoaded = false;
    bool myHasBuiltins = false;
};
