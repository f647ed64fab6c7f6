// Fuzzes the bindings file through the preprocessor and the loader: any file reads without
// harm, what was read writes out, and the written file reads back into bindings that write
// out the same text again.
#include "host/HostDiagnostics.h"
#include "host/HostOperatorTable.h"
#include "host/HostParmTemplate.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "resource/GZ_SelectorTemplate.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace
{

fs::path theDir;

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
    HostOperatorTable::getTable(HOST_NETWORK_SOP)
        ->addOperator("xform", "Transform",
                      HostParmTemplateList{HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3)});
    // Only the written file needs a place on disk; inputs are read as text.
    theDir = fs::temp_directory_path() / ("gz_fuzz_bindings_" + std::to_string(::getpid()));
    fs::create_directories(theDir);
    std::atexit(
        []
        {
            std::error_code ec;
            fs::remove_all(theDir, ec);
        });
    // Messages about the input's form are expected on almost every input; they are dropped
    // so that the fuzzer's own report stays readable.
    HostDiagnostics::setSink([](const HostDiagnostic &) {});
    return 0;
}

namespace
{
std::string readAll(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// Reads `text` as a bindings file into a fresh registry and returns what it writes.
std::string readAndWrite(const std::string &text)
{
    const fs::path written = theDir / "written";
    FuzzManager manager;
    GZ_ResourceManager::WarningScope quiet(false);
    manager.registerOpHandleBindingsFromText(text, "OPbindings");
    if (!manager.writeBindingsFile(written.c_str()))
        std::abort();
    return readAll(written);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string first = readAndWrite(std::string(reinterpret_cast<const char *>(data), size));
    // What was written is a bindings file that means the same.
    if (readAndWrite(first) != first)
        std::abort();
    return 0;
}
