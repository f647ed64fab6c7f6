// gz_ScriptOpPage: reading the operator-level keywords of scripted operator type scripts.
#include "persistent/gz_ScriptOpPage.h"

#include "persistent/GZ_ScriptOperator.h"
#include "resource/GZ_ResourceManager.h"

#include "host/HostCommandManager.h"
#include "host/HostDiagnostics.h"
#include "host/HostDialogStream.h"
#include "host/HostScriptParm.h"

#include <cstdlib>

namespace
{
constexpr int MAX_INPUT_INDEX = 9999;

/// Reads up to `count` arguments of a binding line. Arguments may run over several lines
/// (selector bindings are written on three), so only a brace stops them: it belongs to the
/// enclosing block. True when all were there.
bool readFields(HostDialogStream &in, std::size_t count, std::vector<std::string> &fields)
{
    std::string token;
    bool quoted = false;
    while (fields.size() < count && in.peekToken(token, &quoted))
    {
        if (!quoted && (token == "{" || token == "}"))
            break;
        in.getToken(token);
        fields.push_back(token);
    }
    return fields.size() == count;
}

/// The tokens of one line of text, read as the dialog-script stream reads them.
std::vector<std::string> lineTokens(const std::string &line)
{
    HostDiagnosticCapture quiet;
    HostDialogStream in;
    in.openString(line);
    std::vector<std::string> tokens;
    std::string token;
    while (in.getToken(token))
        tokens.push_back(token);
    return tokens;
}

/// The next raw line of the script when it is line `expected` ("" when that line is blank and
/// the stream is already past it).
bool readRawLine(HostDialogStream &in, int expected, std::string &line, std::string &carry)
{
    if (!carry.empty())
    {
        line.clear();
        return true;
    }
    std::string token;
    bool quoted = false;
    if (!in.peekToken(token, &quoted) || (!quoted && (token == "{" || token == "}")))
        return false;
    in.getToken(token);
    const std::string rest = in.getRestOfLine();
    const std::string text = rest.empty() ? token : token + " " + rest;
    if (in.getLine() == expected)
        line = text;
    else
    {
        line.clear();
        carry = text;
    }
    return true;
}

std::vector<std::string> splitBlanks(const std::string &text)
{
    std::vector<std::string> parts(1);
    for (char c : text)
    {
        if (c == ' ')
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

/// A selector binding: `lead` words, the description to the end of that line, the prompt on
/// the next line and the remaining fields, separated by single blanks, on the third, which
/// is how bindings are written (descriptions and prompts hold blanks, menus may be empty).
/// A binding written by hand with every field a token on the keyword's line reads too.
bool readSelectorFields(HostDialogStream &in, std::size_t lead, std::size_t count,
                        std::vector<std::string> &fields)
{
    const int line = in.getLine();
    const std::string first = in.getRestOfLine();
    std::vector<std::string> tokens = lineTokens(first);
    if (tokens.size() == count)
    {
        fields = tokens;
        return true;
    }
    if (tokens.size() < lead)
        return false;
    std::size_t pos = 0;
    for (std::size_t i = 0; i < lead; ++i)
    {
        const std::size_t start = first.find_first_not_of(" \t", pos);
        pos = first.find_first_of(" \t", start);
        fields.push_back(first.substr(start, pos == std::string::npos ? pos : pos - start));
    }
    const std::size_t start = pos == std::string::npos ? pos : first.find_first_not_of(" \t", pos);
    std::string description = start == std::string::npos ? std::string() : first.substr(start);
    if (!description.empty() && description[0] == '"' && tokens.size() == lead + 1)
        description = tokens[lead];
    fields.push_back(description);
    std::string prompt, rest, carry;
    if (!readRawLine(in, line + 1, prompt, carry))
        return false;
    fields.push_back(prompt);
    if (!readRawLine(in, line + 2, rest, carry))
        return false;
    for (const std::string &part : splitBlanks(carry.empty() ? rest : carry))
        fields.push_back(part);
    return fields.size() == count;
}

/// One argument on the keyword's own line.
bool readLineArg(HostDialogStream &in, std::string &value)
{
    std::string token;
    bool quoted = false;
    if (!in.nextOnSameLine() || !in.peekToken(token, &quoted) ||
        (!quoted && (token == "{" || token == "}")))
        return false;
    return in.getToken(value);
}

bool parseIndex(const std::string &text, long &value)
{
    char *end = nullptr;
    value = std::strtol(text.c_str(), &end, 10);
    return !text.empty() && end && *end == '\0';
}

int leadingInt(const std::string &text)
{
    return std::atoi(text.c_str());
}

int bindHandle(HostOperator *op, const std::vector<std::string> &f)
{
    GZ_ResourceManager *manager = GZgetResourceManager();
    if (!manager)
        return GZ_ResourceManager::BIND_NO_TEMPLATE;
    return manager->bindScriptOp(op, f[1].c_str(), f[2].c_str(), f[0], f[3], f[4].c_str());
}

int bindSelector(HostOperator *op, const std::string &op_parm, const std::string &name,
                 const std::string &description, const std::string &prompt, int input,
                 int input_required, const std::string *rest)
{
    GZ_ResourceManager *manager = GZgetResourceManager();
    if (!manager)
        return 0;
    return manager->bindSelector(op, name.c_str(), description.c_str(), prompt.c_str(),
                                 op_parm.c_str(), input, input_required, rest[0].c_str(),
                                 leadingInt(rest[1]), rest[2].c_str(), leadingInt(rest[3]), "",
                                 /*skip_parm_check=*/true);
}

/// A parameter block of an operator script: it binds handles and selectors to itself.
class gz_ScriptOpParm : public HostScriptParm
{
public:
    gz_ScriptOpParm(Kind kind, GZ_ScriptOperator *op, bool check_only)
        : HostScriptParm(kind), myOperator(op), myCheckOnly(check_only)
    {
    }

    bool parseKeyword(HostDialogStream &in, const std::string &keyword) override
    {
        if ((!myOperator && !myCheckOnly) || (keyword != "bindhandle" && keyword != "bindselector"))
            return HostScriptParm::parseKeyword(in, keyword);
        std::vector<std::string> f;
        if (keyword == "bindhandle")
        {
            if (!readFields(in, 5, f))
                in.error("missing parameters in call to bindhandle");
            else if (myOperator && bindHandle(myOperator, f) != GZ_ResourceManager::BIND_OK)
                in.error("error binding handle");
            return true;
        }
        if (!readSelectorFields(in, 1, 9, f))
            in.error("missing parameters in call to bindselector");
        else if (myName.empty())
            in.error("selector binding specified before name");
        else if (!myOperator)
            return true;
        else if (bindSelector(myOperator, myName, f[0], f[1], f[2], leadingInt(f[3]),
                              leadingInt(f[4]), &f[5]) != GZ_ResourceManager::BIND_OK)
            in.error("error binding selector");
        return true;
    }

private:
    GZ_ScriptOperator *myOperator;
    bool myCheckOnly;
};
} // namespace

gz_ScriptOpPage::gz_ScriptOpPage(GZ_ScriptOperator *op, int min_inputs, int max_inputs,
                                 bool check_only)
    : myMinInputs(min_inputs), myMaxInputs(max_inputs), myOperator(op),
      myCheckOnly(check_only && !op)
{
}

std::unique_ptr<HostScriptParm> gz_ScriptOpPage::createParm(HostScriptParm::Kind kind)
{
    return std::make_unique<gz_ScriptOpParm>(kind, myOperator, myCheckOnly);
}

std::unique_ptr<HostScriptPage> gz_ScriptOpPage::createImportPage()
{
    return std::make_unique<gz_ScriptOpPage>(myOperator, 0, 1, myCheckOnly);
}

std::unique_ptr<HostScriptPage> gz_ScriptOpPage::createFolderPage()
{
    return std::make_unique<gz_ScriptOpPage>(myOperator, 0, 1, myCheckOnly);
}

void gz_ScriptOpPage::addHelpLine(const std::string &line)
{
    HostScriptPage::addHelpLine(line);
    if (!myOperator || !myOperator->isScriptedDefinition())
        return;
    // Help is kept with real tabs; scripts written by hand spell them "\t".
    std::string help = myOperator->getHelp();
    if (!help.empty())
        help += '\n';
    for (std::size_t i = 0; i < line.size(); ++i)
    {
        if (line[i] == '\\' && i + 1 < line.size() && line[i + 1] == 't')
        {
            help += '\t';
            ++i;
        }
        else
            help += line[i];
    }
    myOperator->setHelp(help);
}

bool gz_ScriptOpPage::readInputText(HostDialogStream &in, std::vector<std::string> &texts)
{
    std::string index_text, text;
    long index = 0;
    if (!readLineArg(in, index_text) || !parseIndex(index_text, index))
    {
        in.error("Expected input index value");
        return false;
    }
    if (!readLineArg(in, text))
    {
        in.error("Expected input name or label");
        return false;
    }
    // Labels are written bare to the end of their line.
    if (in.nextOnSameLine())
        text += " " + in.getRestOfLine();
    if (index < 1 || index > MAX_INPUT_INDEX)
    {
        in.error("Input index out of range");
        return false;
    }
    if (static_cast<long>(texts.size()) < index)
        texts.resize(index);
    texts[index - 1] = text;
    return true;
}

void gz_ScriptOpPage::readLegacyMap(HostDialogStream &in)
{
    std::string token;
    bool quoted = false;
    if (!in.getToken(token, &quoted) || quoted || token != "{")
    {
        in.error("Expecting open brace for legacy input block");
        return;
    }
    std::string map;
    bool closed = false;
    while (in.getToken(token, &quoted))
    {
        if (!quoted && token == "}")
        {
            closed = true;
            break;
        }
        if (!map.empty())
            map += ' ';
        map += HostCommandManager::protectString(token);
    }
    if (!closed)
        in.error("Expecting close brace for legacy input block");
    else if (!myOperator && !myCheckOnly)
        in.error("Unable to set legacy inputs without an operator");
    else if (!myOperator)
        return;
    else
        myOperator->setLegacyInputMap(map);
}

void gz_ScriptOpPage::readUnit(HostDialogStream &in, const std::string &keyword, bool &has,
                               double &value)
{
    std::string text;
    char *end = nullptr;
    if (readLineArg(in, text))
    {
        const double v = std::strtod(text.c_str(), &end);
        if (end && *end == '\0' && !text.empty())
        {
            has = true;
            value = v;
            return;
        }
    }
    in.error("Expected a number after '" + keyword + "'");
}

void gz_ScriptOpPage::readBindHandle(HostDialogStream &in)
{
    std::vector<std::string> f;
    if (!readFields(in, 5, f))
    {
        in.error("missing parameters in call to bindhandle");
        return;
    }
    if (!myOperator)
    {
        if (!myCheckOnly)
            in.error("unable to bind a handle without an operator");
        return;
    }
    const int result = bindHandle(myOperator, f);
    if (result == GZ_ResourceManager::BIND_NO_TEMPLATE)
        in.error("error binding handle " + f[1] + " because it doesn't exist.");
    else if (result == GZ_ResourceManager::BIND_EXISTS)
        in.error("error binding handle " + f[1] + " because its bindings already exist.");
    else if (result != GZ_ResourceManager::BIND_OK)
        in.error("error binding handle");
}

void gz_ScriptOpPage::readBindSelector(HostDialogStream &in, bool reserved)
{
    std::vector<std::string> f;
    if (!readSelectorFields(in, reserved ? 2 : 1, reserved ? 10 : 7, f))
    {
        in.error(reserved ? "missing parameters in call to bindselectorreserved"
                          : "missing parameters in call to bindselector");
        return;
    }
    if (!myOperator)
    {
        if (!myCheckOnly)
            in.error("unable to bind a selector without an operator");
        return;
    }
    const int result =
        reserved ? bindSelector(myOperator, f[0], f[1], f[2], f[3], leadingInt(f[4]),
                                leadingInt(f[5]), &f[6])
                 : bindSelector(myOperator, "", f[0], f[1], f[2], -1, 1, &f[3]);
    if (result != GZ_ResourceManager::BIND_OK)
        in.error("error binding selector");
}

bool gz_ScriptOpPage::parseUnknownToken(HostDialogStream &in, const std::string &token)
{
    if (myOperator && myOperator->isScriptedDefinition() &&
        myOperator->parseUnknownToken(in, token))
        return true;
    std::string value;
    if (token == "mininput" || token == "min_input" || token == "maxinput" ||
        token == "max_input")
    {
        const bool is_min = token[1] == 'i';
        if (readLineArg(in, value))
            (is_min ? myMinInputs : myMaxInputs) = leadingInt(value);
        else
            in.error(is_min ? "Expected minimum input value" : "Expected maximum input value");
    }
    else if (token == "script")
    {
        if (readLineArg(in, value))
            myScriptName = value;
        else
            in.error("Expected script name");
    }
    else if (token == "inputname")
        readInputText(in, myInputNames);
    else if (token == "inputlabel")
        readInputText(in, myInputLabels);
    else if (token == "outputlabel")
        readInputText(in, myOutputLabels);
    else if (token == "inputlegacymap")
        readLegacyMap(in);
    else if (token == "unitlength")
        readUnit(in, token, myHasUnitLength, myUnitLength);
    else if (token == "unitmass")
        readUnit(in, token, myHasUnitMass, myUnitMass);
    else if (token == "bindhandle" || token == "bindhandlereserved")
        readBindHandle(in);
    else if (token == "bindselector" || token == "bindselectorreserved")
        readBindSelector(in, token == "bindselectorreserved");
    else
        return HostScriptPage::parseUnknownToken(in, token);
    return true;
}
