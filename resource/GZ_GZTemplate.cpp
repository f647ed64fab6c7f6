// GZ_GZTemplate: the template of an op-handle-link, a handle as bound to operator parameters.
#include "resource/GZ_GZTemplate.h"

#include "resource/gz_Strings.h"

GZ_GZTemplate::GZ_GZTemplate(const char *name, const char *english_name, const char *network_types,
                             const char *icon_name, const char *const *parm_names, short ethereal,
                             unsigned viewer_mask, bool display_always)
    : GZ_ResourceTemplate(name, english_name, /*constructor=*/nullptr),
      myNetworkTypes(gz::toLower(gz::str(network_types))), myIconName(gz::str(icon_name)),
      myEthereal(ethereal), myViewerMask(viewer_mask), myDisplayAlways(display_always)
{
    for (int i = 0; parm_names && parm_names[i]; ++i)
        addParmName(parm_names[i], i);
}

GZ_GZTemplate::~GZ_GZTemplate() = default;

bool GZ_GZTemplate::supportsType(const char *network_token) const
{
    return gz::containsWord(myNetworkTypes, gz::toLower(gz::str(network_token)));
}

int GZ_GZTemplate::parmIndex(const std::string &parm_name) const
{
    auto it = myParmNameTable.find(parm_name);
    return it == myParmNameTable.end() ? -1 : it->second;
}

void GZ_GZTemplate::addParmName(const char *name, int index)
{
    // A name listed twice keeps its first index, where a forward search would find it.
    myParmNameTable.emplace(gz::str(name), index);
    myParmNameList.push_back(gz::str(name));
}
