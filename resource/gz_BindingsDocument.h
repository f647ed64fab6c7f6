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
        /// The selector block ends: its fields, `complete` when every required one was there.
        SELECTOR_END,
        /// A problem of the file's form, reported as it stands; `onlyForKnownSelector` for
        /// problems inside a selector block that matter only when the selector exists.
        PROBLEM,
    };

    Kind kind = PROBLEM;
    std::string file;
    int line = 0;

    std::string name;
    std::string type;
    std::string description;
    std::string text;
    int vecIndex = -1;

    // Selector fields.
    std::string prompt;
    std::string opParm;
    int opInput = 0;
    int opInputReq = 0;
    std::string primMask;
    int allowDrag = 0;
    std::string menu;
    int astSelAll = 0;
    std::string extraInfo;
    bool complete = false;

    HostDiagnostic problem;
    bool onlyForKnownSelector = false;
};

/// A bindings file decoded: its records in file order.
struct gz_BindingsDocument
{
    std::vector<gz_BindingsRecord> records;
};
