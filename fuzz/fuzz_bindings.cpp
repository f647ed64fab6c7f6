// Fuzzes the bindings file through the preprocessor and the loader: any file reads without
// harm, what was read writes out, and the written file reads back into bindings that write
// out the same text again.
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
#include <iterator>
#include <string>
#include <system_error>
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
    std::atexit(
        []
        {
            std::error_code ec;
            fs::remove_all(theDir, ec);
        });
    HostReader::setSearchPath({theDir.string()});
    theNull = ::open("/dev/null", O_WRONLY);
    return 0;
}

namespace
{
void writeInput(const char *data, size_t size)
{
    std::ofstream file(theDir / "OPbindings", std::ios::binary | std::ios::trunc);
    file.write(data, static_cast<std::streamsize>(size));
}

/// Loads OPbindings into `manager` with the standard error stream silenced: messages about
/// the file's form are expected on almost every input, and the fuzzer's own report goes there.
void load(FuzzManager &manager)
{
    std::fflush(stderr);
    const int saved = ::dup(2);
    ::dup2(theNull, 2);
    manager.registerOpHandleBindings();
    std::fflush(stderr);
    ::dup2(saved, 2);
    ::close(saved);
}

std::string readAll(const fs::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    writeInput(reinterpret_cast<const char *>(data), size);
    const fs::path written = theDir / "written";
    std::string first;
    {
        FuzzManager manager;
        load(manager);
        if (!manager.writeBindingsFile(written.c_str()))
            std::abort();
        first = readAll(written);
    }
    // What was written is a bindings file that means the same.
    writeInput(first.data(), first.size());
    FuzzManager again;
    load(again);
    if (!again.writeBindingsFile(written.c_str()) || readAll(written) != first)
        std::abort();
    return 0;
}
