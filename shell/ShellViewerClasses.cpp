// ShellViewerClasses: registering gzsh's handle and selector classes with the class manager.
#include "shell/ShellViewerClasses.h"

#include "shell/ShellHandle.h"

#include "resource/GZ_ClassManager.h"
#include "resource/GZ_GZTemplate.h"

namespace
{
ShellHandle *makeHandle(const GZ_GZTemplate &gz_template)
{
    return new ShellHandle(gz_template);
}

const ShellViewerClasses::HandleClass theHandleClass{&makeHandle};

// The handle types gzsh shows: those its catalogue's operators and its shipped bindings use,
// and the simple ones a user is likely to bind by hand.
const char *const theHandleTypes[] = {
    "xform",     "camera", "boundingbox", "sphere",    "translate",    "rotate",
    "vector",    "pivot",  "distance",    "hudslider", "hudintslider", "multixform",
    "softxform", "light",  "circle",      "tube",      "torus",        "bound",
};

struct SelectorEntry
{
    const char *name;
    ShellViewerClasses::SelectorClass cls;
};
// The generic selectors gzsh offers, with the components each picks.
const SelectorEntry theSelectors[] = {
    {"everything", {"prims points edges vertices"}},
    {"prims", {"prims"}},
    {"points", {"points"}},
    {"edges", {"edges"}},
    {"objselect", {"objects"}},
};
} // namespace

void ShellViewerClasses::registerAll()
{
    // The class manager lives as long as the process, and so do the classes in it.
    static bool theRegistered = false;
    if (theRegistered)
        return;
    theRegistered = true;
    GZ_ClassManager *classes = GZgetClassManager();
    // The class manager keeps untyped pointers; the shell reads them back as these types.
    void *handle_class = const_cast<HandleClass *>(&theHandleClass);
    for (const char *type : theHandleTypes)
        classes->addGZ(type, handle_class);
    for (const SelectorEntry &entry : theSelectors)
    {
        void *cls = const_cast<SelectorClass *>(&entry.cls);
        classes->addSelector(entry.name, cls, cls);
    }
}

void *ShellViewerClasses::genericHandleClass()
{
    return const_cast<HandleClass *>(&theHandleClass);
}

const ShellViewerClasses::HandleClass *
ShellViewerClasses::handleClass(const GZ_GZTemplate &gz_template)
{
    return static_cast<const HandleClass *>(gz_template.constructor());
}
