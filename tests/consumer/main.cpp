// Uses the installed headers and libraries; exits non-zero when something is off.
#include <host/HostColor.h>
#include <resource/GZ_ClassManager.h>
#include <resource/GZ_ResourceManager.h>

#if GZ_CONSUMER_PYTHON
#include <python/HostPython.h>
#endif

#include <cstdio>

int main()
{
    GZ_ClassManager *classes = GZgetClassManager();
    classes->addGZ("consumer_handle", nullptr);
    if (classes->getNumGZs() != 1 || classes->getGZName(0) != "consumer_handle")
    {
        std::fprintf(stderr, "class manager did not keep the class\n");
        return 1;
    }
    HostColor a(HostColor::RGB, 1, 0, 0);
    if (a != HostColor(HostColor::RGB, 1, 0, 0))
    {
        std::fprintf(stderr, "colour equality is broken\n");
        return 1;
    }
    if (GZresourceManagerExists() || GZgetResourceManager())
    {
        std::fprintf(stderr, "a resource manager exists before creation\n");
        return 1;
    }
    GZ_ResourceManager *manager = GZcreateResourceManager(/*print_warnings=*/true);
    if (!manager || GZgetResourceManager() != manager || !GZresourceManagerExists())
    {
        std::fprintf(stderr, "the resource manager was not created\n");
        return 1;
    }
    if (GZcreateResourceManager(/*print_warnings=*/true) != manager)
    {
        std::fprintf(stderr, "a second creation replaced the resource manager\n");
        return 1;
    }
#if GZ_CONSUMER_PYTHON
    if (!HostPython::start() || !HostPython::runText("import zum\nassert zum.node('/obj')", "<c>"))
    {
        std::fprintf(stderr, "the scripting layer did not run\n");
        return 1;
    }
    HostPython::stop();
#endif
    std::puts("consumer ok");
    return 0;
}
