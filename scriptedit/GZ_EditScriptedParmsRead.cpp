// GZ_EditScriptedParms: definitions read from dialog-script text, and the node update.
#include "scriptedit/GZ_EditScriptedParms.h"

#include "host/HostDiagnostics.h"
#include "host/HostDialogStream.h"
#include "host/HostNode.h"
#include "host/HostScriptPage.h"
#include "host/HostSpareLayout.h"
#include "host/HostSpareUpdate.h"

#include <sstream>

namespace
{
/// Reads a parameter section into a layout; false when anything was reported as an error.
bool readLayout(HostDialogStream &in, HostSpareLayout &layout, std::string &messages)
{
    HostDiagnosticCapture capture;
    HostScriptPage page;
    const bool parsed = page.parseSection(in);
    std::string build_errors;
    const bool built = parsed && page.buildTemplates(layout, build_errors);
    bool failed = !parsed || !built;
    for (const HostDiagnostic &d : capture.diagnostics())
        failed = failed || d.mySeverity == HostDiagSeverity::Error;
    messages += capture.text();
    if (!build_errors.empty())
        messages += build_errors + (build_errors.back() == '\n' ? "" : "\n");
    return !failed;
}
} // namespace

GZ_EditScriptedParms::GZ_EditScriptedParms(HostNode *node, HostDialogStream &in,
                                           const BuildOptions &options, std::string &messages)
{
    if (node)
    {
        myOperator = node->getOperator();
        myNodeId = node->getUniqueId();
        initializeReserveNames(node);
    }
    HostSpareLayout layout;
    if (readLayout(in, layout, messages))
        createParms(layout, node, options);
    if (node)
        initializeReserveFlags();
}

bool GZ_EditScriptedParms::parseParmSection(const std::string &text, const std::string &file,
                                            std::string &messages)
{
    HostDialogStream in;
    in.openString(text, file);
    HostSpareLayout layout;
    if (!readLayout(in, layout, messages))
        return false;
    createParms(layout, nullptr, BuildOptions());
    return true;
}

int GZ_EditScriptedParms::updateNode(std::string *error)
{
    // The host reads the set in the form it is written in, so what the node gets is exactly
    // what sparels shows afterwards.
    HostNode *node = getNode();
    if (!node)
    {
        if (error)
            *error = "the parameter set has no node";
        return 0;
    }
    std::ostringstream text;
    std::string errors;
    save(text, errors, /*check_joins=*/true);
    HostDialogStream in;
    in.openString(text.str(), node->getFullPath());
    HostDiagnosticCapture capture;
    std::string host_errors;
    const bool ok = HostSpareUpdate::updateNode(*node, in, host_errors);
    if (!ok)
    {
        if (error)
            *error = host_errors.empty() ? capture.text() : host_errors;
        return 0;
    }
    myParms.clear();
    return 1;
}
