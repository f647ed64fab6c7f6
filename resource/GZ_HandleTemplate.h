// GZ_HandleTemplate: the template of a handle type together with its parameter templates.
#pragma once

#include "resource/GZ_ResourceTemplate.h"

class HostParmTemplate;

/// A handle (a manipulator drawn in a viewer) as registered with the resource manager.
/// The parameter templates belong to whoever made them (usually static tables of the
/// host's handle class); the template only points at them.
class GZ_HandleTemplate : public GZ_ResourceTemplate
{
public:
    GZ_HandleTemplate(const char *name, const char *english_name, void *constructor,
                      HostParmTemplate *templates);
    GZ_HandleTemplate(const GZ_HandleTemplate &) = default;
    GZ_HandleTemplate &operator=(const GZ_HandleTemplate &) = default;
    ~GZ_HandleTemplate() override;

    virtual HostParmTemplate *templates() { return myTemplates; }
    virtual const HostParmTemplate *templates() const { return myTemplates; }

private:
    HostParmTemplate *myTemplates = nullptr;
};
