// Shared helpers of the resource tests: the process-wide manager and throw-away operators.
#pragma once

#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "host/HostParmTemplate.h"
#include "resource/GZ_ResourceManager.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include <unistd.h>

namespace gztest
{

/// The process-wide manager. It must exist before a test constructs a manager of its own,
/// or that one would become the instance.
inline GZ_ResourceManager &instance()
{
    return *GZcreateResourceManager(/*print_warnings=*/true);
}

/// An operator name not used before in this process (tests share the global tables).
inline std::string uniqueName(const std::string &base)
{
    static int theCounter = 0;
    return base + "_" + std::to_string(++theCounter);
}

/// Adds an operator type with `templates` to the standard table of `type`.
inline HostOperator *addOperator(HostNetworkType type, const std::string &base,
                                 const HostParmTemplateList &templates = HostParmTemplateList(),
                                 unsigned flags = 0)
{
    HostOperatorTable *table = HostOperatorTable::getTable(type);
    return table->addOperator(uniqueName(base), base, templates, "", flags);
}

/// A transform-like parameter interface: t (xyz), r (xyz), scale, group (string).
inline HostParmTemplateList transformTemplates()
{
    return HostParmTemplateList{HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3),
                                HostParmTemplate(HOST_PARM_XYZ, "r", "Rotate", 3),
                                HostParmTemplate(HOST_PARM_FLOAT, "scale", "Scale", 1),
                                HostParmTemplate(HOST_PARM_STRING, "group", "Group", 1)};
}

struct EnsureInstance
{
    EnsureInstance() { instance(); }
};

/// A manager that is not the instance: an empty registry the test may fill freely. The
/// instance is created first (by the first base), so this one never takes its place.
class ScratchManager : private EnsureInstance, public GZ_ResourceManager
{
};

/// A path in the temporary directory private to this process: CTest runs the cases of one
/// executable in parallel processes, which must not share files.
inline std::filesystem::path scratchPath(const std::string &name)
{
    return std::filesystem::temp_directory_path() / (name + "." + std::to_string(::getpid()));
}

} // namespace gztest
