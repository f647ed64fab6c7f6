// HostScriptOperator: an operator type whose parameter interface comes from a dialog script.
#pragma once

#include "host/HostOperator.h"

#include <iosfwd>
#include <string>
#include <vector>

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

    /// The script the type runs (its "script" line); empty when none.
    const std::string &getScriptName() const { return myScriptName; }
    void setScriptName(const std::string &name) { myScriptName = name; }

    // Inputs and outputs, indexed from 0; entries may be empty.
    const std::vector<std::string> &getInputNames() const { return myInputNames; }
    void setInputNames(const std::vector<std::string> &names) { myInputNames = names; }
    const std::vector<std::string> &getInputLabels() const { return myInputLabels; }
    void setInputLabels(const std::vector<std::string> &labels) { myInputLabels = labels; }
    const std::vector<std::string> &getOutputLabels() const { return myOutputLabels; }
    void setOutputLabels(const std::vector<std::string> &labels) { myOutputLabels = labels; }

    /// Scene units of the type's parameters: 1.0 when not set.
    double getUnitLength() const { return myUnitLength; }
    void setUnitLength(double length) { myUnitLength = length; }
    double getUnitMass() const { return myUnitMass; }
    void setUnitMass(double mass) { myUnitMass = mass; }

    /// Writes the lines that only this kind of scripted type has (without a final newline)
    /// and returns true; the default has none and writes nothing.
    virtual bool writeSpecificData(std::ostream &os) const;

private:
    std::string myDialogScript;
    std::string myScriptName;
    std::vector<std::string> myInputNames;
    std::vector<std::string> myInputLabels;
    std::vector<std::string> myOutputLabels;
    double myUnitLength = 1.0;
    double myUnitMass = 1.0;
};
