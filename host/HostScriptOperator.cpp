// HostScriptOperator: an operator type defined by a dialog script.
#include "host/HostScriptOperator.h"

HostScriptOperator::HostScriptOperator(const std::string &name, const std::string &label,
                                       const HostParmTemplateList &templates,
                                       const std::string &child_table, int min_inputs,
                                       int max_inputs, unsigned flags, const std::string &icon)
    : HostOperator(name, label, templates, child_table, min_inputs, max_inputs,
                   flags | FLAG_SCRIPTED, icon)
{
}

HostScriptOperator::~HostScriptOperator() = default;

bool HostScriptOperator::writeSpecificData(std::ostream &) const
{
    return false;
}
