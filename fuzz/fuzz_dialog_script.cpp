// Fuzzes the dialog-script reader and the parameter-section writer: any text reads without
// harm; its templates written back as a page and read again settle after one round; and the
// text the writer makes of what was read always reads back without an error and, written
// again, gives the same bytes (read, write, read, write: fixed).
#include "host/HostDiagnostics.h"
#include "host/HostDialogStream.h"
#include "host/HostScriptPage.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
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

void checkTemplates(const std::string &text)
{
    HostDialogStream in;
    in.openString(text, "fuzz.ds", HostDialogStream::OPTIONAL);
    HostScriptPage page;
    page.parseSection(in);
    HostSpareLayout first;
    std::string errors;
    page.buildTemplates(first, errors);
    const HostSpareLayout second = roundTrip(first);
    if (roundTrip(second) != second)
        std::abort();
}

/// The section the writer makes of `parms`.
std::string written(GZ_EditScriptedParms &parms)
{
    std::ostringstream os;
    std::string errors;
    parms.save(os, errors, /*check_joins=*/true);
    return os.str();
}

void checkWriter(const std::string &text)
{
    GZ_EditScriptedParms first;
    std::string messages;
    if (!first.parseParmSection(text, "fuzz.ds", messages))
        return;
    const std::string once = written(first);
    GZ_EditScriptedParms second;
    if (!second.parseParmSection(once, "written.ds", messages))
        std::abort(); // the writer made text its own reader refuses
    if (written(second) != once)
        std::abort();
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
    const std::string text(reinterpret_cast<const char *>(data), size);
    checkTemplates(text);
    checkWriter(text);
    return 0;
}
