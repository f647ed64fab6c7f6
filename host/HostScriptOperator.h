// HostScriptOperator: an operator type whose parameter interface comes from a dialog script.
#pragma once

#include "host/HostOperator.h"

/// An operator type defined by a script: it keeps its own bindings (FLAG_SCRIPTED is always
/// set) and holds the dialog-script text its templates were read from. The library derives
/// its scripted operator type from this.
class HostScriptOperator : public HostOperator
{
public:
    HostScriptOperator(const std::string &name, const std::string &label,
                       const HostParmTemplateList &templates, const std::string &child_table = "",
                       int min_inputs = 0, int max_inputs = 1, unsigned flags = 0,
                       const std::string &icon = "");
    ~HostScriptOperator() override;

    /// The dialog-script text of the parameter interface (empty when none was given).
    const std::string &getDialogScript() const { return myDialogScript; }
    void setDialogScript(const std::string &text) { myDialogScript = text; }

private:
    std::string myDialogScript;
};
