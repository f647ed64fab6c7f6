// CheckKinds: the kinds of file gzcheck knows, how it tells them apart and how each is read.
#include "check/CheckKinds.h"

#include "host/HostCommandManager.h"
#include "host/HostDiagnostics.h"
#include "host/HostAssetLibraryFile.h"
#include "host/HostDialogStream.h"
#include "host/HostReader.h"
#include "host/HostScriptPage.h"
#include "host/HostSpareLayout.h"
#include "persistent/GZ_ScriptOperator.h"
#include "persistent/GZ_SpareProperty.h"
#include "resource/GZ_ResourceManager.h"

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <vector>

namespace
{
void checkBindings(const std::string &path, const std::string &text)
{
    if (GZ_ResourceManager *manager = GZgetResourceManager())
        manager->registerOpHandleBindingsFromText(text, path);
}

void checkDialog(const std::string &path, const std::string &text)
{
    HostDialogStream in;
    in.openString(text, path, HostDialogStream::INCLUDES);
    HostScriptPage page;
    if (!page.parseSection(in))
        return; // what stopped it is reported; templates of a broken section say nothing more
    HostSpareLayout layout;
    std::string errors;
    page.buildTemplates(layout, errors);
    // Template problems belong to no line of their own: they name their parameter.
    std::istringstream lines(errors);
    for (std::string line; std::getline(lines, line);)
        if (!line.empty())
            HostDiagnostics::report(HostDiagSeverity::Error, path, 0, line, line);
}

void checkScript(const std::string &path, const std::string &text)
{
    HostExecOptions options;
    options.source = path;
    options.checkOnly = true;
    HostCommandManager::getInstance()->execute(text, options);
}

void checkOperatorScript(const std::string &path, const std::string &text)
{
    // Defined in the scratch session's Sop table, as optypeload does by default, so that its
    // bindings meet the handles and selectors of that network.
    std::string error;
    if (!GZ_ScriptOperator::defineFromText("Sop", text, path, path, error))
        HostDiagnostics::report(HostDiagSeverity::Error, path, 0, error, error);
}

/// Defines one definition's type as libload would; what its script reader reports is moved
/// onto the library's own lines (the script starts at its section's first line), and what
/// belongs to no line of the script lands on the section's (or the definition's) line.
void checkLibraryScript(const std::string &path, const HostAssetDefinition &def)
{
    std::vector<HostDiagnostic> found;
    {
        HostDiagnosticCapture capture;
        std::string error;
        if (!GZ_ScriptOperator::defineFromLibrary(def, path, path, error))
            HostDiagnostics::report(HostDiagSeverity::Error, "", 0, error, error);
        found = capture.diagnostics();
    }
    const int start = def.getSectionLine("DialogScript");
    for (HostDiagnostic d : found)
    {
        d.myFile = path;
        d.myLine = start == 0 ? def.getLine() : d.myLine > 0 ? start + d.myLine - 1 : start - 1;
        HostDiagnostics::report(d);
    }
}

void checkLibrary(const std::string &path, const std::string &text)
{
    std::vector<HostAssetDefinition> definitions;
    std::string error;
    int line = 0;
    if (!HostAssetLibraryFile::parse(text, definitions, error, line))
        HostDiagnostics::report(HostDiagSeverity::Error, path, line, error, error);
    for (const HostAssetDefinition &def : definitions)
        checkLibraryScript(path, def);
}

/// Splits the catalogue's "FILE[LINE]: message" lines about `name` (how the catalogue names
/// the file) back into findings on `path`; lines about its other files are not this file's.
void reportPropertyErrors(const std::string &path, const std::string &name,
                          const std::string &errors)
{
    std::istringstream lines(errors);
    const std::string prefix = name + "[";
    for (std::string line; std::getline(lines, line);)
    {
        if (line.compare(0, prefix.size(), prefix) != 0)
            continue;
        const size_t close = line.find("]: ", prefix.size());
        if (close == std::string::npos)
            continue;
        const int at = std::atoi(line.substr(prefix.size(), close - prefix.size()).c_str());
        const std::string message = line.substr(close + 3);
        const bool warning = message.compare(0, 8, "Warning,") == 0;
        HostDiagnostics::report(warning ? HostDiagSeverity::Warning : HostDiagSeverity::Error,
                                path, at, message, line);
    }
}

/// The name under which the catalogue already lists `path` (a shipped file, found on the
/// search path), or empty when it does not.
std::string catalogueName(const std::string &path)
{
    std::vector<std::string> known;
    GZ_SpareProperty::getClassFiles(known);
    std::error_code ec;
    for (const std::string &file : known)
    {
        std::string found;
        if (HostReader::findFile(file, found) && std::filesystem::equivalent(found, path, ec))
            return file;
    }
    return std::string();
}

void checkProperties(const std::string &path, const std::string &)
{
    // A file the catalogue already lists is read again by a plain rebuild; adding it a second
    // time would only report its classes as duplicates of themselves.
    const std::string name = catalogueName(path);
    std::string errors;
    if (!name.empty())
        GZ_SpareProperty::initialize(errors);
    else
        GZ_SpareProperty::addClassFile(errors, path.c_str(), GZ_SPARE_PROPERTY_NO_PACKAGE);
    reportPropertyErrors(path, name.empty() ? path : name, errors);
}

const CheckKind KINDS[] = {
    {"bindings", checkBindings}, {"dialog", checkDialog}, {"opscript", checkOperatorScript},
    {"props", checkProperties},  {"oplib", checkLibrary},      {"script", checkScript},
};

bool endsWith(const std::string &text, const std::string &end)
{
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// The first word of the text that is not in a comment line.
std::string firstWord(const std::string &text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
    {
        std::istringstream words(line);
        std::string word;
        if (words >> word && word[0] != '#' && word.compare(0, 2, "//") != 0)
            return word;
    }
    return std::string();
}

const CheckKind &kind(const char *name)
{
    return *CheckKinds::find(name);
}
} // namespace

const CheckKind *CheckKinds::find(const std::string &name)
{
    for (const CheckKind &k : KINDS)
        if (name == k.name)
            return &k;
    return nullptr;
}

const CheckKind &CheckKinds::guess(const std::string &path, const std::string &text)
{
    const std::string base = path.substr(path.find_last_of('/') + 1);
    if (base == "OPbindings" || endsWith(base, ".bindings"))
        return kind("bindings");
    if (endsWith(base, ".gzs"))
        return kind("script");
    const std::string word = firstWord(text);
    if (endsWith(base, ".oplib") || word == "gzoplib")
        return kind("oplib");
    if (endsWith(base, ".ds"))
    {
        // Property files and operator scripts are both pages; properties live in their folder.
        if (word != "{")
            return kind("dialog");
        return path.find("properties/") != std::string::npos ? kind("props") : kind("opscript");
    }
    if (word == "{")
        return kind("opscript");
    if (word.find('/') != std::string::npos)
        return kind("bindings");
    HostScriptParm::Kind block;
    return HostScriptParm::kindFromKeyword(word, block) ? kind("dialog") : kind("script");
}

std::string CheckKinds::names()
{
    std::string out;
    for (const CheckKind &k : KINDS)
        out += (out.empty() ? "" : " ") + std::string(k.name);
    return out;
}
