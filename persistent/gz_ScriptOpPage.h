// gz_ScriptOpPage: the dialog-script page reader of scripted operator types.
#pragma once

#include "host/HostScriptPage.h"

#include <string>
#include <vector>

class GZ_ScriptOperator;

/// A page of an operator dialog script. Adds to the host's page grammar the keywords of
/// inputs, outputs, units, the legacy input map and handle and selector bindings, which it
/// applies to its operator as they are read (bindings go to the resource manager). Its
/// parameter blocks understand the parameter-level "bindhandle" and "bindselector".
class gz_ScriptOpPage : public HostScriptPage
{
public:
    /// With `check_only` (and no operator) bindings and the legacy map are read but neither
    /// applied nor reported: the page is only checked, as before a type is (re)defined.
    gz_ScriptOpPage(GZ_ScriptOperator *op, int min_inputs, int max_inputs,
                    bool check_only = false);

    std::string myScriptName;
    std::vector<std::string> myInputNames;
    std::vector<std::string> myInputLabels;
    std::vector<std::string> myOutputLabels;
    int myMinInputs;
    int myMaxInputs;
    bool myHasUnitLength = false;
    double myUnitLength = 1.0;
    bool myHasUnitMass = false;
    double myUnitMass = 1.0;

protected:
    std::unique_ptr<HostScriptParm> createParm(HostScriptParm::Kind kind) override;
    std::unique_ptr<HostScriptPage> createImportPage() override;
    std::unique_ptr<HostScriptPage> createFolderPage() override;
    void addHelpLine(const std::string &line) override;
    bool parseUnknownToken(HostDialogStream &in, const std::string &token) override;

private:
    bool readInputText(HostDialogStream &in, std::vector<std::string> &texts);
    void readLegacyMap(HostDialogStream &in);
    void readUnit(HostDialogStream &in, const std::string &keyword, bool &has, double &value);
    void readBindHandle(HostDialogStream &in);
    void readBindSelector(HostDialogStream &in, bool reserved);

    GZ_ScriptOperator *myOperator;
    bool myCheckOnly;
};
