// GZ_ResourceManager: reading and writing the bindings file, and the bindings of a saved scene.
#include "resource/GZ_ResourceManager.h"

#include "host/HostCommandManager.h"
#include "host/HostDiagnostics.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostPreprocessor.h"
#include "host/HostReader.h"
#include "link/GZ_SettingList.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/gz_BindingsParser.h"
#include "resource/gz_OpHandleEntry.h"
#include "resource/gz_OpSelectorEntry.h"

#include <fstream>
#include <ostream>

// Reading decodes the whole file into records first (gz_BindingsParser), then applies them to
// the registry in file order, so that every message comes where a one-pass reader would have
// printed it.

namespace
{
const std::vector<std::string> thePreprocessorOptions = {"", "-x", "-P"};
} // namespace

void GZ_ResourceManager::registerOpHandleBindings()
{
    std::string path;
    if (!HostReader::findFile("OPbindings", path))
        return;
    HostPreprocessor pp;
    pp.setSearchPath(HostReader::getSearchPath());
    if (!pp.open(path, thePreprocessorOptions))
        return;
    gz_BindingsDocument document;
    gz_BindingsParser::read(pp, document);
    applyBindings(document);
}

void GZ_ResourceManager::registerOpHandleBindingsFromText(const std::string &text,
                                                          const std::string &name)
{
    HostPreprocessor pp;
    pp.setSearchPath(HostReader::getSearchPath());
    pp.openText(text, name, thePreprocessorOptions);
    gz_BindingsDocument document;
    gz_BindingsParser::read(pp, document);
    applyBindings(document);
}

/// Where applying a document stands: the operator block and the entry being applied.
struct GZ_ResourceManager::BindingsApplyState
{
    std::string key;
    HostOperator *op = nullptr;
    std::string table;
    gz_OpHandleEntry *handles = nullptr;
    gz_OpSelectorEntry *selectors = nullptr;
    /// The handle that LINK records go to; null while they are ignored.
    GZ_BindingHandleInfo *handle = nullptr;
    const gz_BindingsRecord *selector = nullptr;
    bool selectorKnown = false;
};

void GZ_ResourceManager::applyBindings(const gz_BindingsDocument &document)
{
    BindingsApplyState state;
    for (const gz_BindingsRecord &record : document.records)
    {
        switch (record.kind)
        {
        case gz_BindingsRecord::OPERATOR:
            finishOperator(state);
            startOperator(state, record.name);
            break;
        case gz_BindingsRecord::HANDLE:
            state.handle = applyHandle(state, record);
            break;
        case gz_BindingsRecord::HANDLE_WITHOUT_SETTINGS:
            state.handle = nullptr;
            printWarning("Error: Could not load default settings for the %s handle.",
                         record.type.c_str());
            break;
        case gz_BindingsRecord::LINK:
            if (state.handle)
                applyLink(state, record, document.file(record));
            break;
        case gz_BindingsRecord::SELECTOR:
            state.selector = &record;
            state.selectorKnown = getSelectorTemplate(record.type.c_str()) != nullptr;
            if (!state.selectorKnown)
                printWarning("Bad selector: %s", record.type.c_str());
            break;
        case gz_BindingsRecord::SELECTOR_END:
            if (state.selectorKnown && state.selector && state.selectors)
                applySelector(*state.selector, document.selectors[record.detail], *state.selectors);
            state.selectorKnown = false;
            break;
        case gz_BindingsRecord::PROBLEM:
            if (!record.onlyForKnownSelector || state.selectorKnown)
                HostDiagnostics::report(document.problems[record.detail]);
            break;
        }
    }
    finishOperator(state);
}

void GZ_ResourceManager::startOperator(BindingsApplyState &state, const std::string &key)
{
    state = BindingsApplyState();
    state.key = key;
    eraseHandleEntry(key);
    eraseSelectorEntry(key);
    state.handles = &handleEntry(key);
    state.selectors = &selectorEntry(key);
    state.op = findOperator(key.c_str(), &state.table);
    if (!state.op)
        printWarning("Warning: Bad operator type when binding handles: %s", key.c_str());
}

void GZ_ResourceManager::finishOperator(BindingsApplyState &state)
{
    if (state.handles && state.handles->empty())
        eraseHandleEntry(state.key);
    if (state.selectors && state.selectors->empty())
        eraseSelectorEntry(state.key);
}

GZ_BindingHandleInfo *GZ_ResourceManager::applyHandle(BindingsApplyState &state,
                                                      const gz_BindingsRecord &record)
{
    const std::string &type = record.type;
    const GZ_GZTemplate *gz = getOpHandleLinkTemplate(type.c_str());
    if (!gz)
    {
        printWarning("Bad handle: %s", type.c_str());
        return nullptr;
    }
    if (!gz->supportsType(state.table.c_str()))
    {
        printWarning("Handle %s does not support %s operators.", type.c_str(), state.table.c_str());
        return nullptr;
    }
    if (!state.handles)
        return nullptr;
    GZ_SettingList defaults;
    defaults.loadFromSettingString(record.text.c_str());
    return &state.handles->append(type, record.description, std::move(defaults));
}

void GZ_ResourceManager::applyLink(BindingsApplyState &state, const gz_BindingsRecord &link,
                                   const std::string &file)
{
    GZ_BindingHandleInfo &handle = *state.handle;
    const std::string &type = handle.getGZName();
    std::string channel = link.text;
    if (link.vecIndex >= 0)
    {
        getChannelNameFromParmAndVec(channel, state.op, link.text.c_str(), link.vecIndex);
        if (channel.empty())
        {
            const std::string message =
                "Error parsing OPbindings: " +
                HostDiagnostics::upToNul("parameter '" + link.text + "' has no component " +
                                         std::to_string(link.vecIndex));
            HostDiagnostics::report(HostDiagSeverity::Error, file, link.line, message,
                                    file + "[" + std::to_string(link.line) + "] " + message);
            return;
        }
    }
    if (!isValidGzParmName(type, link.name))
    {
        std::string message = "Bad handle parm found: '" + link.name + "' bound to" +
                              " operator parameter '" + channel + "'" + " for handle '" + type +
                              "'";
        if (state.op)
            message += " of the operator '" + state.op->getName() + "'";
        printWarningAt(file, link.line, message);
        return;
    }
    handle.addBinding(channel, link.name);
}

void GZ_ResourceManager::applySelector(const gz_BindingsRecord &selector,
                                       const gz_BindingsSelectorFields &fields,
                                       gz_OpSelectorEntry &entry)
{
    if (!fields.complete)
    {
        printWarning("Error binding selector: %s", selector.type.c_str());
        return;
    }
    entry.bind(GZ_BindingSelectorInfo(selector.type, selector.description, fields.prompt,
                                      fields.opParm, fields.menu, fields.primMask, fields.opInput,
                                      fields.opInputReq != 0, fields.allowDrag != 0,
                                      fields.astSelAll != 0, fields.extraInfo));
}

// ---------------------------------------------------------------------------------------
// Writing

namespace
{

/// Writes `text` in double quotes, escaping the characters the reader takes a backslash before.
void writeQuoted(std::ostream &os, const std::string &text)
{
    os << '"';
    for (char c : text)
    {
        if (c == '"' || c == '\\')
            os << '\\';
        os << c;
    }
    os << '"';
}

/// Writes one token of the file so that the reader reads it back as it is: plain when it is a
/// word the reader would take whole, else quoted. A plain word may not be empty, hold a blank,
/// a quote or a backslash, start a comment, or start a line as a directive or a brace would.
void writeToken(std::ostream &os, const std::string &text)
{
    bool plain = !text.empty() && text[0] != '#' && text[0] != '{' && text[0] != '}';
    for (size_t i = 0; plain && i < text.size(); ++i)
    {
        const char c = text[i];
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v' || c == '\n' || c == '"' ||
            c == '\'' || c == '\\' || (c == '/' && (next == '/' || next == '*')))
            plain = false;
    }
    if (plain)
        os << text;
    else
        writeQuoted(os, text);
}

/// Writes an operator parameter: the "{ ... }" form as the reader makes it, when the reader
/// would make it again from the same text, else as a token.
void writeOpParm(std::ostream &os, const std::string &text)
{
    const bool braced = text.size() >= 3 && text.compare(0, 2, "{ ") == 0 && text.back() == '}' &&
                        (text.size() == 3 || (text[2] != ' ' && text[2] != '\t')) &&
                        text.find_first_of("}\"'\\\t\r\f\v\n") == text.size() - 1 &&
                        text.find("//") == std::string::npos &&
                        text.find("/*") == std::string::npos;
    if (braced)
        os << text;
    else
        writeToken(os, text);
}

void writeSelectors(std::ostream &os, const gz_OpSelectorEntry &entry)
{
    for (const GZ_BindingSelectorInfo &selector : entry.selectors())
    {
        os << "    bindselector ";
        writeToken(os, selector.getName());
        os << " ";
        writeToken(os, selector.getDescription());
        os << "\n    {\n\t";
        writeToken(os, selector.getPrompt());
        os << "\n\t";
        writeToken(os, selector.getOpParm());
        os << " " << selector.getOpInput() << " " << (selector.getOpInputReq() ? 1 : 0) << " ";
        writeToken(os, selector.getPrimMask());
        os << " " << (selector.getAllowDrag() ? 1 : 0) << " ";
        writeToken(os, selector.getMenu());
        os << " " << (selector.getAstSelAll() ? 1 : 0) << "\n";
        if (!selector.getExtraInfo().empty())
        {
            os << "\t";
            writeToken(os, selector.getExtraInfo());
            os << "\n";
        }
        os << "    }\n";
    }
}

} // namespace

int GZ_ResourceManager::writeBindingsFile(const char *path) const
{
    std::ofstream os(path ? path : "", std::ios::binary);
    if (!os)
        return 0;

    // Operator types defined by a script keep their bindings in their own definition.
    auto keepsOwnBindings = [this](const std::string &key)
    {
        const HostOperator *op = findOperator(key.c_str(), nullptr);
        return op && op->keepsOwnBindings();
    };

    std::string settings;
    for (const auto &item : myHandleBindings)
    {
        const std::string &key = item.first;
        if (item.second->empty() || keepsOwnBindings(key))
            continue;
        writeToken(os, key);
        os << "\n{\n";
        for (const GZ_BindingHandleInfo &handle : item.second->handles())
        {
            handle.getDefaultSettings().generateSettingString(settings);
            os << "    bindhandle ";
            writeToken(os, handle.getGZName());
            os << " ";
            writeToken(os, handle.getGZDescription());
            os << " ";
            writeQuoted(os, settings);
            os << "\n    {\n";
            for (const GZ_BindingParmInfo &link : handle.getBindings())
            {
                os << "\t";
                writeOpParm(os, link.getOpParm());
                os << " ";
                writeToken(os, link.getGZParm());
                os << "\n";
            }
            os << "    }\n";
        }
        if (const gz_OpSelectorEntry *selectors = findSelectorEntry(key))
            writeSelectors(os, *selectors);
        os << "}\n\n";
    }

    for (const auto &item : mySelectorBindings)
    {
        const std::string &key = item.first;
        const gz_OpHandleEntry *handles = findHandleEntry(key);
        if (item.second->empty() || (handles && !handles->empty()) || keepsOwnBindings(key))
            continue;
        writeToken(os, key);
        os << "\n{\n";
        writeSelectors(os, *item.second);
        os << "}\n\n";
    }
    os.flush();
    return os ? 1 : 0;
}

// ---------------------------------------------------------------------------------------
// Scene save

namespace
{

/// The non-empty pieces of `text` between separators.
std::vector<std::string> splitNonEmpty(const std::string &text, char separator)
{
    std::vector<std::string> pieces;
    size_t start = 0;
    while (start <= text.size())
    {
        size_t end = text.find(separator, start);
        if (end == std::string::npos)
            end = text.size();
        if (end > start)
            pieces.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return pieces;
}

} // namespace

HostErrorSeverity GZ_ResourceManager::save(std::ostream &os)
{
    const HostDirector *director = HostDirector::instance();
    std::string args;
    for (const auto &item : myOpGZSettingTable)
    {
        const GZ_SettingList *settings = item.second.mySettings.get();
        if (!settings || !director->findNodeById(item.first.opId()))
            continue;
        settings->getSetting("hudbindingargs", args, "");
        for (const std::string &entry : splitNonEmpty(args, ';'))
        {
            // table, description, operator:parameter, handle:parameter; an entry that lacks
            // one of them could not be replayed, so it is left out.
            const std::vector<std::string> fields = splitNonEmpty(entry, ',');
            if (fields.size() < 4)
                continue;
            os << "ombind -t";
            for (int i = 0; i < 4; ++i)
            {
                os << " ";
                HostCommandManager::protectString(os, fields[i]);
            }
            os << "\n";
        }
    }
    return HOST_ERR_NONE;
}
