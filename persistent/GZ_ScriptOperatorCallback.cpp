// GZ_ScriptOperatorCallback: the default parameter callback of scripted operator types.
#include "persistent/GZ_ScriptOperator.h"

#include "host/HostChoiceList.h"
#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "host/HostLanguageNames.h"
#include "host/HostNode.h"
#include "host/HostParm.h"
#include "host/HostSpareData.h"
#include "host/HostUndoManager.h"

#include <cstdlib>
#include <ostream>

namespace
{
GZ_ScriptOperator::ScriptRunner theScriptRunner = nullptr;

using Options = std::vector<GZ_ScriptOperator::CallbackOption>;

/// The language of a callback tag: its name ("command", "python") or number; the scripting
/// language when the tag is missing, as the parameter editor assumes.
int callbackLanguage(const HostParmTemplate &tmpl)
{
    const char *value = tmpl.getTag(HostSpareData::CALLBACK_LANGUAGE_TAG);
    int language = 1;
    if (value && !HostLanguageNames::scriptLanguageFromName(value, language))
        language = std::atoi(value);
    return language;
}

HostExprValue componentValue(const HostParm &parm, int k, double time)
{
    if (parm.getType().isString())
        return HostExprValue::string(parm.evalString(k, time));
    return HostExprValue::number(parm.evalFloat(k, time));
}

void addMultiparmOptions(const HostParm &parm, Options &options)
{
    std::vector<int> instances;
    for (const HostParm *p = &parm; p && p->getMultiParmOwner(); p = p->getMultiParmOwner())
        instances.push_back(p->getInstanceNumber());
    options.emplace_back("script_multiparm_nesting",
                         HostExprValue::number(static_cast<double>(instances.size())));
    options.emplace_back("script_multiparm_index",
                         HostExprValue::number(instances.empty() ? -1 : instances[0]));
    for (std::size_t level = 1; level < instances.size(); ++level)
        options.emplace_back("script_multiparm_index" + std::to_string(level + 1),
                             HostExprValue::number(instances[level]));
}

void addValueOptions(const HostParm &parm, int index, double time, Options &options)
{
    if (parm.getType().isButton())
    {
        const HostChoiceList *menu = parm.getTemplate().getChoiceList();
        const HostExprValue value = (menu && index >= 0 && index < menu->getNumItems())
                                        ? HostExprValue::string(menu->getToken(index))
                                        : componentValue(parm, 0, time);
        options.emplace_back("script_value", value);
        options.emplace_back("script_value0", value);
        return;
    }
    options.emplace_back("script_value", componentValue(parm, 0, time));
    for (int k = 0; k < parm.getVectorSize(); ++k)
        options.emplace_back("script_value" + std::to_string(k), componentValue(parm, k, time));
}

Options buildOptions(const HostParm &parm, const HostParmTemplate &tmpl, int index, double time)
{
    Options options;
    options.emplace_back("script_parm", HostExprValue::string(tmpl.getToken()));
    options.emplace_back("parm_name", HostExprValue::string(parm.getName()));
    addMultiparmOptions(parm, options);
    addValueOptions(parm, index, time, options);
    return options;
}

/// Command language: the options are variables while the text runs, then put back as
/// they were.
void runCommandCallback(const Options &options, const std::string &text,
                        const std::string &source)
{
    HostCommandManager *commands = HostCommandManager::getInstance();
    std::vector<std::pair<std::string, const std::string *>> saved;
    std::vector<std::string> previous;
    previous.reserve(options.size());
    for (const auto &option : options)
    {
        const std::string *old = commands->variable(option.first);
        previous.push_back(old ? *old : std::string());
        saved.emplace_back(option.first, old ? &previous.back() : nullptr);
        commands->setVariable(option.first, option.second.toString());
    }
    HostExecOptions exec;
    exec.source = source;
    exec.locateCommandErrors = true;
    commands->execute(text, exec);
    for (auto it = saved.rbegin(); it != saved.rend(); ++it)
    {
        if (it->second)
            commands->setVariable(it->first, *it->second);
        else
            commands->unsetVariable(it->first);
    }
}

void runScriptCallback(HostNode &node, const std::string &parm_name, const Options &options,
                       const std::string &text, const std::string &source)
{
    std::ostream &err = HostCommandManager::getInstance()->err();
    if (!theScriptRunner)
    {
        err << source << ": the scripting layer is not available; callback not run\n";
        return;
    }
    std::string errors;
    if (!theScriptRunner(node, parm_name, options, text, source, errors))
        err << errors << (errors.empty() || errors.back() == '\n' ? "" : "\n");
}

int defaultCallback(HostNode *node, int parm_index, int index, double time,
                    const HostParmTemplate *tmpl)
{
    if (!node || !tmpl || !tmpl->getTags())
        return 0;
    const char *text = tmpl->getTag(HostSpareData::CALLBACK_TAG);
    HostParm *parm = node->getParmList().getParm(parm_index);
    if (!text || !*text || !parm)
        return 0;
    const int language = callbackLanguage(*tmpl);
    const std::string source_text = text; // the callback may rebuild the node's templates
    HostDirector *director = node->getDirector();
    HostUndoManager &undo = director->getUndoManager();
    const int block = undo.beginUndoBlock("Parameter Callback");
    HostNode *previous = director->getCurrentNode();
    const int previous_id = previous ? previous->getUniqueId() : -1;
    director->setCurrentNode(node);

    const Options options = buildOptions(*parm, *tmpl, index, time);
    const std::string parm_name = parm->getName();
    const HostOperator *op = node->getOperator();
    std::string source = op ? op->getQualifiedName() : node->getFullPath();
    source += "/" + parm_name;
    if (language == 0)
        runCommandCallback(options, source_text, source);
    else
        runScriptCallback(*node, parm_name, options, source_text, source);

    // Kept by id: the callback may have deleted the previous current node.
    director->setCurrentNode(previous_id >= 0 ? director->findNodeById(previous_id) : nullptr);
    undo.endUndoBlock(block);
    return 1;
}
} // namespace

HostParmCallback GZ_ScriptOperator::getDefaultCallback()
{
    return &defaultCallback;
}

void GZ_ScriptOperator::setScriptRunner(ScriptRunner runner)
{
    theScriptRunner = runner;
}

GZ_ScriptOperator::ScriptRunner GZ_ScriptOperator::getScriptRunner()
{
    return theScriptRunner;
}
