// Fuzzes property files: any text loads into the spare-property catalogue without harm,
// loading it again lists the same, and adding every class's properties to a set never fails
// hard.
#include "persistent/GZ_SpareProperty.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostDiagnostics.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

namespace
{
std::string listAll()
{
    std::string errors, out;
    GZ_SpareProperty::list(errors, out, nullptr, nullptr, false);
    GZ_SpareProperty::list(errors, out, "*", "*", false);
    GZ_SpareProperty::list(errors, out, "*", nullptr, true);
    return errors + out;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    HostScopedDiagnosticSink quiet([](const HostDiagnostic &) {});
    static const std::string path = "/tmp/fuzz_property_file_" + std::to_string(::getpid());
    static bool registered = false;
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char *>(data),
                                                static_cast<std::streamsize>(size));
    std::string errors;
    if (!registered)
    {
        registered = true;
        GZ_SpareProperty::addClassFile(errors, path.c_str(), 0);
    }
    GZ_SpareProperty::initialize(errors);
    const std::string first = listAll();
    GZ_SpareProperty::initialize(errors);
    if (listAll() != first)
        std::abort();
    std::vector<std::string> classes;
    GZ_SpareProperty::getClasses(classes, nullptr);
    for (const std::string &name : classes)
    {
        GZ_EditScriptedParms parms;
        GZ_SpareProperty::addProperty(parms, nullptr, name.c_str(), "*", errors, nullptr,
                                      GZ_SPARE_PROPERTY_NO_FILTER,
                                      GZ_SPARE_PROPERTY_PACKAGE_MAIN, nullptr);
        GZ_SpareProperty::getClassAsParameters(parms, name.c_str());
    }
    return 0;
}
