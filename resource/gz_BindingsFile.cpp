// GZ_ResourceManager: reading and writing the bindings file, and the bindings of a saved scene.
#include "resource/GZ_ResourceManager.h"

#include "host/HostDiagnostics.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "host/HostPreprocessor.h"
#include "host/HostReader.h"
#include "link/GZ_SettingList.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_SelectorTemplate.h"
#include "resource/gz_OpHandleEntry.h"
#include "resource/gz_OpSelectorEntry.h"

#include <cctype>
#include <climits>
#include <cstdio>
#include <fstream>
#include <ostream>

// The file is read through the host's preprocessor, which removes C comments and obeys
// directives. Its grammar, by level:
//
//   file      := { operator }                 blank lines and lines starting '#' are skipped
//   operator  := NAME rest-of-line  "{" line  { entry line }  "}" line
//   entry     := "bindhandle" TYPE DESCRIPTION "SETTINGS"  handle
//              | "bindselector" NAME DESCRIPTION  selector
//   handle    := "{" { link } "}"             tokens, across lines; tokens starting '#' skipped
//   link      := CHANNEL HANDLEPARM | PARM INDEX HANDLEPARM | "{" TEXT "}" HANDLEPARM
//   selector  := "{" line, PROMPT line, OPPARM INPUT REQUIRED MASK DRAG MENU SELALL line,
//                [EXTRA line], "}" line
//
// Problems the preprocessor finds (and #error directives) reach the reader's problem handler
// as they are met, and are reported as the reader's own.

namespace
{

const char theParseError[] = "Error parsing OPbindings: ";

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v';
}

bool isBlankLine(const std::string &line)
{
    for (char c : line)
        if (!isBlank(c))
            return false;
    return true;
}

/// The first character of a line that is not blank (the line must hold one).
char firstChar(const std::string &line)
{
    for (char c : line)
        if (!isBlank(c))
            return c;
    return ' ';
}

/// A place in the file, kept for messages about a block that started earlier.
struct Location
{
    std::string file;
    int line = 0;
};

Location here(const HostPreprocessor &pp)
{
    return Location{pp.fileName(), pp.lineNumber()};
}

/// Reports a problem of the file's form: "FILE[LINE] MESSAGE".
void reportAt(const Location &where, const std::string &message)
{
    HostDiagnostics::report(HostDiagSeverity::Error, where.file, where.line, message,
                            where.file + "[" + std::to_string(where.line) + "] " + message);
}

void reportMalformed(const Location &where, const std::string &what)
{
    reportAt(where, theParseError + HostDiagnostics::upToNul(what));
}

void reportUnexpected(const HostPreprocessor &pp, const std::string &word)
{
    reportAt(here(pp), "Unexpected input: '" + HostDiagnostics::upToNul(word) + "'");
}

/// A problem of the preprocessor's, worded as its lines always were (the blank after the
/// colon is the one the preprocessor's own wording began with).
void reportPreprocessorProblem(const std::string &file, int line, const std::string &message)
{
    const std::string located =
        file + "[" + std::to_string(line) + "]: " + HostDiagnostics::upToNul(message);
    HostDiagnostics::report(HostDiagSeverity::Error, file, line, message,
                            theParseError + (" " + located));
}

bool nextLine(HostPreprocessor &pp, std::string &line)
{
    return pp.getLine(line);
}

/// The next line that is neither blank nor a '#' comment line.
bool nextContentLine(HostPreprocessor &pp, std::string &line)
{
    while (nextLine(pp, line))
    {
        if (!isBlankLine(line) && firstChar(line) != '#')
            return true;
    }
    return false;
}

/// Makes `line` (not blank) the line that tokens are read from, and reads its first token.
void startLine(HostPreprocessor &pp, const std::string &line, std::string &token,
               bool *quoted = nullptr)
{
    pp.ungetLine(line);
    pp.getToken(token, quoted);
}

/// The next token, going on to later lines when the current one is used up.
bool nextToken(HostPreprocessor &pp, std::string &token, bool &quoted)
{
    if (pp.getLineToken(token, &quoted))
        return true;
    std::string line;
    while (nextLine(pp, line))
    {
        if (isBlankLine(line))
            continue;
        startLine(pp, line, token, &quoted);
        return true;
    }
    return false;
}

/// The next token of a handle block; tokens starting with '#' are comments there.
bool nextHandleToken(HostPreprocessor &pp, std::string &token, bool &quoted)
{
    while (nextToken(pp, token, quoted))
    {
        if (quoted || token.empty() || token[0] != '#')
            return true;
    }
    return false;
}

bool isWord(const std::string &token, bool quoted, const char *word)
{
    return !quoted && token == word;
}

/// A decimal integer with an optional sign and nothing else.
bool parseInt(const std::string &text, int &value)
{
    size_t i = (!text.empty() && (text[0] == '-' || text[0] == '+')) ? 1 : 0;
    if (i == text.size())
        return false;
    long long v = 0;
    for (; i < text.size(); ++i)
    {
        if (!std::isdigit(static_cast<unsigned char>(text[i])))
            return false;
        v = v * 10 + (text[i] - '0');
        if (v > INT_MAX)
            return false;
    }
    value = text[0] == '-' ? -static_cast<int>(v) : static_cast<int>(v);
    return true;
}

/// Skips what is left of a block whose opening brace has been read, up to the line holding
/// the brace that closes it (braces inside quoted strings do not count).
void skipBlock(HostPreprocessor &pp, const Location &opened, const std::string &what)
{
    int depth = 1;
    std::string line;
    while (nextLine(pp, line))
    {
        char quote = 0;
        for (size_t i = 0; i < line.size(); ++i)
        {
            const char c = line[i];
            if (quote)
            {
                if (c == '\\')
                    ++i;
                else if (c == quote)
                    quote = 0;
            }
            else if (c == '"' || c == '\'')
                quote = c;
            else if (c == '{')
                ++depth;
            else if (c == '}' && --depth == 0)
                return;
        }
    }
    reportMalformed(opened, "missing '}' at the end of " + what);
}

/// One link of a handle block as written.
struct HandleLinkText
{
    /// The operator channel, the parameter of a legacy link, or the "{ ... }" form.
    std::string opParm;
    /// The component of a legacy link; -1 for the two-token form.
    int vecIndex = -1;
    std::string gzParm;
};

/// Opens a block: the next line that holds something must start with the token "{".
/// Otherwise the problem is reported, the line is left to the caller and false returned.
bool openBlock(HostPreprocessor &pp, const std::string &what, Location &opened)
{
    std::string line;
    if (!nextContentLine(pp, line))
    {
        reportMalformed(here(pp), "missing '{' after " + what);
        return false;
    }
    std::string token;
    bool quoted = false;
    startLine(pp, line, token, &quoted);
    if (!isWord(token, quoted, "{"))
    {
        reportMalformed(here(pp), "expected '{' after " + what);
        pp.ungetLine(line);
        return false;
    }
    opened = here(pp);
    return true;
}

/// Reads the "{ ... }" operator parameter form after its "{": the text up to the next "}" on
/// the same line, leading blanks dropped and the rest kept. The line after the "}" is read
/// on as tokens.
bool readBracedParm(HostPreprocessor &pp, std::string &op_parm)
{
    const std::string rest = pp.restOfLine();
    size_t begin = 0;
    while (begin < rest.size() && isBlank(rest[begin]))
        ++begin;
    const size_t close = rest.find('}', begin);
    if (close == std::string::npos)
    {
        reportMalformed(here(pp), "missing '}' after '{' in an operator parameter");
        return false;
    }
    op_parm = "{ " + rest.substr(begin, close - begin) + "}";
    pp.ungetLine(rest.substr(close + 1));
    return true;
}

/// Reads a handle block and calls `on_link` with each well-formed link, right after its
/// handle parameter was read (so the reader's line is the link's). Structural problems are
/// reported; a block that is not there is left unread.
template <typename OnLink>
void readHandleBlock(HostPreprocessor &pp, const std::string &what, OnLink &&on_link)
{
    Location opened;
    if (!openBlock(pp, what, opened))
        return;
    std::string token;
    bool quoted = false;
    for (;;)
    {
        if (!nextHandleToken(pp, token, quoted))
            break;
        if (isWord(token, quoted, "}"))
            return;

        HandleLinkText link;
        if (isWord(token, quoted, "{"))
        {
            if (!readBracedParm(pp, link.opParm))
                continue;
        }
        else
            link.opParm = token;

        if (!nextHandleToken(pp, token, quoted))
            break;
        if (isWord(token, quoted, "}"))
        {
            reportMalformed(here(pp), "missing handle parameter after '" + link.opParm + "'");
            return;
        }
        bool bad_index = false;
        if (std::isdigit(static_cast<unsigned char>(token[0])))
        {
            // The legacy form names a parameter and a component instead of a channel.
            if (!parseInt(token, link.vecIndex))
            {
                reportMalformed(here(pp), "bad vector index '" + token + "' for parameter '" +
                                              link.opParm + "'");
                bad_index = true;
            }
            const std::string index = token;
            if (!nextHandleToken(pp, token, quoted))
                break;
            if (isWord(token, quoted, "}"))
            {
                reportMalformed(here(pp), "missing handle parameter after '" + link.opParm + " " +
                                              index + "'");
                return;
            }
        }
        link.gzParm = token;
        if (!bad_index)
            on_link(link);
    }
    reportMalformed(opened, "missing '}' at the end of " + what);
}

/// The fields of a selector block.
struct SelectorText
{
    std::string prompt;
    std::string opParm;
    int opInput = 0;
    int opInputReq = 0;
    std::string primMask;
    int allowDrag = 0;
    std::string menu;
    int astSelAll = 0;
    std::string extraInfo;
};

/// Reads the seven fields of a selector block's second line, whose first token is `first`.
bool readSelectorFields(HostPreprocessor &pp, const std::string &first, SelectorText &fields)
{
    std::string input, required, drag, sel_all;
    fields.opParm = first;
    return pp.getLineToken(input) && parseInt(input, fields.opInput) && pp.getLineToken(required) &&
           parseInt(required, fields.opInputReq) && pp.getLineToken(fields.primMask) &&
           pp.getLineToken(drag) && parseInt(drag, fields.allowDrag) &&
           pp.getLineToken(fields.menu) && pp.getLineToken(sel_all) &&
           parseInt(sel_all, fields.astSelAll);
}

/// Reads a selector block; true when it held every required field. Unexpected lines are
/// reported only when `report` is set (not for a block that is being skipped).
bool readSelectorBlock(HostPreprocessor &pp, const std::string &what, SelectorText &fields,
                       bool report)
{
    Location opened;
    if (!openBlock(pp, what, opened))
        return false;
    int lines = 0;
    bool fields_ok = false;
    std::string line, token;
    for (;;)
    {
        if (!nextContentLine(pp, line))
        {
            reportMalformed(opened, "missing '}' at the end of " + what);
            return false;
        }
        if (firstChar(line) == '}')
            return lines >= 2 && fields_ok;
        startLine(pp, line, token);
        switch (++lines)
        {
        case 1:
            fields.prompt = token;
            break;
        case 2:
            fields_ok = readSelectorFields(pp, token, fields);
            break;
        case 3:
            fields.extraInfo = token;
            break;
        default:
            if (report)
                reportUnexpected(pp, token);
            break;
        }
    }
}

} // namespace

// ---------------------------------------------------------------------------------------
// Reading

namespace
{
const std::vector<std::string> thePreprocessorOptions = {"", "-x", "-P"};
}

void GZ_ResourceManager::registerOpHandleBindings()
{
    std::string path;
    if (!HostReader::findFile("OPbindings", path))
        return;
    HostPreprocessor pp;
    pp.setSearchPath(HostReader::getSearchPath());
    pp.setProblemHandler(reportPreprocessorProblem);
    if (pp.open(path, thePreprocessorOptions))
        loadBindings(pp);
}

void GZ_ResourceManager::registerOpHandleBindingsFromText(const std::string &text,
                                                          const std::string &name)
{
    HostPreprocessor pp;
    pp.setSearchPath(HostReader::getSearchPath());
    pp.setProblemHandler(reportPreprocessorProblem);
    pp.openText(text, name, thePreprocessorOptions);
    loadBindings(pp);
}

void GZ_ResourceManager::loadBindings(HostPreprocessor &pp)
{
    std::string line, name;
    while (nextContentLine(pp, line))
    {
        startLine(pp, line, name);
        // A brace here belongs to no operator (a block whose operator line is missing).
        if (name == "{" || name == "}")
        {
            reportUnexpected(pp, name);
            continue;
        }
        loadOperator(pp, name);
    }
}

void GZ_ResourceManager::loadOperator(HostPreprocessor &pp, const std::string &op_name)
{
    eraseHandleEntry(op_name);
    eraseSelectorEntry(op_name);
    gz_OpHandleEntry &handles = handleEntry(op_name);
    gz_OpSelectorEntry &selectors = selectorEntry(op_name);

    std::string table;
    HostOperator *op = findOperator(op_name.c_str(), &table);
    if (!op)
        printWarning("Warning: Bad operator type when binding handles: %s", op_name.c_str());

    std::string line, keyword, type, description, settings;
    bool quoted = false;
    Location opened;
    if (!nextContentLine(pp, line))
        reportMalformed(here(pp), "missing '{' after " + op_name);
    else if (firstChar(line) != '{')
    {
        reportMalformed(here(pp), "expected '{' after " + op_name);
        pp.ungetLine(line);
    }
    else
    {
        opened = here(pp);
        for (;;)
        {
            if (!nextContentLine(pp, line))
            {
                reportMalformed(opened, "missing '}' at the end of " + op_name);
                break;
            }
            if (firstChar(line) == '}')
                break;
            startLine(pp, line, keyword);
            if (keyword == "bindhandle")
            {
                if (!pp.getLineToken(type) || !pp.getLineToken(description))
                {
                    reportMalformed(here(pp), "bindhandle needs a handle type and a description");
                    skipBlock(pp, opened, op_name);
                    break;
                }
                if (!pp.getLineToken(settings, &quoted) || !quoted)
                {
                    printWarning("Error: Could not load default settings for the %s handle.",
                                 type.c_str());
                    skipBlock(pp, opened, op_name);
                    break;
                }
                const std::string what = "bindhandle " + type;
                const GZ_GZTemplate *gz = getOpHandleLinkTemplate(type.c_str());
                if (!gz)
                {
                    printWarning("Bad handle: %s", type.c_str());
                    readHandleBlock(pp, what, [](const HandleLinkText &) {});
                    continue;
                }
                if (!gz->supportsType(table.c_str()))
                {
                    printWarning("Handle %s does not support %s operators.", type.c_str(),
                                 table.c_str());
                    readHandleBlock(pp, what, [](const HandleLinkText &) {});
                    continue;
                }
                GZ_SettingList defaults;
                defaults.loadFromSettingString(settings.c_str());
                loadHandle(pp, op, handles.append(type, description, std::move(defaults)));
            }
            else if (keyword == "bindselector")
            {
                if (!pp.getLineToken(type) || !pp.getLineToken(description))
                {
                    reportMalformed(here(pp),
                                    "bindselector needs a selector name and a description");
                    skipBlock(pp, opened, op_name);
                    break;
                }
                if (!getSelectorTemplate(type.c_str()))
                {
                    printWarning("Bad selector: %s", type.c_str());
                    SelectorText ignored;
                    readSelectorBlock(pp, "bindselector " + type, ignored, /*report=*/false);
                    continue;
                }
                loadSelector(pp, type, description, selectors);
            }
            else
                reportUnexpected(pp, keyword);
        }
    }

    if (handles.empty())
        eraseHandleEntry(op_name);
    if (selectors.empty())
        eraseSelectorEntry(op_name);
}

void GZ_ResourceManager::loadHandle(HostPreprocessor &pp, HostOperator *op,
                                    GZ_BindingHandleInfo &handle)
{
    const std::string &type = handle.getGZName();
    readHandleBlock(
        pp, "bindhandle " + type,
        [&](const HandleLinkText &link)
        {
            std::string channel = link.opParm;
            if (link.vecIndex >= 0)
            {
                getChannelNameFromParmAndVec(channel, op, link.opParm.c_str(), link.vecIndex);
                if (channel.empty())
                {
                    reportMalformed(here(pp), "parameter '" + link.opParm + "' has no component " +
                                                  std::to_string(link.vecIndex));
                    return;
                }
            }
            if (!isValidGzParmName(type, link.gzParm))
            {
                std::string message = "Bad handle parm found: '" + link.gzParm + "' bound to" +
                                      " operator parameter '" + channel + "'" + " for handle '" +
                                      type + "'";
                if (op)
                    message += " of the operator '" + op->getName() + "'";
                printWarningAt(pp.fileName(), pp.lineNumber(), message);
                return;
            }
            handle.addBinding(channel, link.gzParm);
        });
}

void GZ_ResourceManager::loadSelector(HostPreprocessor &pp, const std::string &name,
                                      const std::string &description, gz_OpSelectorEntry &entry)
{
    SelectorText fields;
    if (!readSelectorBlock(pp, "bindselector " + name, fields, /*report=*/true))
    {
        printWarning("Error binding selector: %s", name.c_str());
        return;
    }
    entry.bind(GZ_BindingSelectorInfo(name, description, fields.prompt, fields.opParm, fields.menu,
                                      fields.primMask, fields.opInput, fields.opInputReq != 0,
                                      fields.allowDrag != 0, fields.astSelAll != 0,
                                      fields.extraInfo));
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
        const GZ_SettingList *settings = item.second.mySettings;
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
            os << "ombind"
               << " -t " << fields[0] << " " << fields[1] << " " << fields[2] << " " << fields[3]
               << "\n";
        }
    }
    return HOST_ERR_NONE;
}
