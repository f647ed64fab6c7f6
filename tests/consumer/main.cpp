// Uses the installed headers and libraries; exits non-zero when something is off.
#include <host/HostColor.h>
#include <resource/GZ_ClassManager.h>

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
    std::puts("consumer ok");
    return 0;
}
