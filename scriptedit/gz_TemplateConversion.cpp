// gz_TemplateConversion: single templates turned into definitions.
#include "scriptedit/gz_TemplateConversion.h"

#include "scriptedit/GZ_EditScriptedParm.h"

#include "host/HostParmTemplate.h"
#include "host/HostSpareData.h"

#include <climits>
#include <cstdio>
#include <cstring>

std::unique_ptr<GZ_EditScriptedParm>
gz_TemplateConversion::makeDefinition(const HostParmTemplate &tmpl, HostNode *node,
                                      bool read_autolinks)
{
    const int ramp = tmpl.getMultiType() &
                     (HostParmTemplate::MULTI_RAMP_FLOAT | HostParmTemplate::MULTI_RAMP_COLOR);
    if (tmpl.getType().isMultiparm() && ramp)
    {
        // A ramp is stored as a multiparm of points; its definition is the one integer
        // value (the point count) with the ramp's type.
        HostParmTemplate plain(tmpl);
        plain.clearChildren();
        plain.setType(HOST_PARM_INT);
        auto parm = std::make_unique<GZ_EditScriptedParm>(plain, node, read_autolinks);
        const bool color = (ramp & HostParmTemplate::MULTI_RAMP_COLOR) != 0;
        const std::string label = color ? "Ramp (Color)" : "Ramp (Float)";
        parm->setType(label);
        return parm;
    }
    auto parm = std::make_unique<GZ_EditScriptedParm>(tmpl, node, read_autolinks);
    if (const char *token = tmpl.getTag(HostSpareData::TYPE_VARIANT_TAG))
    {
        // The variant names the row by its script token; the tag itself is not an option.
        for (int i = 0; GZ_EditScriptedParm::theParmTypes[i].label; ++i)
            if (std::strcmp(GZ_EditScriptedParm::theParmTypes[i].scriptToken, token) == 0)
            {
                parm->setType(GZ_EditScriptedParm::theParmTypes[i].label);
                break;
            }
        parm->setSpareValue(HostSpareData::TYPE_VARIANT_TAG, nullptr);
    }
    return parm;
}

bool gz_TemplateConversion::isTabHidden(const HostParmTemplate &switcher, int folder)
{
    return folderTag(switcher, HostSpareData::FOLDER_HIDDEN_TAG, folder) != nullptr;
}

const char *gz_TemplateConversion::folderTag(const HostParmTemplate &switcher,
                                             const std::string &name, int folder)
{
    if (const char *v = switcher.getTag(HostSpareData::folderTagName(name, folder)))
        return v;
    return folder == 0 ? switcher.getTag(name) : nullptr;
}

std::string gz_TemplateConversion::formatInt(double value)
{
    int v = 0;
    if (value >= INT_MAX)
        v = INT_MAX;
    else if (value <= INT_MIN)
        v = INT_MIN;
    else if (value == value)
        v = static_cast<int>(value);
    char buf[32];
    std::snprintf(buf, sizeof(buf), "%d", v);
    return buf;
}
