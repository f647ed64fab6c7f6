// HostScriptPage: reading pages and parameter sections of dialog scripts.
#include "host/HostScriptPage.h"

#include "host/HostDialogStream.h"

HostScriptPage::HostScriptPage() = default;
HostScriptPage::~HostScriptPage() = default;

std::unique_ptr<HostScriptParm> HostScriptPage::createParm(HostScriptParm::Kind kind)
{
    return std::make_unique<HostScriptParm>(kind);
}

std::unique_ptr<HostScriptPage> HostScriptPage::createImportPage()
{
    return std::make_unique<HostScriptPage>();
}

std::unique_ptr<HostScriptPage> HostScriptPage::createFolderPage()
{
    return std::make_unique<HostScriptPage>();
}

void HostScriptPage::addHelpLine(const std::string &line)
{
    if (!myHelp.empty())
        myHelp += '\n';
    myHelp += line;
}

bool HostScriptPage::parseHelp(HostDialogStream &in)
{
    std::string token;
    bool quoted = false;
    if (!in.getToken(token, &quoted) || quoted || token != "{")
    {
        in.error("Expected '{' after 'help'");
        return false;
    }
    while (in.getToken(token, &quoted))
    {
        if (!quoted && token == "}")
            return true;
        addHelpLine(token);
    }
    in.error("Missing '}' at the end of the help block");
    return false;
}

namespace
{
/// Skips what is left of an unknown statement: the rest of its line, and a block that opens
/// there. A "}" is left alone: it closes the enclosing block.
void skipStatement(HostDialogStream &in)
{
    std::string token;
    bool quoted = false;
    while (in.nextOnSameLine() && in.peekToken(token, &quoted))
    {
        if (!quoted && token == "}")
            return;
        in.getToken(token);
        if (!quoted && token == "{")
            in.skipBlock();
    }
}
} // namespace

bool HostScriptPage::parseUnknownToken(HostDialogStream &in, const std::string &token)
{
    in.error("Unknown keyword '" + token + "'");
    skipStatement(in);
    return true;
}

HostScriptParm *HostScriptPage::findParm(const std::string &name) const
{
    for (const auto &p : myParms)
        if (p->myName == name)
            return p.get();
    return nullptr;
}

namespace
{
bool continuesSwitcher(const HostScriptParm &prev, const HostScriptParm &next)
{
    return prev.myKind == next.myKind && !prev.myTabBreak &&
           (next.myKind == HostScriptParm::GROUP_TAB || next.myKind == HostScriptParm::GROUP_RADIO);
}
} // namespace

void HostScriptPage::getSwitcherRange(int i, int &first, int &last) const
{
    first = last = i;
    if (i < 0 || i >= getNumParms() || !myParms[i]->isFolder())
        return;
    while (first > 0 && continuesSwitcher(*myParms[first - 1], *myParms[first]))
        --first;
    while (last + 1 < getNumParms() && continuesSwitcher(*myParms[last], *myParms[last + 1]))
        ++last;
}

int HostScriptPage::getSwitcherFolderCount(int i) const
{
    if (i < 0 || i >= getNumParms() || !myParms[i]->isFolder())
        return 0;
    int first = 0, last = 0;
    getSwitcherRange(i, first, last);
    return last - first + 1;
}

bool HostScriptPage::parsePage(HostDialogStream &in)
{
    std::string token;
    bool quoted = false;
    if (!in.getToken(token, &quoted))
        return false;
    if (quoted || token != "{")
    {
        in.error("Expected '{' at the start of a page");
        return false;
    }
    return parseContents(in, /*braced=*/true, 0);
}

bool HostScriptPage::parseSection(HostDialogStream &in)
{
    const int before = in.getErrorCount();
    parseContents(in, /*braced=*/false, 0);
    return in.getErrorCount() == before;
}

bool HostScriptPage::parseContents(HostDialogStream &in, bool braced, int depth)
{
    std::string token, value;
    bool quoted = false;
    while (in.getToken(token, &quoted))
    {
        HostScriptParm::Kind kind;
        if (quoted)
        {
            if (!parseUnknownToken(in, token))
                return false;
            continue;
        }
        if (token == "}")
        {
            if (braced)
                return true;
            in.error("Unexpected '}'");
        }
        else if (HostScriptParm::kindFromKeyword(token, kind))
        {
            if (!parseBlock(in, kind, depth))
                return false;
        }
        else if (braced && (token == "name" || token == "label"))
        {
            if (in.nextOnSameLine() && in.getToken(value))
            {
                // Operator scripts write their label bare, blanks and all.
                if (token == "label" && in.nextOnSameLine())
                    value += " " + in.getRestOfLine();
                (token == "name" ? myName : myLabel) = value;
            }
            else
                in.error("Expected a value after '" + token + "'");
        }
        else if (braced && token == "help")
            parseHelp(in);
        else if (token == "parmtag")
        {
            HostScriptParm tag;
            tag.parseKeyword(in, token);
            myTags.merge(tag.myParmTags);
        }
        else if (token == "obsoleteparms")
        {
            std::string open;
            if (!in.getToken(open) || open != "{")
                in.error("Expected '{' after 'obsoleteparms'");
            else
            {
                myObsolete = createFolderPage();
                if (!myObsolete->parseContents(in, /*braced=*/true, depth + 1))
                    return false;
            }
        }
        else if (!parseUnknownToken(in, token))
            return false;
    }
    if (braced)
    {
        in.error("Missing '}' at the end of the page");
        return false;
    }
    return true;
}

bool HostScriptPage::parseBlock(HostDialogStream &in, HostScriptParm::Kind kind, int depth)
{
    if (depth >= MAX_DEPTH)
    {
        in.error("Blocks nested too deeply");
        return false;
    }
    std::string token;
    bool quoted = false;
    if (!in.peekToken(token, &quoted) || quoted || token != "{")
    {
        in.error(std::string("Expected '{' after '") + HostScriptParm::keyword(kind) + "'");
        return true;
    }
    in.getToken(token);
    std::unique_ptr<HostScriptParm> parm = createParm(kind);
    parm->myLine = in.getLine();
    if (kind == HostScriptParm::IMPORT)
        parm->myPage = createImportPage();
    else if (kind != HostScriptParm::PARM)
        parm->myPage = createFolderPage();
    const bool ok = parseBlockBody(in, *parm, depth + 1);
    parm->finish(in);
    myParms.push_back(std::move(parm));
    return ok;
}

bool HostScriptPage::parseBlockBody(HostDialogStream &in, HostScriptParm &parm, int depth)
{
    std::string token;
    bool quoted = false;
    while (in.getToken(token, &quoted))
    {
        HostScriptParm::Kind kind;
        if (!quoted && token == "}")
            return true;
        if (!quoted && token == "{")
        {
            in.error("Unexpected '{'");
            in.skipBlock();
        }
        else if (!quoted && parm.myPage && HostScriptParm::kindFromKeyword(token, kind))
        {
            if (!parm.myPage->parseBlock(in, kind, depth))
                return false;
        }
        else if (quoted || !parm.parseKeyword(in, token))
        {
            in.error("Unknown keyword '" + token + "' in a " +
                     HostScriptParm::keyword(parm.myKind) + " block");
            skipStatement(in);
        }
    }
    in.error("Missing '}' at the end of the " + std::string(HostScriptParm::keyword(parm.myKind)) +
             " block '" + parm.myName + "'");
    return false;
}
