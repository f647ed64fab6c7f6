// gz_BindingsDocument: a bindings file decoded, before anything is applied to a registry.
#pragma once

#include "host/HostDiagnostics.h"

#include <string>
#include <vector>

/// One step of a decoded bindings file, each with the file and line it came from. The
/// records keep the file's order, problems included, so that applying them reports every
/// message where reading the file in one pass would have.
struct gz_BindingsRecord
{
    enum Kind
    {
        /// An operator block starts: `name` is its key. Replaces that key's bindings.
        OPERATOR,
        /// A bindhandle entry: `type`, `description`, its quoted settings in `text`. The
        /// handle's LINK records follow.
        HANDLE,
        /// A bindhandle entry whose settings are missing or not quoted: `type`. The rest of
        /// the operator block is skipped.
        HANDLE_WITHOUT_SETTINGS,
        /// A link of the last HANDLE: operator parameter `text` (a channel, the parameter of a
        /// legacy link, or the "{ ... }" form), `vecIndex` (-1 but for legacy links), handle
        /// parameter `name`. Its location is the line of the handle parameter.
        LINK,
        /// A bindselector entry starts: `type` and `description`. Problems of its block and
        /// a SELECTOR_END follow.
        SELECTOR,
        /// The selector block ends: `detail` indexes its fields.
        SELECTOR_END,
        /// A problem of the file's form (`detail` indexes it), reported as it stands;
        /// `onlyForKnownSelector` for problems inside a selector block that matter only when
        /// the selector exists.
        PROBLEM,
    };

    Kind kind = PROBLEM;
    /// The file, as an index into the document's `files`, and the line.
    int fileIndex = 0;
    int line = 0;

    std::string name;
    std::string type;
    std::string description;
    std::string text;
    int vecIndex = -1;
    /// SELECTOR_END: the index of its fields in the document's `selectors`; PROBLEM: of the
    /// problem in its `problems`.
    int detail = -1;
    bool onlyForKnownSelector = false;
};

/// The fields of a selector block.
struct gz_BindingsSelectorFields
{
    std::string prompt;
    std::string opParm;
    int opInput = 0;
    int opInputReq = 0;
    std::string primMask;
    int allowDrag = 0;
    std::string menu;
    int astSelAll = 0;
    std::string extraInfo;
    /// Whether every required field was there.
    bool complete = false;
};

/// A bindings file decoded: its records in file order, and what they refer to. Records stay
/// small (a file name is stored once, a selector's fields and a problem's text apart), since a
/// large file makes hundreds of thousands of them.
struct gz_BindingsDocument
{
    std::vector<gz_BindingsRecord> records;
    std::vector<std::string> files;
    std::vector<gz_BindingsSelectorFields> selectors;
    std::vector<HostDiagnostic> problems;

    const std::string &file(const gz_BindingsRecord &record) const
    {
        return files[static_cast<size_t>(record.fileIndex)];
    }
};
