// Fuzzes the operator type library reader: any bytes read without harm, a refused file gives
// no definitions at all (never half a library), and what it accepts writes out again as a
// file that reads back to the same definitions.
#include "host/HostAssetLibraryFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    std::vector<HostAssetDefinition> definitions;
    std::string error;
    int line = 0;
    if (!HostAssetLibraryFile::parse(text, definitions, error, line))
    {
        if (!definitions.empty() || error.empty() || line < 1)
            std::abort();
        return 0;
    }
    std::vector<HostAssetDefinition> again;
    const std::string written = HostAssetLibraryFile::format(definitions);
    if (!HostAssetLibraryFile::parse(written, again, error, line) || again != definitions ||
        HostAssetLibraryFile::format(again) != written)
        std::abort();
    return 0;
}
