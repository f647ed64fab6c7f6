// GZ_ResourceTemplate: the name, label and constructor shared by every kind of template.
#include "resource/GZ_ResourceTemplate.h"

#include "resource/gz_Strings.h"

GZ_ResourceTemplate::GZ_ResourceTemplate(const char *name, const char *english_name,
                                         void *constructor)
    : myName(gz::str(name)), myEnglishName(gz::str(english_name)), myConstructor(constructor)
{
}

GZ_ResourceTemplate::~GZ_ResourceTemplate() = default;

void GZ_ResourceTemplate::initialize(const char *name, const char *english_name, void *constructor)
{
    myName = gz::str(name);
    myEnglishName = gz::str(english_name);
    myConstructor = constructor;
}
