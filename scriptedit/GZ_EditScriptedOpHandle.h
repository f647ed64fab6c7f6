// GZ_EditScriptedOpHandle: one handle bound to the parameters of an edited operator type.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

/// A handle of an operator type being edited: its op-handle-link type, the description that
/// tells instances apart, its settings text and, for every parameter of the handle type
/// (sorted by name), the operator parameter bound to it (empty when unbound).
class GZ_EditScriptedOpHandle
{
public:
    /// Made from an op-handle-link type name; an unknown name is reported and leaves the
    /// handle empty (no type, no parameters).
    explicit GZ_EditScriptedOpHandle(const std::string &type_name);
    GZ_EditScriptedOpHandle(const GZ_EditScriptedOpHandle &) = default;
    GZ_EditScriptedOpHandle &operator=(const GZ_EditScriptedOpHandle &) = default;

    const std::string &getDescription() const { return myDescription; }
    void setDescription(const std::string &description) { myDescription = description; }
    const std::string &getType() const { return myType; }
    const std::string &getSettings() const { return mySettings; }
    void setSettings(const std::string &settings) { mySettings = settings; }
    /// Kept and copied with the handle, never written.
    const std::string &getExtra() const { return myExtra; }
    void setExtra(const std::string &extra) { myExtra = extra; }

    int getNParms() const { return static_cast<int>(myGZNames.size()); }
    const std::string &getGZName(int i) const { return myGZNames[i]; }
    const std::string &getBinding(int i) const { return myBindings[i]; }

    /// Appends a handle parameter with no binding unless one of that name exists.
    void addGZName(const std::string &name);
    /// Binds the named handle parameter to `op_parm`; its index, or -1 when there is none.
    int bindChannel(const std::string &gz_name, const std::string &op_parm);
    /// Whether any handle parameter is bound.
    bool hasBinding() const;

    /// Every op-handle-link name the resource manager knows: built-in ones and viewer
    /// handle types, sorted.
    static std::vector<std::string> getValidTypes();

    /// One "bindhandle" line per bound handle parameter; nothing for an unbound handle.
    void save(std::ostream &os) const;

private:
    std::string myDescription;
    std::string myType;
    std::string mySettings;
    std::string myExtra;
    std::vector<std::string> myGZNames;
    std::vector<std::string> myBindings;
};
