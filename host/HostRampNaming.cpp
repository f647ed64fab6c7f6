// HostRampNaming: the channel names of a ramp's points.
#include "host/HostRampNaming.h"

#include "host/HostParmTemplate.h"

#include <map>
#include <memory>

bool HostRampNaming::isRamp(const HostParmTemplate &tmpl)
{
    return !tmpl.getType().isMultiparm() &&
           (tmpl.getMultiType() &
            (HostParmTemplate::MULTI_RAMP_FLOAT | HostParmTemplate::MULTI_RAMP_COLOR)) != 0;
}

bool HostRampNaming::isColor(const HostParmTemplate &tmpl)
{
    return isRamp(tmpl) && (tmpl.getMultiType() & HostParmTemplate::MULTI_RAMP_COLOR) != 0;
}

std::string HostRampNaming::stem(const std::string &ramp)
{
    return !ramp.empty() && ramp.back() == '#' ? ramp + "_" : ramp;
}

std::vector<std::string> HostRampNaming::pointPatterns(const std::string &ramp, bool color)
{
    const std::string s = stem(ramp) + "#";
    if (color)
        return {s + "pos", s + "cr", s + "cg", s + "cb", s + "interp"};
    return {s + "pos", s + "value", s + "interp"};
}

std::vector<std::string> HostRampNaming::pointChannels(const std::string &ramp, bool color,
                                                       int point)
{
    std::vector<std::string> names = pointPatterns(ramp, color);
    // The point number replaces the last "#": the stem's own ones are instance marks.
    for (std::string &name : names)
        name.replace(name.rfind('#'), 1, std::to_string(point));
    return names;
}

const HostParmTemplate *HostRampNaming::pointTemplates(const std::string &ramp, bool color)
{
    static std::map<std::string, std::unique_ptr<HostParmTemplateList>> cache;
    std::unique_ptr<HostParmTemplateList> &list = cache[(color ? "c:" : "f:") + ramp];
    if (!list)
    {
        const std::string s = stem(ramp) + "#";
        HostParmTemplate pos(HOST_PARM_FLOAT, s + "pos", "Position");
        HostParmTemplate value = color ? HostParmTemplate(HOST_PARM_RGB, s + "c", "Color", 3)
                                       : HostParmTemplate(HOST_PARM_FLOAT, s + "value", "Value");
        HostParmTemplate interp(HOST_PARM_INT, s + "interp", "Interpolation");
        interp.setDefault(0, HostParmDefault(1.0));
        list = std::make_unique<HostParmTemplateList>(
            std::initializer_list<HostParmTemplate>{pos, value, interp});
    }
    return list->data();
}
