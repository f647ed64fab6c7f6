// gz_PyInterfaces: the modules "viewerhandle.interface" and "viewerstate.interface", whose
// templates describe viewer handles and states written in Python and register them.
#include "python/gz_PyRuntime.h"

#include "host/HostOperatorTable.h"
#include "host/HostParmTemplate.h"
#include "link/GZ_PythonHandle.h"
#include "link/GZ_PythonState.h"
#include "resource/GZ_ResourceManager.h"

#include <pybind11/embed.h>
#include <pybind11/stl.h>

#include <cctype>
#include <memory>
#include <set>
#include <sstream>
#include <vector>

namespace py = pybind11;

namespace gz_py
{
namespace
{
bool isIdentifier(const std::string &name)
{
    if (name.empty() || !(std::isalpha(static_cast<unsigned char>(name[0])) || name[0] == '_'))
        return false;
    for (char c : name)
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_')
            return false;
    return true;
}

GZ_ResourceManager &manager()
{
    GZ_ResourceManager *manager = GZgetResourceManager();
    if (!manager)
        throw Error("the resource manager does not exist yet");
    return *manager;
}

/// "sop object" from ["sop", "object"] or from the same text.
std::string networkTokens(const py::object &types)
{
    if (py::isinstance<py::str>(types))
        return types.cast<std::string>();
    std::string text;
    for (const py::handle &type : types)
        text += (text.empty() ? "" : " ") + py::str(type).cast<std::string>();
    return text;
}

/// The parameter templates declared so far, kept apart from the description until it is
/// registered (the description shares them as a const list).
struct DeclaredParms
{
    HostParmTemplateList list;

    void add(const HostParmType &type, const std::string &name, const std::string &label,
             int components, const std::vector<HostParmDefault> &defaults)
    {
        if (!isIdentifier(name))
            throw py::value_error("bad parameter name '" + name + "'");
        if (components < 1 || components > 4)
            throw py::value_error("parameter " + name + ": components must be 1 to 4");
        if (list.find(name) >= 0)
            throw py::value_error("parameter " + name + " is declared twice");
        HostParmTemplate parm(type, name, label.empty() ? name : label, components);
        parm.setDefaults(defaults);
        list.append(parm);
    }
};

std::vector<HostParmDefault> defaultsOf(const py::object &value, int components, bool text)
{
    std::vector<HostParmDefault> defaults;
    std::vector<py::object> values;
    if (py::isinstance<py::tuple>(value) || py::isinstance<py::list>(value))
        for (const py::handle &item : value)
            values.push_back(py::reinterpret_borrow<py::object>(item));
    else
        values.assign(static_cast<size_t>(components), value);
    if (static_cast<int>(values.size()) != components)
        throw py::value_error("expected " + std::to_string(components) + " default values");
    for (const py::object &v : values)
        defaults.push_back(text ? HostParmDefault(py::str(v).cast<std::string>())
                                : HostParmDefault(v.cast<double>()));
    return defaults;
}

/// viewerhandle.interface.ViewerHandleTemplate: the description of one handle, filled in
/// from Python and registered once.
class HandleTemplate
{
public:
    HandleTemplate(const std::string &name, const std::string &label, const py::object &types,
                   const std::string &icon, const std::string &help)
    {
        if (!isIdentifier(name))
            throw py::value_error("bad viewer handle name '" + name + "'");
        myInfo.name = name;
        myInfo.label = label.empty() ? name : label;
        myInfo.networkTypes = networkTokens(types);
        myInfo.icon = icon;
        myInfo.help = help;
    }

    /// Declares a handle parameter of 1 to 4 float components; one of n >= 2 components
    /// gives the handle parameters NAMEx, NAMEy, NAMEz (and NAME for a fourth).
    HandleTemplate &bindParameter(const std::string &name, int components, const std::string &label,
                                  const py::object &value)
    {
        checkOpen();
        myParms.add(HOST_PARM_FLOAT, name, label, components,
                    defaultsOf(value, components, /*text=*/false));
        myInfo.parmNames.push_back(name);
        myInfo.parmDefinitions[name].components = components;
        return *this;
    }

    void registerTemplate()
    {
        checkOpen();
        if (myInfo.parmNames.empty())
            throw py::value_error("viewer handle " + myInfo.name + " has no parameters");
        GZ_ResourceManager &rm = manager();
        if (rm.containsHandle(myInfo.name.c_str()) || rm.containsOpHandleLink(myInfo.name.c_str()))
            throw Error("a handle named " + myInfo.name + " is registered already");
        myInfo.parmTemplates = std::make_shared<const HostParmTemplateList>(myParms.list);
        auto info = std::make_shared<GZ_PythonHandle::Info>(myInfo);
        auto gz = std::make_unique<GZ_PythonHandle::GZTemplate>(info);
        // Made after the op-handle-link template, so that its copy of the description has
        // the component names that template numbered.
        auto handle = std::make_unique<GZ_PythonHandle::Template>(*info, nullptr);
        if (!rm.registerHandle(handle.get()))
            throw Error("cannot register handle " + myInfo.name);
        handle.release();
        if (!rm.registerOpHandleLink(gz.get()))
            throw Error("cannot register handle " + myInfo.name);
        gz.release();
        myRegistered = true;
    }

    /// The handle parameter names, numbered as a binding sees them.
    std::vector<std::string> handleParameterNames() const
    {
        auto info = std::make_shared<GZ_PythonHandle::Info>(myInfo);
        GZ_PythonHandle::GZTemplate numbered(info);
        return numbered.parmNameList();
    }

    const std::string &name() const { return myInfo.name; }
    bool isRegistered() const { return myRegistered; }

private:
    void checkOpen() const
    {
        if (myRegistered)
            throw Error("viewer handle " + myInfo.name + " is registered already");
    }

    GZ_PythonHandle::Info myInfo;
    DeclaredParms myParms;
    bool myRegistered = false;
};

/// Keeps a Python object alive for as long as the library's records hold it.
std::shared_ptr<void> holdPython(const py::object &object)
{
    PyObject *ref = object.ptr();
    Py_INCREF(ref);
    return std::shared_ptr<void>(ref,
                                 [](void *p)
                                 {
                                     if (Py_IsInitialized())
                                         Py_DECREF(static_cast<PyObject *>(p));
                                 });
}

/// viewerstate.interface.ViewerStateTemplate: the description of one state.
class StateTemplate
{
public:
    StateTemplate(const std::string &name, const std::string &label, const std::string &category,
                  const py::object &factory, const std::string &icon, const std::string &help)
    {
        if (!isIdentifier(name))
            throw py::value_error("bad viewer state name '" + name + "'");
        // Either name of a table will do ("Sop" or "SOP"), as for statels.
        const HostOperatorTable *table = HostOperatorTable::getTable(category);
        if (!table || !GZ_ResourceManager::getNetworkType(table->getTypeName().c_str(), myNetwork))
            throw py::value_error("unknown state category '" + category + "'");
        myInfo.name = name;
        myInfo.label = label.empty() ? name : label;
        myInfo.icon = icon;
        myInfo.help = help;
        if (!factory.is_none())
        {
            // The names of the callbacks the factory's objects answer: its public callables.
            std::set<std::string> names;
            for (const py::handle &attr : py::module_::import("builtins").attr("dir")(factory))
            {
                std::string attr_name = py::str(attr).cast<std::string>();
                if (attr_name.rfind("on", 0) == 0 && py::hasattr(factory, attr_name.c_str()))
                    names.insert(attr_name);
            }
            myInfo.callbacks = GZ_PythonResource::CallbackHandler(holdPython(factory), names);
        }
    }

    StateTemplate &bindParameter(const std::string &name, const std::string &type, int components,
                                 const std::string &label, const py::object &value)
    {
        checkOpen();
        static const std::pair<const char *, HostParmType> theTypes[] = {
            {"float", HOST_PARM_FLOAT},
            {"int", HOST_PARM_INT},
            {"toggle", HOST_PARM_TOGGLE},
            {"string", HOST_PARM_STRING},
        };
        for (const auto &entry : theTypes)
        {
            if (type != entry.first)
                continue;
            const bool text = entry.second.isString();
            myParms.add(entry.second, name, label, components, defaultsOf(value, components, text));
            return *this;
        }
        throw py::value_error("parameter " + name + ": unknown type '" + type +
                              "' (float, int, toggle or string)");
    }

    StateTemplate &bindVolatileHotkeys(const std::string &text)
    {
        checkOpen();
        myInfo.volatileHotkey = text;
        return *this;
    }
    StateTemplate &setOpIndependent(bool on)
    {
        checkOpen();
        myInfo.opIndependent = on;
        return *this;
    }

    void registerTemplate()
    {
        checkOpen();
        GZ_ResourceManager &rm = manager();
        if (rm.isRegisteredViewerState(myInfo.name.c_str()))
            throw Error("a viewer state named " + myInfo.name + " is registered already");
        myInfo.parmTemplates = std::make_shared<const HostParmTemplateList>(myParms.list);
        auto state = std::make_unique<GZ_PythonState::Template>(myInfo, nullptr, GZ_VIEWER_SCENE,
                                                                GZnetworkMaskBit(myNetwork));
        if (!rm.registerState(state.get()))
            throw Error("cannot register viewer state " + myInfo.name);
        // States belong to whoever registers them; these live as long as the process (the
        // registry keeps pointing at them), so they are kept where no exit can free them.
        static auto *theStates = new std::vector<std::unique_ptr<GZ_PythonState::Template>>();
        theStates->push_back(std::move(state));
        myRegistered = true;
    }

    const std::string &name() const { return myInfo.name; }
    bool isRegistered() const { return myRegistered; }

private:
    void checkOpen() const
    {
        if (myRegistered)
            throw Error("viewer state " + myInfo.name + " is registered already");
    }

    GZ_PythonState::Info myInfo;
    DeclaredParms myParms;
    GZ_NetworkType myNetwork = GZ_NETWORK_SOP;
    bool myRegistered = false;
};

/// Makes an importable package module "package.interface" and returns the interface.
py::module_ makeInterfaceModule(const std::string &package, const char *doc)
{
    py::module_ types = py::module_::import("types");
    py::dict modules = py::module_::import("sys").attr("modules");
    py::object parent = types.attr("ModuleType")(package);
    parent.attr("__path__") = py::list();
    py::module_ interface =
        types.attr("ModuleType")(package + ".interface", doc).cast<py::module_>();
    parent.attr("interface") = interface;
    modules[py::str(package)] = parent;
    modules[py::str(package + ".interface")] = interface;
    return interface;
}
} // namespace

void defineResourceInterfaces()
{
    py::module_ handles = makeInterfaceModule(
        "viewerhandle", "Describes viewer handles written in Python and registers them.");
    py::class_<HandleTemplate>(handles, "ViewerHandleTemplate")
        .def("bind_parameter", &HandleTemplate::bindParameter, py::arg("name"),
             py::arg("components") = 1, py::arg("label") = "", py::arg("default") = 0.0,
             py::return_value_policy::reference_internal)
        .def("register", &HandleTemplate::registerTemplate)
        .def("handle_parameter_names", &HandleTemplate::handleParameterNames)
        .def("name", &HandleTemplate::name)
        .def("is_registered", &HandleTemplate::isRegistered);
    handles.def(
        GZ_PythonResource::theHandleTemplateFactory,
        [](const std::string &name, const std::string &label, const py::object &types,
           const std::string &icon, const std::string &help)
        { return HandleTemplate(name, label, types, icon, help); },
        py::arg("name"), py::arg("label"), py::arg("network_types") = "sop", py::arg("icon") = "",
        py::arg("help") = "");

    py::module_ states = makeInterfaceModule(
        "viewerstate", "Describes viewer states written in Python and registers them.");
    py::class_<StateTemplate>(states, "ViewerStateTemplate")
        .def("bind_parameter", &StateTemplate::bindParameter, py::arg("name"),
             py::arg("type") = "float", py::arg("components") = 1, py::arg("label") = "",
             py::arg("default") = 0.0, py::return_value_policy::reference_internal)
        .def("bind_volatile_hotkeys", &StateTemplate::bindVolatileHotkeys, py::arg("text"),
             py::return_value_policy::reference_internal)
        .def("set_op_independent", &StateTemplate::setOpIndependent, py::arg("on") = true,
             py::return_value_policy::reference_internal)
        .def("register", &StateTemplate::registerTemplate)
        .def("name", &StateTemplate::name)
        .def("is_registered", &StateTemplate::isRegistered);
    states.def(
        GZ_PythonResource::theStateTemplateFactory,
        [](const std::string &name, const std::string &label, const std::string &category,
           const py::object &factory, const std::string &icon, const std::string &help)
        { return StateTemplate(name, label, category, factory, icon, help); },
        py::arg("name"), py::arg("label"), py::arg("category") = "Sop",
        py::arg("factory") = py::none(), py::arg("icon") = "", py::arg("help") = "");
}
} // namespace gz_py
