// Fuzzes the dialog-script reader: any text reads without harm, and its templates written
// back as a page and read again settle after one round (read, write, read, write: fixed).
#include "host/HostDiagnostics.h"
#include "host/HostDialogStream.h"
#include "host/HostScriptPage.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{
HostSpareLayout roundTrip(const HostSpareLayout &layout)
{
    HostSpareLayout out;
    std::string errors;
    HostScriptPage::fromTemplates(layout)->buildTemplates(out, errors);
    return out;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    HostScopedDiagnosticSink quiet(
        [](const HostDiagnostic &d)
        {
            if (d.myText.empty())
                std::abort(); // every report carries its text
        });
    HostDialogStream in;
    in.openString(std::string(reinterpret_cast<const char *>(data), size), "fuzz.ds",
                  HostDialogStream::OPTIONAL);
    HostScriptPage page;
    page.parseSection(in);
    HostSpareLayout first;
    std::string errors;
    page.buildTemplates(first, errors);
    const HostSpareLayout second = roundTrip(first);
    if (roundTrip(second) != second)
        std::abort();
    return 0;
}
