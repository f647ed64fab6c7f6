// gz_TableMonitoring: how the resource manager follows changed and deleted operator types, keeping
// the states that stand for them and the bindings of scripted definitions consistent.
#include "resource/GZ_ResourceManager.h"

#include "host/HostOperator.h"
#include "host/HostOperatorTable.h"
#include "resource/GZ_StateTemplate.h"
#include "resource/gz_OpHandleEntry.h"
#include "resource/gz_OpSelectorEntry.h"

#include <algorithm>
#include <iterator>

namespace
{

/// Every network bit of a state mask.
constexpr unsigned theAllNetworks = (1u << GZ_NETWORK_MAX_TYPES) - 1;

/// The name under which the manager knows the table of an operator type ("SOP"), or empty.
std::string tableNameOf(const HostOperator *op)
{
    const HostOperatorTable *table = op ? op->getTable() : nullptr;
    return table ? table->getTypeName() : std::string();
}

} // namespace

// An operator's states follow its name, label, icon and templates. States written in the
// scripting layer describe themselves and are left alone.
void GZ_ResourceManager::templatesUpdated(HostOperator *op)
{
    const std::string table_name = tableNameOf(op);
    GZ_NetworkType network;
    if (!getNetworkType(table_name.c_str(), network))
        return;

    std::string old_name;
    for (int viewer = GZ_NUM_VIEWER_TYPES - 1; viewer >= 0; --viewer)
    {
        GZ_StateTemplate *state =
            getStateTemplate(op, static_cast<GZ_ViewerType>(viewer), table_name.c_str());
        if (!state || isRegisteredViewerState(state->name().c_str()))
            continue;

        if (state->name() != op->getName())
        {
            old_name = state->name();
            myStateNames.insert(op->getName());
        }
        state->initialize(op->getName().c_str(), op->getLabel().c_str(), op->getIconName().c_str(),
                          state->constructor(), state->templates(), state->viewerType(),
                          state->networkTypes(), state->opIndependent(),
                          state->volatileHotkey().c_str(), state->getHidden());
    }

    if (old_name.empty())
        return;
    for (int viewer = 0; viewer < GZ_NUM_VIEWER_TYPES; ++viewer)
        if (containsState(old_name.c_str(), static_cast<GZ_ViewerType>(viewer), theAllNetworks))
            return;
    myStateNames.erase(old_name);
}

// Deleting an operator type drops the states that stand for it in its own network (deleting
// those the manager owns); states of the same name that belong to something else keep the
// name registered.
void GZ_ResourceManager::operatorDeleted(HostOperator *op)
{
    if (!op)
    {
        HostTemplatesSink::operatorDeleted(op);
        return;
    }

    const std::string &name = op->getName();
    if (myStateNames.count(name))
    {
        GZ_NetworkType own_network;
        const bool has_network = getNetworkType(tableNameOf(op).c_str(), own_network);
        int others = 0;
        std::vector<GZ_StateTemplate *> removed;
        for (int viewer = 0; viewer < GZ_NUM_VIEWER_TYPES; ++viewer)
        {
            for (int network = 0; network < GZ_NETWORK_MAX_TYPES; ++network)
            {
                StateList &list = myStateLists[stateListIndex(
                    static_cast<GZ_ViewerType>(viewer), static_cast<GZ_NetworkType>(network))];
                const bool own_list = has_network && network == own_network;
                for (int i = static_cast<int>(list.size()) - 1; i >= 0; --i)
                {
                    GZ_StateTemplate *state = list[i];
                    if (state->name() != name)
                        continue;
                    if (own_list && state->getOperator() == op)
                    {
                        list.erase(list.begin() + i);
                        removed.push_back(state);
                    }
                    else
                        ++others;
                }
            }
        }
        if (others == 0)
            myStateNames.erase(name);
        // The manager's own states go once no list points at them; others are their owners'.
        for (GZ_StateTemplate *state : removed)
        {
            const bool listed =
                std::any_of(std::begin(myStateLists), std::end(myStateLists),
                            [state](const StateList &list)
                            { return std::find(list.begin(), list.end(), state) != list.end(); });
            if (!listed)
                myOwnedStates.erase(state);
        }
    }

    // Bindings of other operator types come from the bindings file and must survive, so that
    // a type of the same name loaded later is bound again.
    if (op->keepsOwnBindings())
    {
        std::string key = getOperatorKey(op);
        if (key.empty())
            key = op->getQualifiedName();
        eraseHandleEntry(key);
        eraseSelectorEntry(key);
    }

    HostTemplatesSink::operatorDeleted(op);
}
