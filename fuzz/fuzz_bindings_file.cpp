// Fuzzes the bindings-file reader: any file reads without harm, and what was read writes out.
#include "host/HostOperatorTable.h"
#include "host/HostParmTemplate.h"
#include "host/HostReader.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/GZ_SelectorTemplate.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{

fs::path theDir;
int theNull = -1;

/// A registry apart from the instance, with a handle and a selector the inputs can name.
class FuzzManager : public GZ_ResourceManager
{
public:
    FuzzManager()
    {
        static const char *const parms[] = {"tx", "ty", "tz", "rx", nullptr};
        registerOpHandleLink(
            new GZ_GZTemplate("xform", "Transformer", "Sop Object", "", parms, 0, ~0u, false));
        registerSelector(new GZ_SelectorTemplate("everything", "Everything", "Sop", false));
    }
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // The instance first, so the fuzzing managers stay apart from it.
    GZcreateResourceManager(/*print_warnings=*/false);
    GZ_ResourceManager::ourPrintWarnings = false;
    HostOperatorTable::getTable(HOST_NETWORK_SOP)
        ->addOperator("xform", "Transform",
                      HostParmTemplateList{HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3)});
    theDir = fs::temp_directory_path() / ("gz_fuzz_bindings_" + std::to_string(::getpid()));
    fs::create_directories(theDir);
    HostReader::setSearchPath({theDir.string()});
    theNull = ::open("/dev/null", O_WRONLY);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    {
        std::ofstream file(theDir / "OPbindings", std::ios::binary);
        file.write(reinterpret_cast<const char *>(data), static_cast<std::streamsize>(size));
    }
    FuzzManager manager;
    // Messages about the file's form are expected on almost every input; keep them out of
    // the fuzzer's own report, which also goes to the standard error stream.
    std::fflush(stderr);
    const int saved = ::dup(2);
    ::dup2(theNull, 2);
    manager.registerOpHandleBindings();
    std::fflush(stderr);
    ::dup2(saved, 2);
    ::close(saved);
    const fs::path written = theDir / "written";
    if (!manager.writeBindingsFile(written.c_str()))
        std::abort();
    return 0;
}
