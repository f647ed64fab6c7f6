// Helpers for scriptedit tests: short builders for definitions and parameter sets.
#pragma once

#include "scriptedit/GZ_EditScriptedParms.h"

#include <initializer_list>
#include <memory>
#include <string>

namespace gztest
{
/// An ordinary parameter.
inline std::unique_ptr<GZ_EditScriptedParm> parm(const std::string &name,
                                                 const std::string &type = "Float", int size = 1)
{
    auto p = std::make_unique<GZ_EditScriptedParm>();
    p->setName(name);
    p->setLabel(name);
    p->setType(type);
    p->setSize(size);
    return p;
}

/// The opener of a block.
inline std::unique_ptr<GZ_EditScriptedParm>
open(GZ_EditScriptedParmFolderType type, const std::string &name, const std::string &label = "")
{
    auto p = std::make_unique<GZ_EditScriptedParm>(type);
    p->setName(name);
    p->setLabel(label.empty() ? name : label);
    return p;
}

inline std::unique_ptr<GZ_EditScriptedParm> end()
{
    return std::make_unique<GZ_EditScriptedParm>(GZ_FOLDER_END);
}

/// A set of the given entries, in order.
template <typename... P> GZ_EditScriptedParms set(P... entries)
{
    GZ_EditScriptedParms s;
    (s.addParm(std::move(entries)), ...);
    return s;
}

/// Entry names, blank separated, group ends as "}".
inline std::string names(const GZ_EditScriptedParms &s)
{
    std::string out;
    for (int i = 0; i < s.entries(); ++i)
    {
        if (!out.empty())
            out += ' ';
        out += s.getParm(i)->getIsGroupEnd() ? "}" : s.getParm(i)->getName();
    }
    return out;
}
} // namespace gztest
