// ShellOperatorCatalog: the operator types gzsh puts into the host's operator tables.
#pragma once

#include "host/HostParmTemplate.h"

#include <string>
#include <vector>

/// The kinds of parameter the catalogue uses.
enum class ShellParmKind
{
    Float,  ///< numbers
    Int,    ///< whole numbers
    Xyz,    ///< numbers named x, y, z (channel names "tx", "ty", "tz")
    Toggle, ///< 0 or 1
    Menu,   ///< an index into a fixed menu of tokens
    String  ///< text
};

/// One parameter of a catalogue entry. `menu` lists the tokens of a menu as
/// "token:Label|token:Label"; `text` is the default of a string.
struct ShellParmSpec
{
    const char *name;
    const char *label;
    ShellParmKind kind;
    int size;
    std::vector<double> defaults;
    const char *menu = nullptr;
    const char *text = nullptr;
};

/// One operator type: the table it goes in ("Object", "Sop"), its name, label, icon, the
/// table of its children ("" for none) and its parameters in order.
struct ShellOperatorSpec
{
    const char *table;
    const char *name;
    const char *label;
    const char *icon;
    const char *childTable;
    std::vector<ShellParmSpec> parms;
};

/// The data-driven catalogue of operator types (documented in docs/commands.md). Every
/// parameter that holds numbers is animatable.
class ShellOperatorCatalog
{
public:
    /// Every entry, in installation order.
    static const std::vector<ShellOperatorSpec> &entries();
    /// The parameter templates of one entry.
    static HostParmTemplateList buildTemplates(const ShellOperatorSpec &row);
    /// Adds every entry to its host table; entries whose name is already taken are left
    /// alone, so calling it again does nothing. Returns the number of types added.
    static int install();
};
