// HostRampNaming: the channel names of a ramp's points.
#pragma once

#include <string>
#include <vector>

class HostParmTemplate;

/// A ramp parameter is a multiparm of points: its value is the point count, and point i of
/// ramp NAME has the channels NAME<i>pos, then NAME<i>value (float ramps) or NAME<i>cr,
/// NAME<i>cg, NAME<i>cb (colour ramps), then NAME<i>interp. These are the names the ramp
/// default tags already use for a point ("1pos", "1c"), so one naming serves both.
class HostRampNaming
{
public:
    /// Whether `tmpl` is a ramp (an integer template with a ramp bit in its multi-type).
    static bool isRamp(const HostParmTemplate &tmpl);
    /// Whether `tmpl` is a colour ramp.
    static bool isColor(const HostParmTemplate &tmpl);
    /// The stem point names are built on: `ramp`, with "_" appended when it ends in "#" so
    /// that the point number never runs into an instance number.
    static std::string stem(const std::string &ramp);
    /// The channel patterns of every point of `ramp` ("#" stands for the point number).
    static std::vector<std::string> pointPatterns(const std::string &ramp, bool color);
    /// The channels of point `point` of `ramp`, in the order of `pointPatterns`.
    static std::vector<std::string> pointChannels(const std::string &ramp, bool color, int point);
    /// The instance templates of a ramp's points, terminated; they live as long as the
    /// process, so parameters made from them never outlive them.
    static const HostParmTemplate *pointTemplates(const std::string &ramp, bool color);
};
