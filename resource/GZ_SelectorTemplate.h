// GZ_SelectorTemplate: the template of a geometry selector.
#pragma once

#include "resource/GZ_ResourceTemplate.h"

#include <string>

/// A selector (a geometry selection prompt) as registered with the resource manager.
/// The data pointer comes from the host's selector class (through the class manager) and
/// marks a generic selector; it is not owned.
class GZ_SelectorTemplate : public GZ_ResourceTemplate
{
public:
    /// `network_types` is a blank-separated list of network tokens (stored in lower case).
    GZ_SelectorTemplate(const char *name, const char *english_name, const char *network_types,
                        bool ordered);
    GZ_SelectorTemplate(const GZ_SelectorTemplate &) = default;
    GZ_SelectorTemplate &operator=(const GZ_SelectorTemplate &) = default;
    ~GZ_SelectorTemplate() override;

    /// Whether `network_token` (any case) is one of the whole words of the network types.
    bool supportsType(const char *network_token) const;
    const std::string &getNetworkTypes() const { return myNetworkTypes; }

    void *data() const { return myData; }
    void data(void *data) { myData = data; }
    bool isGeneric() const { return myData != nullptr; }

    /// Whether the selection keeps the order in which the user picked components.
    bool ordered() const { return myOrdered; }

private:
    std::string myNetworkTypes;
    void *myData = nullptr;
    bool myOrdered = false;
};
