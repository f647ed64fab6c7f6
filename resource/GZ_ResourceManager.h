// GZ_ResourceManager: the library's registry of templates, bindings and handle settings.
#pragma once

#include "host/HostCallbackList.h"
#include "host/HostErrorSeverity.h"
#include "host/HostOperatorTableSink.h"
#include "host/HostTemplatesSink.h"
#include "resource/GZ_BindingHandleInfo.h"
#include "resource/GZ_BindingSelectorInfo.h"
#include "resource/GZ_NetworkType.h"
#include "resource/GZ_PythonResource.h"
#include "resource/GZ_ViewerType.h"
#include "resource/gz_OrderedMap.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

class GZ_ClassManager;
class GZ_GZTemplate;
class GZ_HandleTemplate;
class GZ_OpHandleLink;
class GZ_SelectorTemplate;
class GZ_SettingList;
class GZ_StateTemplate;
class HostNode;
class HostOperator;
class HostOperatorTable;
class HostParm;
class HostParmTemplate;
struct gz_BindingsDocument;
struct gz_BindingsRecord;
struct gz_BindingsSelectorFields;
class gz_OpHandleEntry;
class gz_OpSelectorEntry;

/// The library's single registry. It owns every registered handle, op-handle-link and
/// selector template, every binding of handles and selectors to operator types and every
/// handle setting list, and deletes them when it is destroyed. A state template registered by
/// pointer stays its registrant's; one handed over with adoptState is the manager's, deleted
/// with its operator type or with the manager. The host creates one instance through
/// GZcreateResourceManager (or by constructing a derived manager first) and reaches it through
/// GZgetResourceManager. Lookups by name and by operator key are hashed.
class GZ_ResourceManager : public HostOperatorTableSink, public HostTemplatesSink
{
public:
    /// A handle-binding failure or success code (see bind).
    enum BindResult
    {
        BIND_OK = 1,
        BIND_NO_TEMPLATE = -2,
        BIND_BAD_OP_PARM = -3,
        BIND_BAD_GZ_PARM = -4,
        BIND_EXISTS = -5,
        BIND_BAD_NETWORK = -6
    };

    /// The key of the per-operator handle setting table: one handle of one node. Two keys
    /// are equal when their names and node ids are; the type takes no part.
    class GZ_OpGZKey
    {
    public:
        GZ_OpGZKey(const char *name, const char *type, int op_id);

        const std::string &gzNameInSettingTable() const { return myGZNameInSettingTable; }
        const std::string &gzType() const { return myGZType; }
        int opId() const { return myOpId; }

        bool operator==(const GZ_OpGZKey &other) const
        {
            return myOpId == other.myOpId && myGZNameInSettingTable == other.myGZNameInSettingTable;
        }
        bool operator!=(const GZ_OpGZKey &other) const { return !(*this == other); }
        std::uint64_t hash() const;

        struct Hasher
        {
            size_t operator()(const GZ_OpGZKey &key) const
            {
                return static_cast<size_t>(key.hash());
            }
        };

    private:
        std::string myGZNameInSettingTable;
        std::string myGZType;
        int myOpId = 0;
    };

    /// One entry of the per-operator setting table, which owns the settings list.
    struct OpGZSettingInfo
    {
        std::unique_ptr<GZ_SettingList> mySettings;
        /// Set when the entry was recorded from a saved scene rather than by the handle.
        bool myRecorded = false;
    };

    GZ_ResourceManager();
    GZ_ResourceManager(const GZ_ResourceManager &) = delete;
    GZ_ResourceManager &operator=(const GZ_ResourceManager &) = delete;
    ~GZ_ResourceManager() override;

    // Operator table listener.
    void tableUpdated(HostOperatorTable *table) override;
    void tableDeleted(HostOperatorTable *table) override;

    // Registration. The manager owns a registered handle, op-handle-link or selector
    // template; a refused one stays the caller's. A state registered here stays the caller's.
    virtual int registerState(GZ_StateTemplate *state);
    /// Registers a state and keeps it: deleted when its operator type is deleted and no list
    /// holds it any more, or with the manager. A refused state is deleted at once.
    int adoptState(std::unique_ptr<GZ_StateTemplate> state);
    virtual int registerHandle(GZ_HandleTemplate *handle);
    virtual int registerOpHandleLink(GZ_GZTemplate *gz);
    virtual int registerSelector(GZ_SelectorTemplate *selector);

    // Scripted viewer states and handles. The host's scripting layer overrides these; here
    // they are neutral.
    virtual GZ_PythonResource::RegisterStatus
    getViewerStateRegisterStatus(const char *name, GZ_ViewerType viewer, const char *table_name);
    virtual void fireResourceEvent(GZ_PythonResource::ResourceType type,
                                   GZ_PythonResource::EventMessage::Type event,
                                   const GZ_PythonResource::EventMessage::Data &data);
    virtual GZ_PythonResource::Status unregisterViewerState(const char *name);
    virtual bool isRegisteredViewerState(const char *name) const;
    virtual GZ_PythonState::Template *viewerStateTemplate(const char *name);
    virtual const GZ_PythonState::Template *viewerStateTemplate(const char *name) const;
    virtual GZ_PythonResource::Status unbindVolatileViewerHandles(const char *name);
    virtual GZ_PythonResource::Status unregisterViewerHandle(const char *name);
    virtual bool isRegisteredViewerHandle(const char *name) const;
    virtual const GZ_PythonHandle::Template *viewerHandleTemplate(const char *name) const;
    virtual const std::vector<std::string> &getViewerHandleTypeNames() const;
    virtual bool bindOperatorToViewerState(const char *name, HostOperator *op);
    /// Turns a state's volatile hotkey text into parallel arrays of keys and modifiers.
    /// The text's format belongs to the scripting layer; here both arrays are emptied.
    virtual void findVolatileKeys(const char *hotkey_text, std::vector<int> &keys,
                                  std::vector<int> &modifiers) const;
    /// Redraws the viewers after a binding change; the host overrides it.
    virtual void updateViewports(int network_type, const char *op_name, bool force) const;
    virtual void ensureStatesExistForAllOperators(GZ_NetworkType type);
    /// The same for the network of a table type name ("SOP"); unknown names do nothing.
    void ensureStatesExistForAllOperators(const char *table_name);
    virtual void removeGZSettingsFromTables(HostOperator &op);
    virtual void removeAllBindings(HostOperator *op);

    // Handle setting tables: the settings of one handle on one node (per-operator table) and
    // the last settings of a handle kind on an operator type (last table).
    /// Records settings text read back from a saved scene for (name, type, node).
    void recordGZSettings(const char *name, const char *type, const HostNode &node,
                          const char *settings_text);
    void saveGZSettingsToTables(GZ_OpHandleLink &link);
    void loadGZSettingsFromTables(GZ_OpHandleLink &link, bool use_last_table) const;
    void removeGZSettingsFromTables(const GZ_OpHandleLink &link);
    /// Forgets the settings of every handle on every node (the per-operator table), as a
    /// new or loaded scene starts without them; the last table belongs to the session.
    void clearOpGZSettings();
    /// The default settings of the first binding of `op` with that handle type and
    /// description; null when there is none.
    const GZ_SettingList *getDefaultGZSettings(HostOperator &op, const char *type,
                                               const char *description) const;
    GZ_SettingList *getDefaultGZSettings(HostOperator &op, const char *type,
                                         const char *description);
    /// The key of the last table for a handle type, description and operator type name
    /// ("type-description-optype"; null parts are empty).
    static std::string lastGZSettingsKey(const char *type, const char *description,
                                         const char *op_type);
    /// Read-only views of the two tables (inspection and tests).
    const std::unordered_map<GZ_OpGZKey, OpGZSettingInfo, GZ_OpGZKey::Hasher> &
    getOpGZSettingTable() const
    {
        return myOpGZSettingTable;
    }
    const std::unordered_map<std::string, std::unique_ptr<GZ_SettingList>> &
    getLastGZSettingTable() const
    {
        return myLastGZSettingTable;
    }

protected:
    /// Creates the states that stand for the operator types of a network; the host's derived
    /// manager overrides it.
    virtual void addAutomaticStates(GZ_NetworkType type);

public:
    /// Lets the scripting layer upgrade stored settings before they are applied.
    virtual const GZ_SettingList *onUpdateGZSettings(const GZ_SettingList &settings,
                                                     HostOperator &op, const char *type,
                                                     const char *description) const;

    // Operator templates listener.
    void templatesUpdated(HostOperator *op) override;
    void operatorDeleted(HostOperator *op) override;

    // Network and viewer types.
    static const char *getNetworkTypeName(GZ_NetworkType type);
    static bool getNetworkType(const char *table_name, GZ_NetworkType &type);
    static GZ_NetworkType getFirstNetworkType(unsigned mask);
    static bool getViewerType(const char *token, GZ_ViewerType &type);
    static void getViewerTypeToken(GZ_ViewerType type, std::string &token);

    // Operators and their parameter templates.
    static HostOperatorTable *getOpTableFromOperator(const HostOperator *op);
    /// The operator key of an operator type ("Sop/xform"), or empty when it is in none of
    /// the network tables.
    static std::string getOperatorKey(const HostOperator *op);
    static const HostParmTemplate *findParmTemplate(HostOperator &op, const char *parm_name,
                                                    int vec_index, int *template_index);
    HostOperator *findOperator(const char *full_name, std::string *table_name) const;
    HostOperator *findOperator(GZ_NetworkType type, const char *name, bool warn) const;
    const HostParmTemplate *getTemplateAndVecId(const std::string &channel_name, HostOperator *op,
                                                int &vec_index) const;
    void getChannelNameFromParmAndVec(std::string &channel, HostOperator *op, const char *parm_name,
                                      int vec_index) const;

    // Op-handle-link parameters.
    bool isValidGzParmName(const std::string &gz_type, const std::string &parm_name) const;
    int checkForGZName(const char *gz_type, const char *parm_name) const;
    bool isGZEthereal(const char *gz_type, bool *always) const;
    const std::vector<std::string> &getBuiltinOpHandleNames();

    // Scene-save callbacks, called in order of addition before the handle settings are
    // written into a saved scene. A callback added twice is called twice until removed twice.
    void addSaveCallback(void (*callback)(void *), void *data);
    void removeSaveCallback(void (*callback)(void *), void *data);

    /// Reads the first "OPbindings" file on the host's search path; a missing or unreadable
    /// file is ignored. Problems in the file are reported through the host's diagnostics
    /// channel with its name and line, and reading goes on.
    void registerOpHandleBindings();
    /// Reads bindings-file text as registerOpHandleBindings reads the file; `name` stands for
    /// the file in locations, and includes are looked for on the host's search path.
    void registerOpHandleBindingsFromText(const std::string &text, const std::string &name);
    /// Applies a decoded bindings file in its order: each operator block replaces its key's
    /// bindings, and problems are reported where they stand among the messages of applying.
    void applyBindings(const gz_BindingsDocument &document);
    /// Writes every binding in bindings-file form (operator types that keep their own
    /// bindings are left out). Returns 0 when the file cannot be written, else non-zero.
    int writeBindingsFile(const char *path) const;

    /// Writes the persistent handles into a saved scene. The persistent handle layer sits
    /// above this one, so it installs its writer here instead of being called directly.
    using PersistentHandleSaver = HostErrorSeverity (*)(std::ostream &os);
    static void setPersistentHandleSaver(PersistentHandleSaver saver);

    // Registry lookups.
    bool containsHandle(const char *name) const;
    bool containsOpHandleLink(const char *name) const;
    bool containsSelector(const char *name) const;
    GZ_HandleTemplate *getHandleTemplate(const char *name) const;
    GZ_GZTemplate *getOpHandleLinkTemplate(const char *name) const;
    GZ_SelectorTemplate *getSelectorTemplate(const char *name) const;
    const std::unordered_map<std::string, std::unique_ptr<GZ_GZTemplate>> &getOpHandleLinks() const
    {
        return myOpHandleLinks;
    }
    /// The selector templates by name, read-only.
    const std::unordered_map<std::string, std::unique_ptr<GZ_SelectorTemplate>> &
    getSelectors() const
    {
        return mySelectors;
    }

    // States.
    const std::vector<GZ_StateTemplate *> &stateList(GZ_ViewerType viewer,
                                                     GZ_NetworkType network) const;
    const std::vector<GZ_StateTemplate *> &stateList(GZ_ViewerType viewer,
                                                     const char *table_name) const;
    GZ_StateTemplate *getStateTemplate(HostOperator *op, GZ_ViewerType viewer,
                                       const char *table_name) const;
    GZ_StateTemplate *getStateTemplate(const char *name, GZ_ViewerType viewer,
                                       const char *table_name) const;
    bool validStateTemplateName(const char *name) const;
    bool containsState(const char *name, GZ_ViewerType viewer, unsigned network_mask) const;
    bool operatorStateMandatory(const char *op_name, const char *table_name) const;
    void saveStateToCreate(const char *name);
    const std::string &stateToCreate() const { return myStateToCreate; }
    /// Recomputes the volatile keys of every state of every list.
    void rebuildVolatileKeys();

    // Bindings of handles and selectors to operator types (codes: BindResult).
    int bind(HostOperator *op, const char *gz_name, const char *gz_description,
             const char *settings);
    int bind(HostOperator *op, const char *gz_name, const char *gz_description,
             const std::string &op_parm, const std::string &gz_parm, const char *settings);
    int bindScriptOp(HostOperator *op, const char *gz_name, const char *gz_description,
                     const std::string &op_parm, const std::string &gz_parm, const char *settings);
    int bindSelector(HostOperator *op, const char *name, const char *description,
                     const char *prompt, const char *op_parm, int op_input, int op_input_req,
                     const char *prim_mask, int allow_drag, const char *menu, int ast_sel_all,
                     const char *extra_info, bool skip_parm_check);
    int unbind(HostOperator *op, const char *gz_description, const std::string &op_parm);
    int unbindSelector(HostOperator *op, const char *description);
    const std::vector<GZ_BindingHandleInfo> *getBindingHandles(HostOperator *op) const;
    const std::vector<GZ_BindingSelectorInfo> *getBindingSelectors(HostOperator *op) const;

    // Scripted resource support object, attached by the scripting layer.
    void *getPythonResourceSupport() const { return myPythonResourceSupport; }
    void setPythonResourceSupport(void *support) { myPythonResourceSupport = support; }

    // Preferences.
    static bool getHideLockedHandleParts() { return theHideLockedHandleParts; }
    static void setHideLockedHandleParts(bool on) { theHideLockedHandleParts = on; }
    static bool getScopeChannelsOnKey() { return theScopeChannelsOnKey; }
    static void setScopeChannelsOnKey(bool on) { theScopeChannelsOnKey = on; }
    static bool getAddScopedChannels() { return theAddScopedChannels; }
    static void setAddScopedChannels(bool on) { theAddScopedChannels = on; }
    static bool getOpenChannelEditorOnScope() { return theOpenChannelEditorOnScope; }
    static void setOpenChannelEditorOnScope(bool on) { theOpenChannelEditorOnScope = on; }
    static void getChannelScopeCommandPrefix(std::string &prefix);

    // Parameter cache: while a cache period is open, links collect the parameters they
    // would key or scope here, and the host keys and scopes them all at once.
    static int cacheParms() { return ourCacheParms; }
    static void appendToParmsCache(HostNode *node, HostParm *parm, int vec_index);
    static void setParmsCacheBehaviour(bool set_key, bool scope_channels, bool append_to_scope);

    /// Reports a registration or bindings warning through the host's diagnostics channel,
    /// unless warnings are switched off.
    static void printWarning(const char *format, ...)
#if defined(__GNUC__)
        __attribute__((format(printf, 1, 2)))
#endif
        ;
    /// The same for a warning about a line of a file; its text reads "FILE[LINE] MESSAGE".
    static void printWarningAt(const std::string &file, int line, const std::string &message);

    /// Whether warnings are reported.
    static bool printsWarnings()
    {
        return ourPrintWarnings;
    }

    /// Switches warnings on or off for its lifetime (off while the built-in tables register,
    /// when the host asks for that) and restores what was before.
    class WarningScope
    {
    public:
        explicit WarningScope(bool print) : mySaved(ourPrintWarnings) { ourPrintWarnings = print; }
        ~WarningScope() { ourPrintWarnings = mySaved; }
        WarningScope(const WarningScope &) = delete;
        WarningScope &operator=(const WarningScope &) = delete;

    private:
        bool mySaved;
    };

protected:
    /// Listens to `table` and remembers its network type under the table's name.
    void ensureTableInterestExists(GZ_NetworkType type, HostOperatorTable *table);

    // Parameter cache periods, opened and closed by the host's derived manager.
    static void startParmsCache();
    static void stopParmsCache();
    static void getParmsCache(std::vector<HostNode *> *&nodes, std::vector<HostParm *> *&parms,
                              std::vector<int> *&vec_indices);
    static void getParmsCacheBehaviour(bool &set_key, bool &scope_channels, bool &append_to_scope);

    /// Writes the handle setting commands of a saved scene, after running the save
    /// callbacks.
    HostErrorSeverity saveSettings(std::ostream &os);
    /// Writes the handle bindings recorded on live nodes as binding commands.
    HostErrorSeverity save(std::ostream &os);

    // Applying a decoded bindings file, one record at a time.
    struct BindingsApplyState;
    void startOperator(BindingsApplyState &state, const std::string &key);
    void finishOperator(BindingsApplyState &state);
    /// The handle instance a HANDLE record makes, or null when its links are to be ignored.
    GZ_BindingHandleInfo *applyHandle(BindingsApplyState &state, const gz_BindingsRecord &record);
    void applyLink(BindingsApplyState &state, const gz_BindingsRecord &link,
                   const std::string &file);
    void applySelector(const gz_BindingsRecord &selector, const gz_BindingsSelectorFields &fields,
                       gz_OpSelectorEntry &entry);

    /// Entries of the binding maps; null when the key has none.
    gz_OpHandleEntry *findHandleEntry(const std::string &key) const;
    gz_OpSelectorEntry *findSelectorEntry(const std::string &key) const;
    gz_OpHandleEntry &handleEntry(const std::string &key);
    gz_OpSelectorEntry &selectorEntry(const std::string &key);
    void eraseHandleEntry(const std::string &key);
    void eraseSelectorEntry(const std::string &key);

private:
    friend HostErrorSeverity saveGZResourceManagerCallback(std::ostream &os);

    /// Lists of states by viewer and network; they point at states, owned or not.
    using StateList = std::vector<GZ_StateTemplate *>;

    static int stateListIndex(GZ_ViewerType viewer, GZ_NetworkType network);
    /// The operator's key after asking it for its templates (so that a definition loaded
    /// on demand has registered its bindings); empty when it is in no network table.
    static std::string lookupKey(HostOperator *op);
    int bindInstance(HostOperator *op, const char *gz_name, const char *gz_description,
                     const char *settings, GZ_BindingHandleInfo *&instance);

    // First-construction steps.
    void installCommands();
    void registerOpHandleLinks();
    void registerCop2HandleLinks();
    void registerOpHandleConstructors();
    void registerSelectors();
    void registerSelectorConstructors();

    std::vector<std::string> myBuiltinOpHandleNames;
    std::string myStateToCreate;
    std::unordered_set<std::string> myStateNames;
    std::unordered_map<std::string, std::unique_ptr<GZ_HandleTemplate>> myHandles;
    std::unordered_map<std::string, std::unique_ptr<GZ_GZTemplate>> myOpHandleLinks;
    std::unordered_map<std::string, std::unique_ptr<GZ_SelectorTemplate>> mySelectors;
    // Insertion-ordered, so that the bindings file is written in a stable order.
    gz_OrderedMap<std::unique_ptr<gz_OpHandleEntry>> myHandleBindings;
    gz_OrderedMap<std::unique_ptr<gz_OpSelectorEntry>> mySelectorBindings;
    std::unordered_map<GZ_OpGZKey, OpGZSettingInfo, GZ_OpGZKey::Hasher> myOpGZSettingTable;
    std::unordered_map<std::string, std::unique_ptr<GZ_SettingList>> myLastGZSettingTable;
    StateList myStateLists[GZ_NUM_VIEWER_TYPES * GZ_NETWORK_MAX_TYPES];
    /// The states handed over with adoptState.
    std::unordered_map<const GZ_StateTemplate *, std::unique_ptr<GZ_StateTemplate>> myOwnedStates;
    std::unordered_map<std::string, GZ_NetworkType> myTableInterests;
    HostCallbackList<void (*)(void *)> mySaveCallbacks{HostDuplicates::Kept};
    void *myPythonResourceSupport = nullptr;

    static bool ourPrintWarnings;
    static bool theHideLockedHandleParts;
    static bool theScopeChannelsOnKey;
    static bool theAddScopedChannels;
    static bool theOpenChannelEditorOnScope;
    static bool ourSetKeyOnParms;
    static bool ourScopeParmChannels;
    static bool ourAppendToScope;
    static int ourCacheParms;
    static std::vector<HostNode *> ourParmNodes;
    static std::vector<HostParm *> ourParms;
    static std::vector<int> ourParmVecIndices;
    static PersistentHandleSaver ourPersistentHandleSaver;
};

/// Creates the manager unless one exists; `print_warnings` governs only the warnings printed
/// while the built-in tables register.
GZ_ResourceManager *GZcreateResourceManager(bool print_warnings);
/// The instance, or null before creation and after destruction.
GZ_ResourceManager *GZgetResourceManager();
bool GZresourceManagerExists();
/// The scene-save callback: writes handle settings, bindings and persistent handles.
HostErrorSeverity saveGZResourceManagerCallback(std::ostream &os);
