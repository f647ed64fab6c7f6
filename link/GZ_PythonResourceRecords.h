// GZ_PythonResourceRecords: the records and names shared with the scripting layer for scripted
// handles and states (menus, callbacks, the common registration part).
#pragma once

#include "resource/GZ_PythonResource.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

class HostParmTemplateList;

/// Adds to the vocabulary of resource/GZ_PythonResource.h (status codes and events, which the
/// resource manager's interface needs) the records that the library and the host's Python
/// scripting layer exchange when scripted viewer handles and states are described. Nothing
/// here holds behaviour of its own. Records are shared between templates through
/// std::shared_ptr, whose reference counts are atomic.
namespace GZ_PythonResource
{

/// Default icon of a scripted handle or state that names none.
inline constexpr const char *theDefaultIcon = "MISC_python";
/// Module and factory through which the scripting layer creates handle descriptions.
inline constexpr const char *theHandleInterfaceModule = "viewerhandle.interface";
inline constexpr const char *theHandleTemplateFactory = "createViewerHandleTemplate";
/// Module and factory through which the scripting layer creates state descriptions.
inline constexpr const char *theStateInterfaceModule = "viewerstate.interface";
inline constexpr const char *theStateTemplateFactory = "createViewerStateTemplate";
/// Words with which the scripting layer reports the outcome of an operation.
inline constexpr const char *theStatusSuccess = "SUCCESS";
inline constexpr const char *theStatusWarning = "WARNING";
inline constexpr const char *theStatusError = "ERROR";

class Menu;

/// One entry of a menu that a scripted resource declares. A submenu entry holds its
/// menu through shared ownership, so menus can be shared between records.
struct MenuItem
{
    enum Kind : int
    {
        ITEM_ACTION = 0,
        ITEM_TOGGLE = 1,
        ITEM_RADIO = 2,
        ITEM_SEPARATOR = 3,
        ITEM_SUBMENU = 4
    };

    std::string id;
    std::string label;
    std::string hotkey;
    Kind kind = ITEM_ACTION;
    bool checked = false;
    std::shared_ptr<Menu> submenu;
};

/// An ordered list of menu entries.
class MenuItemContainer
{
public:
    void addItem(std::shared_ptr<MenuItem> item) { myItems.push_back(std::move(item)); }
    const std::vector<std::shared_ptr<MenuItem>> &items() const { return myItems; }

private:
    std::vector<std::shared_ptr<MenuItem>> myItems;
};

/// A named menu: its id, its label and its entries.
class Menu : public MenuItemContainer
{
public:
    Menu() = default;
    Menu(std::string id, std::string label) : myId(std::move(id)), myLabel(std::move(label)) {}
    const std::string &id() const { return myId; }
    const std::string &label() const { return myLabel; }

private:
    std::string myId;
    std::string myLabel;
};

/// The script object that answers a resource's callbacks, and the names of the
/// callbacks it implements. The library never calls it; it only carries it from the
/// description record to the templates and on to the host's viewer.
class CallbackHandler
{
public:
    CallbackHandler() = default;
    CallbackHandler(std::shared_ptr<void> script_object, std::set<std::string> names)
        : myScriptObject(std::move(script_object)), myCallbackNames(std::move(names))
    {
    }

    const std::shared_ptr<void> &scriptObject() const { return myScriptObject; }
    bool hasCallback(const std::string &name) const { return myCallbackNames.count(name) > 0; }
    const std::set<std::string> &callbackNames() const { return myCallbackNames; }

private:
    std::shared_ptr<void> myScriptObject;
    std::set<std::string> myCallbackNames;
};

/// The parameter templates a scripted resource declares, in order. Shared, since a
/// description is copied into each template made from it.
using ParmTemplates = std::shared_ptr<const HostParmTemplateList>;

/// The part common to the description records of scripted handles and states.
struct RegisterBase
{
    std::string name;
    std::string label;
    /// Empty means theDefaultIcon.
    std::string icon;
    /// Help text shown for the resource in the host's help browser.
    std::string help;
    /// The context menu the resource declares; null when it declares none.
    std::shared_ptr<Menu> menu;

    /// The icon to show: the declared one, or theDefaultIcon when none was declared.
    const char *iconOrDefault() const { return icon.empty() ? theDefaultIcon : icon.c_str(); }
};

} // namespace GZ_PythonResource
