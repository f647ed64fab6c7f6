// HostOperator: an operator type (node type) with its parameter templates.
#pragma once

#include "host/HostParmTemplate.h"

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

class HostNode;
class HostOperatorTable;
class HostTemplatesSink;

/// An operator type: name, label, icon, parameter templates, input counts, the child table
/// its nodes' networks use, a flag word, and the listeners told when its templates change
/// or it is deleted. Owned by its `HostOperatorTable` once added; knows its active nodes.
class HostOperator
{
public:
    /// Bits of the flag word.
    enum Flag : unsigned
    {
        FLAG_GENERATOR = 0x01,      ///< makes data without inputs
        FLAG_MANAGER = 0x02,        ///< a container of other nodes
        FLAG_UNORDERED = 0x04,      ///< inputs are a set
        FLAG_SCRIPTED = 0x08,       ///< defined by a script that keeps its own bindings
        FLAG_STATE_OPTIONAL = 0x10, ///< viewers need no state for it
        FLAG_EDITABLE = 0x20        ///< its definition may be written back
    };

    HostOperator(const std::string &name, const std::string &label,
                 const HostParmTemplateList &templates, const std::string &child_table = "",
                 int min_inputs = 0, int max_inputs = 1, unsigned flags = 0,
                 const std::string &icon = "");
    virtual ~HostOperator();
    HostOperator(const HostOperator &) = delete;
    HostOperator &operator=(const HostOperator &) = delete;

    const std::string &getName() const { return myName; }
    /// The label shown to users ("English name").
    const std::string &getLabel() const { return myLabel; }
    const std::string &getEnglishName() const { return myLabel; }
    void setLabel(const std::string &label) { myLabel = label; }
    const std::string &getIconName() const { return myIcon; }
    void setIconName(const std::string &icon) { myIcon = icon; }

    /// The parameter templates, a terminated array (never null). Operator types whose
    /// definition loads on demand load it here first (`ensureTemplatesLoaded`).
    const HostParmTemplate *getParmTemplates();
    const HostParmTemplate *getParmTemplates() const { return myTemplates.data(); }
    const HostParmTemplateList &getParmTemplateList() const { return myTemplates; }
    int getNumParmTemplates() const { return myTemplates.size(); }
    /// The template of that name token, or null.
    const HostParmTemplate *findParmTemplate(const std::string &name) const;
    /// Templates kept only so that old scenes still load; may be empty.
    const HostParmTemplateList &getObsoleteTemplates() const { return myObsoleteTemplates; }
    void setObsoleteTemplates(const HostParmTemplateList &templates)
    {
        myObsoleteTemplates = templates;
    }

    // Flags.
    unsigned getFlags() const { return myFlags; }
    void setFlags(unsigned flags) { myFlags = flags; }
    /// Defined by a scripted definition that keeps its own bindings (flag bit 3).
    bool isScriptedDefinition() const { return (myFlags & FLAG_SCRIPTED) != 0; }
    bool keepsOwnBindings() const { return isScriptedDefinition(); }
    /// Viewers may show no state for it (flag bit 4).
    bool isStateOptional() const { return (myFlags & FLAG_STATE_OPTIONAL) != 0; }
    /// Whether its definition can be written back to a library file.
    virtual bool canWriteDefinition() const { return (myFlags & FLAG_EDITABLE) != 0; }

    // Inputs.
    int getMinInputs() const { return myMinInputs; }
    int getMaxInputs() const { return myMaxInputs; }
    void setInputCounts(int min_inputs, int max_inputs);
    /// Per-input "is a reference" flags (inputs that are read but not cooked).
    const std::vector<bool> &getInputIsReference() const { return myInputIsRef; }
    void setInputIsReference(const std::vector<bool> &flags) { myInputIsRef = flags; }
    /// Legacy input map text: protected tokens joined by blanks.
    const std::string &getLegacyInputMap() const { return myLegacyInputMap; }
    void setLegacyInputMap(const std::string &text) { myLegacyInputMap = text; }
    /// The folder switcher that drives input visibility (three values, 0 when unset).
    void setControlsSwitcher(int a, int b, int c);
    int getControlsSwitcher(int i) const { return (i >= 0 && i < 3) ? myControls[i] : 0; }

    /// Help text of the operator type.
    const std::string &getHelp() const { return myHelp; }
    void setHelp(const std::string &help) { myHelp = help; }
    /// Where the definition came from (a library file path), or empty.
    const std::string &getDefinitionPath() const { return myDefinitionPath; }
    void setDefinitionPath(const std::string &path) { myDefinitionPath = path; }

    /// Name of the table whose types make up the child networks of its nodes ("Sop" for an
    /// Object "geo"), or empty for nodes without children.
    const std::string &getChildTableName() const { return myChildTable; }

    // Table membership.
    HostOperatorTable *getTable() const { return myTable; }
    /// The table's name ("Sop"), or empty when the type is in no table.
    const std::string &getTableName() const;
    /// Table name, "/", operator name ("Sop/xform"); the operator name alone without a table.
    std::string getQualifiedName() const;

    // Active nodes, in creation order.
    const std::vector<HostNode *> &getActiveNodes() const;
    int getNumActiveNodes() const { return static_cast<int>(myNodeCount); }

    // Listeners of template changes and deletion.
    /// Registers a sink; a sink registered twice is told once.
    void addTemplatesSink(HostTemplatesSink *sink);
    void removeTemplatesSink(HostTemplatesSink *sink);
    bool hasTemplatesSink(const HostTemplatesSink *sink) const;

    // Hooks that scripted operator types override; the defaults do nothing.
    /// Writes commands that re-create what the library keeps for `node` (handles).
    virtual void getRefreshGZCommands(HostNode *node, std::ostream &os);
    virtual void removeAllBindings() {}
    virtual void refreshAllBindings() {}
    /// Include path added to the type's dialog scripts, or null.
    virtual const char *getAddedDSIncludePath() const { return nullptr; }

protected:
    /// Loads templates of a definition that is read on demand; the default does nothing.
    virtual void ensureTemplatesLoaded() {}

private:
    friend class HostOperatorTable;
    friend class HostNetwork;
    friend class HostNode;

    /// Replaces the templates; only the table does this, so listeners are told.
    void replaceTemplates(const HostParmTemplateList &templates) { myTemplates = templates; }
    void addActiveNode(HostNode *node);
    void removeActiveNode(HostNode *node);
    void dropActiveNode(std::size_t index);
    void notifyTemplatesUpdated();
    void notifyDeleted();

    std::string myName;
    std::string myLabel;
    std::string myIcon;
    HostParmTemplateList myTemplates;
    HostParmTemplateList myObsoleteTemplates;
    std::string myChildTable;
    int myMinInputs;
    int myMaxInputs;
    unsigned myFlags;
    std::vector<bool> myInputIsRef;
    std::string myLegacyInputMap;
    int myControls[3] = {0, 0, 0};
    std::string myHelp;
    std::string myDefinitionPath;
    HostOperatorTable *myTable = nullptr;
    // The active nodes in order. A removal leaves a hole (null) instead of moving the rest,
    // which made deleting many nodes first to last quadratic. Searches start at myFirstNode
    // (the holes before it are skipped), holes at the end are dropped at once, and the list
    // is closed up when the holes outnumber the nodes or when it is read.
    mutable std::vector<HostNode *> myNodes;
    mutable std::size_t myFirstNode = 0;
    std::size_t myNodeCount = 0;
    std::vector<HostTemplatesSink *> mySinks;
};
