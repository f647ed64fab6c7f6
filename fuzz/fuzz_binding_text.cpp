// Fuzzes the binding-text parser: any text gives a channel name and an invertible mapping.
#include "link/GZ_OpHandleLink.h"
#include "link/gz_Binding.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    std::string channel;
    double a, b, c, d;
    GZ_OpHandleLink::extractProjection(channel, text, a, b, c, d);

    // The mapping can always be inverted: a singular one was replaced by the identity.
    if (b * c - a * d == 0.0 || !std::isfinite(a) || !std::isfinite(b) || !std::isfinite(c) ||
        !std::isfinite(d))
        std::abort();
    if (text.empty() || text[0] != '{')
    {
        if (channel != text || a != 1.0 || b != 0.0 || c != 0.0 || d != 1.0)
            std::abort();
        return 0;
    }
    // A projected channel name is trimmed and stops before the first "}".
    if (channel.find('}') != std::string::npos)
        std::abort();
    if (!channel.empty() &&
        (gz::isBindingSpace(channel.front()) || gz::isBindingSpace(channel.back())))
        std::abort();
    std::string name;
    GZ_OpHandleLink::extractChannelName(name, text);
    if (name != channel)
        std::abort();
    return 0;
}
