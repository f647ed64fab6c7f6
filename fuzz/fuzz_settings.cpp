// Fuzzes the settings-text parser: any text parses, and what parsed writes back as text
// that parses into the same list.
#include "host/HostDiagnostics.h"
#include "link/GZ_SettingList.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{
bool finite(const gz_Setting &s)
{
    switch (s.getType())
    {
    case GZ_SETTING_NUMBER:
        return std::isfinite(static_cast<const gz_NumberSetting &>(s).getValue());
    case GZ_SETTING_STRING:
        return true;
    case GZ_SETTING_VECTOR2:
    {
        const GZ_Vector2 &v = static_cast<const gz_Vector2Setting &>(s).getValue();
        return std::isfinite(v.x) && std::isfinite(v.y);
    }
    case GZ_SETTING_VECTOR3:
    {
        const GZ_Vector3 &v = static_cast<const gz_Vector3Setting &>(s).getValue();
        return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
    }
    case GZ_SETTING_VECTOR4:
    {
        const GZ_Vector4 &v = static_cast<const gz_Vector4Setting &>(s).getValue();
        return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z) && std::isfinite(v.w);
    }
    }
    return true;
}

/// Problems reported since the last reset: the written text must read back without any.
int theReported = 0;
} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // Parse errors are expected on almost every input; keep them off the terminal.
    HostDiagnostics::setSink([](const HostDiagnostic &) { ++theReported; });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    // The parser reads a C string: the text ends at the first NUL byte.
    GZ_SettingList list;
    list.loadFromSettingString(text.c_str());

    for (int i = 0; i < list.getNumSettings(); ++i)
        if (!finite(*list.getSettingAt(i)))
            return 0; // "inf" does not read back as a number
    std::string written;
    list.generateSettingString(written);
    theReported = 0;
    GZ_SettingList again;
    again.loadFromSettingString(written.c_str());
    std::string rewritten;
    again.generateSettingString(rewritten);
    if (theReported != 0 || rewritten != written || !(again == list))
        std::abort();
    return 0;
}
