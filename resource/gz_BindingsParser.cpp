// gz_BindingsParser: the bindings file's grammar, read into records.
#include "resource/gz_BindingsParser.h"

#include "host/HostPreprocessor.h"
#include "host/HostText.h"

#include <cctype>
#include <climits>

namespace
{

const char theParseError[] = "Error parsing OPbindings: ";

/// The first character of a line that is not blank (the line must hold one).
char firstChar(const std::string &line)
{
    for (char c : line)
        if (!HostText::isBlank(c))
            return c;
    return ' ';
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

} // namespace

void gz_BindingsParser::read(HostPreprocessor &pp, gz_BindingsDocument &document)
{
    gz_BindingsParser parser(pp, document);
    pp.setProblemHandler(
        [&parser](const std::string &file, int line, const std::string &message)
        {
            // Worded as the preprocessor's in-band lines of earlier versions were: the blank
            // after the colon is the one their wording began with.
            const std::string located =
                file + "[" + std::to_string(line) + "]: " + HostDiagnostics::upToNul(message);
            parser.problem(Location{file, line}, message, theParseError + (" " + located));
        });
    parser.readFile();
    pp.setProblemHandler(nullptr);
}

// ---------------------------------------------------------------------------------------
// Records and problems

gz_BindingsParser::Location gz_BindingsParser::here() const
{
    return Location{myPP.fileName(), myPP.lineNumber()};
}

gz_BindingsRecord &gz_BindingsParser::add(gz_BindingsRecord::Kind kind)
{
    return add(kind, myPP.fileName(), myPP.lineNumber());
}

gz_BindingsRecord &gz_BindingsParser::add(gz_BindingsRecord::Kind kind, const std::string &file,
                                          int line)
{
    myDocument.records.emplace_back();
    gz_BindingsRecord &record = myDocument.records.back();
    record.kind = kind;
    record.fileIndex = fileIndex(file);
    record.line = line;
    return record;
}

int gz_BindingsParser::fileIndex(const std::string &file)
{
    // Files change only at include boundaries: the last one is nearly always the one.
    std::vector<std::string> &files = myDocument.files;
    for (size_t i = files.size(); i-- > 0;)
    {
        if (files[i] == file)
            return static_cast<int>(i);
    }
    files.push_back(file);
    return static_cast<int>(files.size() - 1);
}

void gz_BindingsParser::problem(const Location &where, const std::string &message,
                                const std::string &text, bool only_for_known_selector)
{
    HostDiagnostic diagnostic;
    diagnostic.mySeverity = HostDiagSeverity::Error;
    diagnostic.myFile = where.file;
    diagnostic.myLine = where.line;
    diagnostic.myMessage = message;
    diagnostic.myText = text;
    myDocument.problems.push_back(std::move(diagnostic));
    gz_BindingsRecord &record = add(gz_BindingsRecord::PROBLEM, where.file, where.line);
    record.detail = static_cast<int>(myDocument.problems.size() - 1);
    record.onlyForKnownSelector = only_for_known_selector;
}

void gz_BindingsParser::malformed(const Location &where, const std::string &what)
{
    // Words from a damaged file are shown as the C strings they always were printed as.
    const std::string message = theParseError + HostDiagnostics::upToNul(what);
    problem(where, message, where.file + "[" + std::to_string(where.line) + "] " + message);
}

void gz_BindingsParser::unexpected(const std::string &word, bool only_for_known_selector)
{
    const Location where = here();
    const std::string message = "Unexpected input: '" + HostDiagnostics::upToNul(word) + "'";
    problem(where, message, where.file + "[" + std::to_string(where.line) + "] " + message,
            only_for_known_selector);
}

// ---------------------------------------------------------------------------------------
// Lines and tokens

/// The next line that is neither blank nor a '#' comment line.
bool gz_BindingsParser::nextContentLine(std::string &line)
{
    while (myPP.getLine(line))
    {
        if (!HostText::isBlankLine(line) && firstChar(line) != '#')
            return true;
    }
    return false;
}

/// Makes `line` (not blank) the line that tokens are read from, and reads its first token.
void gz_BindingsParser::startLine(const std::string &line, std::string &token, bool *quoted)
{
    myPP.ungetLine(line);
    myPP.getToken(token, quoted);
}

/// The next token, going on to later lines when the current one is used up.
bool gz_BindingsParser::nextToken(std::string &token, bool &quoted)
{
    if (myPP.getLineToken(token, &quoted))
        return true;
    std::string line;
    while (myPP.getLine(line))
    {
        if (HostText::isBlankLine(line))
            continue;
        startLine(line, token, &quoted);
        return true;
    }
    return false;
}

/// The next token of a handle block; tokens starting with '#' are comments there.
bool gz_BindingsParser::nextHandleToken(std::string &token, bool &quoted)
{
    while (nextToken(token, quoted))
    {
        if (quoted || token.empty() || token[0] != '#')
            return true;
    }
    return false;
}

// ---------------------------------------------------------------------------------------
// Blocks

/// Skips what is left of a block whose opening brace has been read, up to the line holding
/// the brace that closes it (braces inside quoted strings do not count).
void gz_BindingsParser::skipBlock(const Location &opened, const std::string &what)
{
    int depth = 1;
    std::string line;
    while (myPP.getLine(line))
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
    malformed(opened, "missing '}' at the end of " + what);
}

/// Opens a block: the next line that holds something must start with the token "{".
/// Otherwise the problem is recorded, the line is left to the caller and false returned.
bool gz_BindingsParser::openBlock(const std::string &what, Location &opened)
{
    std::string line;
    if (!nextContentLine(line))
    {
        malformed(here(), "missing '{' after " + what);
        return false;
    }
    std::string token;
    bool quoted = false;
    startLine(line, token, &quoted);
    if (!isWord(token, quoted, "{"))
    {
        malformed(here(), "expected '{' after " + what);
        myPP.ungetLine(line);
        return false;
    }
    opened = here();
    return true;
}

/// Reads the "{ ... }" operator parameter form after its "{": the text up to the next "}" on
/// the same line, leading blanks dropped and the rest kept. The line after the "}" is read
/// on as tokens.
bool gz_BindingsParser::readBracedParm(std::string &op_parm)
{
    const std::string rest = myPP.restOfLine();
    size_t begin = 0;
    while (begin < rest.size() && HostText::isBlank(rest[begin]))
        ++begin;
    const size_t close = rest.find('}', begin);
    if (close == std::string::npos)
    {
        malformed(here(), "missing '}' after '{' in an operator parameter");
        return false;
    }
    op_parm = "{ " + rest.substr(begin, close - begin) + "}";
    myPP.ungetLine(rest.substr(close + 1));
    return true;
}

/// Reads a handle block into LINK records, each right after its handle parameter was read
/// (so the record's line is the link's). A block that is not there is left unread.
void gz_BindingsParser::readHandleBlock(const std::string &what)
{
    Location opened;
    if (!openBlock(what, opened))
        return;
    std::string token;
    bool quoted = false;
    for (;;)
    {
        if (!nextHandleToken(token, quoted))
            break;
        if (isWord(token, quoted, "}"))
            return;

        std::string op_parm;
        int vec_index = -1;
        if (isWord(token, quoted, "{"))
        {
            if (!readBracedParm(op_parm))
                continue;
        }
        else
            op_parm = token;

        if (!nextHandleToken(token, quoted))
            break;
        if (isWord(token, quoted, "}"))
        {
            malformed(here(), "missing handle parameter after '" + op_parm + "'");
            return;
        }
        bool bad_index = false;
        if (std::isdigit(static_cast<unsigned char>(token[0])))
        {
            // The legacy form names a parameter and a component instead of a channel.
            if (!parseInt(token, vec_index))
            {
                malformed(here(),
                          "bad vector index '" + token + "' for parameter '" + op_parm + "'");
                bad_index = true;
            }
            const std::string index = token;
            if (!nextHandleToken(token, quoted))
                break;
            if (isWord(token, quoted, "}"))
            {
                malformed(here(), "missing handle parameter after '" + op_parm + " " + index + "'");
                return;
            }
        }
        if (bad_index)
            continue;
        gz_BindingsRecord &link = add(gz_BindingsRecord::LINK);
        link.text = op_parm;
        link.vecIndex = vec_index;
        link.name = token;
    }
    malformed(opened, "missing '}' at the end of " + what);
}

/// Reads the seven fields of a selector block's second line, whose first token is `first`.
bool gz_BindingsParser::readSelectorFields(const std::string &first,
                                           gz_BindingsSelectorFields &fields)
{
    std::string input, required, drag, sel_all;
    fields.opParm = first;
    return myPP.getLineToken(input) && parseInt(input, fields.opInput) &&
           myPP.getLineToken(required) && parseInt(required, fields.opInputReq) &&
           myPP.getLineToken(fields.primMask) && myPP.getLineToken(drag) &&
           parseInt(drag, fields.allowDrag) && myPP.getLineToken(fields.menu) &&
           myPP.getLineToken(sel_all) && parseInt(sel_all, fields.astSelAll);
}

/// Reads a selector block into `end`, complete when the block held every required
/// field. Lines past the optional third are recorded as problems of a known selector only.
void gz_BindingsParser::readSelectorBlock(const std::string &what, gz_BindingsSelectorFields &end)
{
    Location opened;
    if (!openBlock(what, opened))
        return;
    int lines = 0;
    bool fields_ok = false;
    std::string line, token;
    for (;;)
    {
        if (!nextContentLine(line))
        {
            malformed(opened, "missing '}' at the end of " + what);
            return;
        }
        if (firstChar(line) == '}')
        {
            end.complete = lines >= 2 && fields_ok;
            return;
        }
        startLine(line, token);
        switch (++lines)
        {
        case 1:
            end.prompt = token;
            break;
        case 2:
            fields_ok = readSelectorFields(token, end);
            break;
        case 3:
            end.extraInfo = token;
            break;
        default:
            unexpected(token, /*only_for_known_selector=*/true);
            break;
        }
    }
}

// ---------------------------------------------------------------------------------------
// Entries and operators

/// Reads a bindhandle entry after its keyword; false when the rest of the operator block
/// was skipped.
bool gz_BindingsParser::readHandleEntry(const Location &opened, const std::string &op_name)
{
    std::string type, description, settings;
    bool quoted = false;
    if (!myPP.getLineToken(type) || !myPP.getLineToken(description))
    {
        malformed(here(), "bindhandle needs a handle type and a description");
        skipBlock(opened, op_name);
        return false;
    }
    if (!myPP.getLineToken(settings, &quoted) || !quoted)
    {
        add(gz_BindingsRecord::HANDLE_WITHOUT_SETTINGS).type = type;
        skipBlock(opened, op_name);
        return false;
    }
    gz_BindingsRecord &handle = add(gz_BindingsRecord::HANDLE);
    handle.type = type;
    handle.description = description;
    handle.text = settings;
    readHandleBlock("bindhandle " + type);
    return true;
}

/// Reads a bindselector entry after its keyword; false when the rest of the operator block
/// was skipped.
bool gz_BindingsParser::readSelectorEntry(const Location &opened, const std::string &op_name)
{
    std::string type, description;
    if (!myPP.getLineToken(type) || !myPP.getLineToken(description))
    {
        malformed(here(), "bindselector needs a selector name and a description");
        skipBlock(opened, op_name);
        return false;
    }
    gz_BindingsRecord &selector = add(gz_BindingsRecord::SELECTOR);
    selector.type = type;
    selector.description = description;
    gz_BindingsSelectorFields fields;
    readSelectorBlock("bindselector " + type, fields);
    myDocument.selectors.push_back(std::move(fields));
    add(gz_BindingsRecord::SELECTOR_END).detail = static_cast<int>(myDocument.selectors.size() - 1);
    return true;
}

void gz_BindingsParser::readOperator(const std::string &name)
{
    add(gz_BindingsRecord::OPERATOR).name = name;
    std::string line, keyword;
    if (!nextContentLine(line))
    {
        malformed(here(), "missing '{' after " + name);
        return;
    }
    if (firstChar(line) != '{')
    {
        malformed(here(), "expected '{' after " + name);
        myPP.ungetLine(line);
        return;
    }
    const Location opened = here();
    for (;;)
    {
        if (!nextContentLine(line))
        {
            malformed(opened, "missing '}' at the end of " + name);
            return;
        }
        if (firstChar(line) == '}')
            return;
        startLine(line, keyword);
        if (keyword == "bindhandle")
        {
            if (!readHandleEntry(opened, name))
                return;
        }
        else if (keyword == "bindselector")
        {
            if (!readSelectorEntry(opened, name))
                return;
        }
        else
            unexpected(keyword);
    }
}

void gz_BindingsParser::readFile()
{
    std::string line, name;
    while (nextContentLine(line))
    {
        startLine(line, name);
        // A brace here belongs to no operator (a block whose operator line is missing).
        if (name == "{" || name == "}")
        {
            unexpected(name);
            continue;
        }
        readOperator(name);
    }
}
