// ShellViewerClasses: the handle and selector classes that gzsh's viewer contributes.
#pragma once

class GZ_GZTemplate;
class ShellHandle;

/// The classes a viewer library hands the class manager before the resource manager is
/// created, so that the manager joins each to the template of the same name. gzsh's viewer
/// has one handle class, which can drive any handle from the command line, registered for
/// the handle types it shows; and one generic selector class for the selectors it offers.
/// A template with no class joined is one the shell cannot show.
class ShellViewerClasses
{
public:
    /// What the class manager holds as a handle constructor: the factory of the class.
    struct HandleClass
    {
        ShellHandle *(*make)(const GZ_GZTemplate &gz_template);
    };
    /// What the class manager holds as a selector constructor and data.
    struct SelectorClass
    {
        const char *componentTypes;
    };

    /// Adds every class to the process's class manager; later calls do nothing.
    static void registerAll();
    /// The class that drives any handle, as the class manager holds it; handles registered
    /// later (written in Python) are given it.
    static void *genericHandleClass();
    /// The shell's handle class joined to `gz_template`, or null.
    static const HandleClass *handleClass(const GZ_GZTemplate &gz_template);
};
