// GZ_HandleTemplate: the template of a handle type together with its parameter templates.
#include "resource/GZ_HandleTemplate.h"

GZ_HandleTemplate::GZ_HandleTemplate(const char *name, const char *english_name, void *constructor,
                                     HostParmTemplate *templates)
    : GZ_ResourceTemplate(name, english_name, constructor), myTemplates(templates)
{
}

GZ_HandleTemplate::~GZ_HandleTemplate() = default;
