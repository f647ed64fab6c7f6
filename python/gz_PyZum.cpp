// gz_PyZum: the "zum" module, the Python API over the host's nodes, parameters, time,
// commands and undo.
#include "python/gz_PyRuntime.h"

#include "host/HostChannel.h"
#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostExpression.h"
#include "host/HostNetwork.h"
#include "host/HostNode.h"
#include "host/HostNodeExprContext.h"
#include "host/HostParm.h"
#include "host/HostParmList.h"
#include "host/HostUndoManager.h"
#include "resource/GZ_ResourceManager.h"

#include <pybind11/embed.h>
#include <pybind11/stl.h>

#include <cmath>
#include <optional>
#include <sstream>
#include <vector>

namespace py = pybind11;

namespace gz_py
{
namespace
{
thread_local std::vector<EvalFrame> theEvalFrames;

HostDirector &director()
{
    return *HostDirector::instance();
}

/// Expressions only read: an edit made while one is evaluated could delete or rebuild the
/// very parameter being evaluated under the evaluation's feet.
void checkNotEvaluating(const char *what)
{
    if (currentEvalFrame())
        throw Error(std::string("cannot ") + what + " while an expression is evaluated");
}

/// Runs host commands for a structural edit (they record undo as the shell's own commands
/// do); raises zum.Error with their messages when they report any.
void runEdit(const std::string &text)
{
    checkNotEvaluating("change nodes");
    std::ostringstream out, err;
    HostExecOptions options;
    options.out = &out;
    options.err = &err;
    HostCommandManager::getInstance()->execute(text, options);
    std::string message = err.str();
    while (!message.empty() && message.back() == '\n')
        message.pop_back();
    if (!message.empty())
        throw Error(message);
}

std::string quoted(const std::string &word)
{
    return HostCommandManager::protectString(word);
}

/// One undo step around a single edit made from Python, unless an enclosing block (an
/// undo_group, a command) makes it part of a larger one.
class EditBlock
{
public:
    explicit EditBlock(const char *name)
        : myId((checkNotEvaluating("change parameters"),
                director().getUndoManager().beginUndoBlock(name)))
    {
    }
    ~EditBlock() { director().getUndoManager().endUndoBlock(myId); }
    EditBlock(const EditBlock &) = delete;
    EditBlock &operator=(const EditBlock &) = delete;

private:
    int myId;
};

class Parm;

/// A node, found again by its unique id at every call so that a deleted node raises
/// zum.ObjectWasDeleted instead of being followed.
class Node
{
public:
    explicit Node(const HostNode &node) : myId(node.getUniqueId()) {}

    HostNode &get() const
    {
        HostNode *node = director().findNodeById(myId);
        if (!node)
            throw ObjectWasDeleted("the node no longer exists");
        return *node;
    }
    int id() const { return myId; }

    std::string path() const { return get().getFullPath(); }
    std::string name() const { return get().getName(); }
    std::string type() const
    {
        HostNode &node = get();
        std::string key = GZ_ResourceManager::getOperatorKey(node.getOperator());
        return key.empty() ? node.getOperatorName() : key;
    }
    std::optional<Node> parent() const
    {
        HostNode *parent = get().getParent();
        return parent ? std::optional<Node>(Node(*parent)) : std::nullopt;
    }
    std::vector<Node> children() const
    {
        std::vector<Node> nodes;
        const HostNetwork *net = get().getChildNetwork();
        for (int i = 0; net && i < net->getNumNodes(); ++i)
            nodes.emplace_back(*net->getNode(i));
        return nodes;
    }
    std::optional<Node> child(const std::string &name) const
    {
        const HostNetwork *net = get().getChildNetwork();
        HostNode *found = net ? net->findNode(name) : nullptr;
        return found ? std::optional<Node>(Node(*found)) : std::nullopt;
    }
    std::optional<Parm> parm(const std::string &name) const;
    std::vector<Parm> parms() const;

    Node createNode(const std::string &type, const std::string &name) const
    {
        HostNode &node = get();
        const HostNetwork *net = node.getChildNetwork();
        if (!net)
            throw Error(node.getFullPath() + " cannot have children");
        const std::string child = name.empty() ? net->getFreeName(type + "1") : name;
        std::string path = node.getFullPath();
        path += (path == "/" ? "" : "/") + child;
        runEdit("nodeadd " + quoted(type) + " " + quoted(path));
        HostNode *made = director().findNode(path);
        if (!made)
            throw Error("cannot create " + path);
        return Node(*made);
    }
    void destroy() const { runEdit("noderm " + quoted(path())); }
    void setName(const std::string &name) const
    {
        runEdit("nodemv " + quoted(path()) + " " + quoted(name));
    }

    bool operator==(const Node &o) const { return myId == o.myId; }

private:
    int myId;
};

/// One component of a node parameter (a channel: "tx" of "t"), found again by node id and
/// channel name at every call.
class Parm
{
public:
    Parm(const HostNode &node, const HostParm &parm, int k)
        : myNode(node), myChannel(parm.getChannelName(k))
    {
    }

    HostParm &get(int &k) const
    {
        HostNode &node = myNode.get();
        HostParm *parm = node.findChannel(myChannel, k);
        if (!parm)
            throw ObjectWasDeleted("the parameter " + myChannel + " no longer exists");
        return *parm;
    }

    std::string name() const { return myChannel; }
    std::string path() const { return myNode.path() + "/" + myChannel; }
    Node node() const { return myNode; }
    /// The parameter the component belongs to ("t" for "tx").
    std::string tupleName() const
    {
        int k = 0;
        return get(k).getName();
    }

    py::object evalAt(double time) const
    {
        int k = 0;
        HostParm &parm = get(k);
        std::string error;
        if (parm.getType().isString() || parm.getType().isData())
        {
            std::string text = parm.evalString(k, time, error);
            if (!error.empty())
                throw Error(error);
            return py::str(text);
        }
        const double value = parm.evalFloat(k, time, error);
        if (!error.empty())
            throw Error(error);
        if (parm.getType().isInteger() || parm.getType().isOrdinal())
            return py::int_(static_cast<long long>(std::llround(value)));
        return py::float_(value);
    }
    py::object eval() const { return evalAt(currentTime()); }
    std::optional<std::string> evalError() const
    {
        int k = 0;
        const std::string &error = get(k).getEvalError(k);
        return error.empty() ? std::nullopt : std::optional<std::string>(error);
    }

    void set(const py::object &value) const
    {
        int k = 0;
        HostParm &parm = get(k);
        HostNode &node = myNode.get();
        EditBlock block("Set parameter from Python");
        bool done = false;
        if (py::isinstance<py::str>(value))
            done = node.setParmString(parm, k, value.cast<std::string>(), HOST_STRING_LITERAL);
        else if (parm.getType().isString() || parm.getType().isData())
            throw Error(path() + " holds text; give it a string");
        else
            done = node.setParmValue(parm, k, value.cast<double>());
        if (!done)
            throw Error("cannot change " + path() + (parm.isLocked(k) ? ": it is locked" : ""));
    }

    std::optional<std::string> expression() const
    {
        int k = 0;
        const HostParm &parm = get(k);
        return parm.hasExpression(k) ? std::optional<std::string>(parm.getExpression(k))
                                     : std::nullopt;
    }
    std::optional<std::string> expressionLanguage() const
    {
        int k = 0;
        const HostParm &parm = get(k);
        if (!parm.hasExpression(k))
            return std::nullopt;
        const HostParmComponent &c = parm.component(k);
        return std::string(c.myMeaning == HOST_STRING_SCRIPT ? "python" : "expr");
    }
    void setExpression(const std::string &text, const std::string &language) const
    {
        const int meaning = HostExpression::meaningFromName(language);
        if (meaning != HOST_STRING_EXPRESSION && meaning != HOST_STRING_SCRIPT)
            throw Error("unknown expression language " + language + " (expr or python)");
        int k = 0;
        HostParm &parm = get(k);
        EditBlock block("Set expression from Python");
        if (!myNode.get().setParmString(parm, k, text, static_cast<HostStringMeaning>(meaning)))
            throw Error("cannot change " + path() + (parm.isLocked(k) ? ": it is locked" : ""));
    }

    std::vector<std::pair<double, double>> keys() const
    {
        int k = 0;
        std::vector<std::pair<double, double>> keys;
        if (const HostChannel *channel = get(k).getChannel(k))
            for (const HostChannelKey &key : channel->getKeys())
                keys.emplace_back(key.myTime, key.myValue);
        return keys;
    }
    void setKey(std::optional<double> time, std::optional<double> value) const
    {
        int k = 0;
        HostParm &parm = get(k);
        HostNode &node = myNode.get();
        EditBlock block("Set key from Python");
        if (!node.canModifyFromUI(parm, k))
            throw Error("cannot key " + path() + (parm.isLocked(k) ? ": it is locked" : ""));
        const double at = time ? *time : director().getTime();
        node.saveParmForUndo(parm);
        node.parmChanging(parm);
        if (value)
            parm.setKey(k, at, *value);
        else
            parm.setKey(k, at);
        node.parmChanged(parm);
    }
    bool deleteKey(double time) const
    {
        int k = 0;
        HostParm &parm = get(k);
        HostNode &node = myNode.get();
        if (!parm.isKeyAt(k, time))
            return false;
        EditBlock block("Remove key from Python");
        node.saveParmForUndo(parm);
        node.parmChanging(parm);
        parm.removeKey(k, time);
        node.parmChanged(parm);
        return true;
    }

    bool isLocked() const
    {
        int k = 0;
        return get(k).isLocked(k);
    }
    void lock(bool on) const
    {
        int k = 0;
        HostParm &parm = get(k);
        HostNode &node = myNode.get();
        EditBlock block("Lock parameter from Python");
        node.saveParmForUndo(parm);
        node.parmChanging(parm);
        parm.setLocked(k, on);
        node.parmChanged(parm);
    }

    bool operator==(const Parm &o) const { return myNode == o.myNode && myChannel == o.myChannel; }

    static double currentTime()
    {
        const EvalFrame *frame = currentEvalFrame();
        return frame ? frame->time : director().getTime();
    }

private:
    Node myNode;
    std::string myChannel;
};

std::optional<Parm> Node::parm(const std::string &name) const
{
    HostNode &node = get();
    int k = 0;
    if (HostParm *parm = node.findChannel(name, k))
        return Parm(node, *parm, k);
    if (HostParm *parm = node.getParm(name); parm && parm->getVectorSize() > 0)
        return Parm(node, *parm, 0);
    return std::nullopt;
}

std::vector<Parm> Node::parms() const
{
    HostNode &node = get();
    std::vector<Parm> parms;
    const HostParmList &list = node.getParmList();
    for (int i = 0; i < list.getEntries(); ++i)
    {
        const HostParm *parm = list.getParm(i);
        for (int k = 0; parm && k < parm->getVectorSize(); ++k)
            parms.emplace_back(node, *parm, k);
    }
    return parms;
}

std::optional<Node> findNode(const std::string &path)
{
    HostNode *node = director().findNode(path);
    return node ? std::optional<Node>(Node(*node)) : std::nullopt;
}

std::optional<Parm> findParm(const std::string &path)
{
    const size_t slash = path.find_last_of('/');
    if (slash == std::string::npos)
        return std::nullopt;
    HostNode *node = director().findNode(slash == 0 ? "/" : path.substr(0, slash));
    return node ? Node(*node).parm(path.substr(slash + 1)) : std::nullopt;
}

/// The node expressions and relative paths are read from: the node of the expression being
/// evaluated, else the current node.
std::optional<Node> pwd()
{
    const EvalFrame *frame = currentEvalFrame();
    const HostNode *node = frame ? frame->node : director().getCurrentNode();
    return node ? std::optional<Node>(Node(*node)) : std::nullopt;
}

double channelValue(const std::string &path)
{
    const EvalFrame *frame = currentEvalFrame();
    const HostNode *node = frame ? frame->node : director().getCurrentNode();
    HostNodeExprContext context(node, Parm::currentTime());
    HostExprValue value;
    std::string error;
    if (!context.evaluateChannel(path, /*asString=*/false, value, error))
        throw Error(error);
    return value.toNumber();
}

/// Runs host commands; their output and errors come back as a pair of strings.
std::pair<std::string, std::string> runCommands(const std::string &text)
{
    checkNotEvaluating("run commands");
    std::ostringstream out, err;
    HostExecOptions options;
    options.source = "zum.run";
    options.out = &out;
    options.err = &err;
    HostCommandManager::getInstance()->execute(text, options);
    return {out.str(), err.str()};
}

/// `with zum.undo_group("name"):` — every change inside is one undo step, whatever the
/// block raises.
class UndoGroup
{
public:
    explicit UndoGroup(std::string name) : myName(std::move(name)) {}
    UndoGroup &enter()
    {
        if (myId >= 0)
            throw Error("undo group " + myName + " is already open");
        checkNotEvaluating("open an undo group");
        myId = director().getUndoManager().beginUndoBlock(myName.c_str());
        return *this;
    }
    bool exit(const py::args &)
    {
        if (myId >= 0)
            director().getUndoManager().endUndoBlock(myId);
        myId = -1;
        return false; // exceptions go on
    }

private:
    std::string myName;
    int myId = -1;
};

/// sys.stdout and sys.stderr: Python's output joins the host's command streams, in order
/// with the host's own.
class HostStream
{
public:
    explicit HostStream(bool is_error) : myIsError(is_error) {}
    size_t write(const std::string &text)
    {
        HostCommandManager *commands = HostCommandManager::getInstance();
        (myIsError ? commands->err() : commands->out()) << text;
        return text.size();
    }
    void flush()
    {
        HostCommandManager *commands = HostCommandManager::getInstance();
        (myIsError ? commands->err() : commands->out()).flush();
    }

private:
    bool myIsError;
};
} // namespace

const EvalFrame *currentEvalFrame()
{
    return theEvalFrames.empty() ? nullptr : &theEvalFrames.back();
}

void pushEvalFrame(const EvalFrame &frame)
{
    theEvalFrames.push_back(frame);
}

void popEvalFrame()
{
    theEvalFrames.pop_back();
}

void defineZum(py::module_ &m)
{
    m.doc() = "The host's nodes, parameters, time, commands and undo.";
    static py::exception<Error> error(m, "Error");
    static py::exception<ObjectWasDeleted> deleted(m, "ObjectWasDeleted", error.ptr());
    py::register_exception_translator(
        [](std::exception_ptr p)
        {
            try
            {
                if (p)
                    std::rethrow_exception(p);
            }
            catch (const ObjectWasDeleted &e)
            {
                deleted(e.what());
            }
            catch (const Error &e)
            {
                error(e.what());
            }
        });

    py::class_<Node>(m, "Node")
        .def("path", &Node::path)
        .def("name", &Node::name)
        .def("type", &Node::type)
        .def("parent", &Node::parent)
        .def("children", &Node::children)
        .def("child", &Node::child, py::arg("name"))
        .def("parm", &Node::parm, py::arg("name"))
        .def("parms", &Node::parms)
        .def("create_node", &Node::createNode, py::arg("type"), py::arg("name") = "")
        .def("destroy", &Node::destroy)
        .def("set_name", &Node::setName, py::arg("name"))
        .def("__eq__", &Node::operator==)
        .def("__hash__", &Node::id)
        .def("__repr__", [](const Node &n) { return "<zum.Node " + n.path() + ">"; });

    py::class_<Parm>(m, "Parm")
        .def("name", &Parm::name)
        .def("tuple_name", &Parm::tupleName)
        .def("path", &Parm::path)
        .def("node", &Parm::node)
        .def("eval", &Parm::eval)
        .def("eval_at_time", &Parm::evalAt, py::arg("time"))
        .def("eval_error", &Parm::evalError)
        .def("set", &Parm::set, py::arg("value"))
        .def("expression", &Parm::expression)
        .def("expression_language", &Parm::expressionLanguage)
        .def("set_expression", &Parm::setExpression, py::arg("text"),
             py::arg("language") = "python")
        .def("keys", &Parm::keys)
        .def("set_key", &Parm::setKey, py::arg("time") = py::none(), py::arg("value") = py::none())
        .def("delete_key", &Parm::deleteKey, py::arg("time"))
        .def("is_locked", &Parm::isLocked)
        .def("lock", &Parm::lock, py::arg("on") = true)
        .def("__eq__", &Parm::operator==)
        .def("__repr__", [](const Parm &p) { return "<zum.Parm " + p.path() + ">"; });

    py::class_<UndoGroup>(m, "UndoGroup")
        .def("__enter__", &UndoGroup::enter, py::return_value_policy::reference_internal)
        .def("__exit__", &UndoGroup::exit);
    m.def(
        "undo_group", [](const std::string &name) { return UndoGroup(name); }, py::arg("name"));

    py::class_<HostStream>(m, "_HostStream")
        .def(py::init<bool>())
        .def("write", &HostStream::write)
        .def("flush", &HostStream::flush);

    m.def("node", &findNode, py::arg("path"));
    m.def("parm", &findParm, py::arg("path"));
    m.def("pwd", &pwd);
    m.def("ch", &channelValue, py::arg("path"));
    m.def("time", &Parm::currentTime);
    m.def(
        "set_time",
        [](double seconds)
        {
            checkNotEvaluating("change the time");
            director().setTime(seconds);
        },
        py::arg("seconds"));
    m.def("frame", [] { return director().timeToFrame(Parm::currentTime()); });
    m.def(
        "set_frame",
        [](double frame)
        {
            checkNotEvaluating("change the time");
            director().setTime(director().frameToTime(frame));
        },
        py::arg("frame"));
    m.def("fps", [] { return director().getFps(); });
    m.def("run", &runCommands, py::arg("commands"));
}
} // namespace gz_py

PYBIND11_EMBEDDED_MODULE(zum, m)
{
    gz_py::defineZum(m);
}
