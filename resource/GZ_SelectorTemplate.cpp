// GZ_SelectorTemplate: the template of a geometry selector.
#include "resource/GZ_SelectorTemplate.h"

#include "resource/gz_Strings.h"

GZ_SelectorTemplate::GZ_SelectorTemplate(const char *name, const char *english_name,
                                         const char *network_types, bool ordered)
    : GZ_ResourceTemplate(name, english_name, /*constructor=*/nullptr),
      myNetworkTypes(gz::toLower(gz::str(network_types))), myOrdered(ordered)
{
}

GZ_SelectorTemplate::~GZ_SelectorTemplate() = default;

bool GZ_SelectorTemplate::supportsType(const char *network_token) const
{
    return gz::containsWord(myNetworkTypes, gz::toLower(gz::str(network_token)));
}
