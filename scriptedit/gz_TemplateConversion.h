// gz_TemplateConversion: single templates turned into definitions.
#pragma once

#include <memory>
#include <string>

class GZ_EditScriptedParm;
class HostNode;
class HostParmTemplate;

namespace gz_TemplateConversion
{
/// The definition of one template that is not a switcher or a list multiparm: ramps become
/// ramp definitions; labels the host type cannot tell apart (headings, messages, spacers,
/// buttons of other kinds, folder values) are taken from the template's type-name tag.
std::unique_ptr<GZ_EditScriptedParm> makeDefinition(const HostParmTemplate &tmpl, HostNode *node,
                                                    bool read_autolinks);
/// Whether the switcher's tags hide folder `folder`'s tab.
bool isTabHidden(const HostParmTemplate &switcher, int folder);
/// Tag `name` of folder `folder` of a switcher ("NAME:k", or "NAME" for the first folder).
const char *folderTag(const HostParmTemplate &switcher, const std::string &name, int folder);
/// A number truncated to an int and written with "%d" (clamped to the int range).
std::string formatInt(double value);
} // namespace gz_TemplateConversion
