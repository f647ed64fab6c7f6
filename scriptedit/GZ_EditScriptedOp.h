// GZ_EditScriptedOp: the editable definition of a whole scripted operator type.
#pragma once

#include "scriptedit/GZ_EditScriptedOpHandle.h"
#include "scriptedit/GZ_EditScriptedParms.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

class HostNode;
class HostScriptOperator;

/// A scripted operator type taken apart for editing: name, script, label, help, inputs and
/// outputs, units, the handles bound to its parameters and its parameter interface; `save`
/// writes it back as a complete operator dialog script.
class GZ_EditScriptedOp
{
public:
    /// Reads everything from the operator type; the node (may be null) supplies auto-links.
    GZ_EditScriptedOp(HostScriptOperator *op, HostNode *node);
    GZ_EditScriptedOp(const GZ_EditScriptedOp &other);
    GZ_EditScriptedOp &operator=(const GZ_EditScriptedOp &other);
    virtual ~GZ_EditScriptedOp();

    HostScriptOperator *getOperator() const { return myOperator; }
    GZ_EditScriptedParms &getParms() { return myParms; }
    const GZ_EditScriptedParms &getParms() const { return myParms; }

    const std::string &getName() const { return myName; }
    void setName(const std::string &name) { myName = name; }
    const std::string &getScript() const { return myScript; }
    void setScript(const std::string &script) { myScript = script; }
    const std::string &getLabel() const { return myLabel; }
    void setLabel(const std::string &label) { myLabel = label; }
    const std::string &getHelp() const { return myHelp; }
    void setHelp(const std::string &help) { myHelp = help; }
    int getShopFlag() const { return myShopFlag; }
    int getVopFlag() const { return myVopFlag; }
    int getObjFlag() const { return myObjFlag; }
    const std::string &getWarning() const { return myWarning; }
    void clearWarning() { myWarning.clear(); }

    // Inputs and outputs, indexed from 0. Getters give "" / false past the end; setters
    // ignore an index above the last allowed one and grow the arrays with empty entries.
    std::string getInputName(int i) const;
    void setInputName(int i, const std::string &name);
    std::string getInputLabel(int i) const;
    void setInputLabel(int i, const std::string &label);
    bool getInputIsReference(int i) const;
    void setInputIsReference(int i, bool is_ref);
    std::string getOutputLabel(int i) const;
    void setOutputLabel(int i, const std::string &label);

    double getUnitLength() const { return myUnitLength; }
    void setUnitLength(double length) { myUnitLength = length; }
    double getUnitMass() const { return myUnitMass; }
    void setUnitMass(double mass) { myUnitMass = mass; }

    int getNHandles() const { return static_cast<int>(myHandles.size()); }
    GZ_EditScriptedOpHandle *getHandle(int i) const;
    /// Takes ownership.
    void addHandle(GZ_EditScriptedOpHandle *handle);
    /// Removes handles first..last (inclusive, clamped).
    void removeHandles(int first, int last);
    /// Moves handles first..last by `offset` places, if the block stays inside the list.
    void moveHandles(int first, int last, int offset);

    /// Writes the whole dialog script. `specific_data`, when given, replaces the lines the
    /// operator type would write of its own. Always 1: errors of single parameters end in
    /// the warning text.
    int save(std::ostream &os, const std::string *specific_data = nullptr);
    /// Stores the dialog script as the "DialogScript" section of the type's definition in its
    /// own library file, or in the custom library under the user's home directory when it has
    /// none; a library the host had not loaded is loaded afterwards. Whether it was stored.
    bool save(const std::string *specific_data = nullptr);
    /// Stores the dialog script into the library file `path` (variables already expanded)
    /// as `save` does.
    bool saveToLibrary(const std::string &path, const std::string *specific_data = nullptr);
    /// The library file `save` stores into, before the host expands its variables.
    std::string getLibraryFile() const;
    /// The custom library, without the host's extension.
    static constexpr const char *theCustomLibrary = "$HOME/vantri20.0/otls/OPcustom";
    /// Writes every line of `text` as prefix, then the line quoted; empty text writes nothing.
    static void saveBlock(std::ostream &os, const std::string &text, const char *prefix);
    /// The help block, "    help {" to "    }".
    void saveHelp(std::ostream &os) const;

    /// The largest index an input or output setter accepts.
    static constexpr int theMaxIndex = 9998;

private:
    void saveSelectors(std::ostream &os) const;
    void saveInputsOutputs(std::ostream &os) const;
    void copyHandles(const GZ_EditScriptedOp &other);

    HostScriptOperator *myOperator = nullptr;
    GZ_EditScriptedParms myParms;
    std::vector<std::unique_ptr<GZ_EditScriptedOpHandle>> myHandles;
    std::string myName;
    std::string myScript;
    std::string myLabel;
    std::string myHelp;
    int myShopFlag = 0;
    int myVopFlag = 0;
    int myObjFlag = 0;
    std::string myWarning;
    std::vector<std::string> myInputNames;
    std::vector<std::string> myInputLabels;
    std::vector<bool> myInputIsRef;
    std::vector<std::string> myOutputLabels;
    double myUnitLength = 1.0;
    double myUnitMass = 1.0;
};
