// GZ_PythonHandle: the description and the templates of viewer handles written in Python.
#include "link/GZ_PythonHandle.h"

namespace
{

constexpr const char *theHandleGroupName = "handle_parameter_group";
constexpr const char *theHandleGroupLabel = "Handle parameters";

/// The suffix of component k of a multi-component handle parameter. Components past the
/// third have no suffix and so carry the bare parameter name.
const char *componentSuffix(int k)
{
    static const char *const suffixes[] = {"x", "y", "z"};
    return k < 3 ? suffixes[k] : "";
}

} // namespace

// --- Template ---------------------------------------------------------------------------------

GZ_PythonHandle::Template::Template(const Info &info, void *constructor)
    : GZ_HandleTemplate(info.name.c_str(), info.label.c_str(), constructor,
                        /*templates=*/nullptr),
      myInfo(std::make_shared<Info>(info))
{
    buildTemplates();
}

// The copy shares the description and has its own parameter list; it starts with no users.
GZ_PythonHandle::Template::Template(const Template &other)
    : GZ_HandleTemplate(other), myInfo(other.myInfo), myTemplates(other.myTemplates)
{
}

GZ_PythonHandle::Template &GZ_PythonHandle::Template::operator=(const Template &other)
{
    if (this == &other)
        return *this;
    GZ_HandleTemplate::operator=(other);
    myInfo = other.myInfo;
    myTemplates = other.myTemplates;
    return *this;
}

GZ_PythonHandle::Template::~Template() = default;

HostParmTemplate *GZ_PythonHandle::Template::templates()
{
    return myTemplates.empty() ? nullptr : myTemplates.data();
}

const HostParmTemplate *GZ_PythonHandle::Template::templates() const
{
    return myTemplates.empty() ? nullptr : myTemplates.data();
}

std::uint64_t GZ_PythonHandle::Template::releaseRefCount()
{
    if (myUseCount > 0)
        --myUseCount;
    return myUseCount;
}

// The declared parameters go inside one collapsible folder so that the host shows them
// together, apart from any parameters of the node the handle is attached to.
void GZ_PythonHandle::Template::buildTemplates()
{
    myTemplates.clear();
    const GZ_PythonResource::ParmTemplates &declared = myInfo->parmTemplates;
    if (!declared || declared->empty())
        return;

    HostParmTemplate folder(HOST_PARM_SWITCHER, theHandleGroupName, theHandleGroupLabel,
                            /*vector_size=*/0);
    folder.addFolder(theHandleGroupLabel, declared->size());
    folder.tags().set(HostSpareData::GROUP_TYPE_TAG, HostSpareData::COLLAPSIBLE_GROUP);
    myTemplates.append(folder);
    for (int i = 0; i < declared->size(); ++i)
        myTemplates.append((*declared)[i]);
}

// --- GZTemplate -------------------------------------------------------------------------------

GZ_PythonHandle::GZTemplate::GZTemplate(std::shared_ptr<Info> &info)
    : GZ_GZTemplate(info->name.c_str(), info->label.c_str(), info->networkTypes.c_str(),
                    info->iconOrDefault(), emptyParmNames(), /*ethereal=*/0,
                    /*viewer_mask=*/~0u, /*display_always=*/false),
      myInfo(info)
{
    numberParms();
}

GZ_PythonHandle::GZTemplate::~GZTemplate() = default;

const char *const *GZ_PythonHandle::GZTemplate::emptyParmNames()
{
    static const char *const theNames[] = {nullptr};
    return theNames;
}

// Handle parameters are numbered from 0 in the order of the description's parameter names.
// A parameter of n >= 2 components stands for n handle parameters, one per component; a name
// without a definition counts as a one-component parameter.
void GZ_PythonHandle::GZTemplate::numberParms()
{
    int index = 0;
    for (const std::string &parm : myInfo->parmNames)
    {
        auto it = myInfo->parmDefinitions.find(parm);
        if (it == myInfo->parmDefinitions.end() || it->second.components < 2)
        {
            addParmName(parm.c_str(), index++);
            continue;
        }
        ParmDefinition &definition = it->second;
        for (int k = 0; k < definition.components; ++k)
        {
            std::string component = parm + componentSuffix(k);
            definition.componentNames.push_back(component);
            addParmName(component.c_str(), index++);
        }
    }
}
