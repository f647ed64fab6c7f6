// GZ_ResourceTemplate: the name, label and constructor shared by every kind of template.
#pragma once

#include <string>

/// Describes one kind of interactive resource (handle, op-handle-link, selector, state) so
/// the host can list it, bind it and create instances of it. The constructor is an untyped
/// function pointer supplied by the host's class that implements the resource; it stays null
/// until the resource manager joins it from the class manager.
class GZ_ResourceTemplate
{
public:
    GZ_ResourceTemplate(const char *name, const char *english_name, void *constructor);
    GZ_ResourceTemplate(const GZ_ResourceTemplate &) = default;
    GZ_ResourceTemplate &operator=(const GZ_ResourceTemplate &) = default;
    virtual ~GZ_ResourceTemplate();

    const std::string &name() const { return myName; }
    const std::string &englishName() const { return myEnglishName; }
    void *constructor() const { return myConstructor; }
    void constructor(void *constructor) { myConstructor = constructor; }

    /// Replaces the name, the label and the constructor together.
    void initialize(const char *name, const char *english_name, void *constructor);

private:
    std::string myName;
    std::string myEnglishName;
    void *myConstructor = nullptr;
};
