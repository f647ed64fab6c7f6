// HostSpareLayout: a parameter interface as the host keeps it: templates plus import records.
#pragma once

#include "host/HostImportRecord.h"
#include "host/HostParmTemplate.h"

#include <vector>

/// The spare parameter interface of a node (or any interface read from a dialog script): the
/// terminated template list and the import records placed among its templates.
struct HostSpareLayout
{
    HostParmTemplateList myTemplates;
    std::vector<HostImportRecord> myImports;

    bool empty() const { return myTemplates.empty() && myImports.empty(); }
    bool operator==(const HostSpareLayout &o) const
    {
        return myTemplates == o.myTemplates && myImports == o.myImports;
    }
    bool operator!=(const HostSpareLayout &o) const { return !(*this == o); }
};
