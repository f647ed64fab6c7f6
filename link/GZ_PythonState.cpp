// GZ_PythonState: the description and the template of viewer states written in Python.
#include "link/GZ_PythonState.h"

GZ_PythonState::Template::Template(const Info &info, void *constructor, GZ_ViewerType viewerType,
                                   unsigned int networkMask)
    : GZ_StateTemplate(info.name.c_str(), info.label.c_str(), info.iconOrDefault(), constructor,
                       /*templates=*/nullptr, viewerType, networkMask, info.opIndependent ? 1 : 0,
                       info.volatileHotkey.c_str(), /*op=*/nullptr),
      myInfo(std::make_shared<Info>(info))
{
    setSupportsSelectionChange(info.supportsSelectionChange);
    setSupportsMoveTool(info.supportsMoveTool);
    buildTemplates();
}

// The copy shares the description and has its own parameter list; it starts with no users.
GZ_PythonState::Template::Template(const Template &other)
    : GZ_StateTemplate(other), myInfo(other.myInfo), myTemplates(other.myTemplates)
{
}

GZ_PythonState::Template &GZ_PythonState::Template::operator=(const Template &other)
{
    if (this == &other)
        return *this;
    GZ_StateTemplate::operator=(other);
    myInfo = other.myInfo;
    myTemplates = other.myTemplates;
    return *this;
}

GZ_PythonState::Template::~Template() = default;

HostParmTemplate *GZ_PythonState::Template::templates()
{
    return myTemplates.data();
}

const HostParmTemplate *GZ_PythonState::Template::templates() const
{
    return myTemplates.data();
}

std::uint64_t GZ_PythonState::Template::releaseRefCount()
{
    if (myUseCount > 0)
        --myUseCount;
    return myUseCount;
}

void GZ_PythonState::Template::buildTemplates()
{
    myTemplates.clear();
    const GZ_PythonResource::ParmTemplates &declared = myInfo->parmTemplates;
    if (!declared)
        return;
    for (int i = 0; i < declared->size(); ++i)
        myTemplates.append((*declared)[i]);
}
