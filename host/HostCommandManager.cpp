// HostCommandManager: command table, option parsing and execution of command text.
#include "host/HostCommandManager.h"

#include "host/HostCommandParser.h"
#include "host/HostDiagnostics.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <sstream>
#include <streambuf>

namespace
{
// Deep enough for any honest script; shallow enough that a file sourcing itself stops
// long before the stack does.
constexpr int theMaxDepth = 64;

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Accepts and discards everything, so a stream over it stays good.
class gz_NullBuffer : public std::streambuf
{
protected:
    int overflow(int c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char *, std::streamsize n) override { return n; }
};

gz_NullBuffer theNullBuffer;

/// Restores the current streams and the nesting depth when an execution ends.
class gz_ExecScope
{
public:
    gz_ExecScope(std::ostream *&out, std::ostream *&err, int &depth)
        : myOutRef(out), myErrRef(err), myDepthRef(depth), myOut(out), myErr(err)
    {
        ++myDepthRef;
    }
    ~gz_ExecScope()
    {
        myOutRef = myOut;
        myErrRef = myErr;
        --myDepthRef;
    }
    gz_ExecScope(const gz_ExecScope &) = delete;
    gz_ExecScope &operator=(const gz_ExecScope &) = delete;

private:
    std::ostream *&myOutRef;
    std::ostream *&myErrRef;
    int &myDepthRef;
    std::ostream *myOut;
    std::ostream *myErr;
};

bool isBlankText(const std::string &text)
{
    return text.find_first_not_of(" \t\r\n\f\v") == std::string::npos;
}
} // namespace

HostCommandManager::HostCommandManager()
    : myDefaultOut(&std::cout), myDefaultErr(&std::cerr), myCurrentOut(&std::cout),
      myCurrentErr(&std::cerr), myNullStream(std::make_unique<std::ostream>(&theNullBuffer))
{
}

HostCommandManager::~HostCommandManager() = default;

HostCommandManager *HostCommandManager::getInstance()
{
    static HostCommandManager *theInstance = new HostCommandManager;
    return theInstance;
}

bool HostCommandManager::parseOptionString(const char *options, std::map<char, int> &counts)
{
    counts.clear();
    if (!options)
        return true;
    for (const char *p = options; *p;)
    {
        char letter = *p++;
        if (!isLetter(letter) || counts.count(letter))
            return false;
        int values = 0;
        while (*p == ':')
        {
            ++values;
            ++p;
        }
        counts[letter] = values;
    }
    return true;
}

std::string HostCommandManager::makeUsage(const std::string &name, const std::string &options)
{
    std::map<char, int> counts;
    std::string usage = name;
    if (!parseOptionString(options.c_str(), counts))
        return usage;
    for (char letter : options)
    {
        if (letter == ':')
            continue;
        usage += " [-";
        usage += letter;
        int values = counts[letter];
        for (int i = 0; i < values; ++i)
            usage += values == 1 ? " VALUE" : " VALUE" + std::to_string(i + 1);
        usage += "]";
    }
    return usage + " [ARGS...]";
}

bool HostCommandManager::installCommand(const char *name, const char *options,
                                        HostCommandCallback callback, bool allowed_while_loading,
                                        const char *usage)
{
    if (!name || !*name || !callback || myCommands.count(name))
        return false;
    auto command = std::make_shared<Command>();
    if (!parseOptionString(options, command->valueCounts))
        return false;
    command->options = options ? options : "";
    command->callback = std::move(callback);
    command->allowedWhileLoading = allowed_while_loading;
    command->usage = usage ? usage : makeUsage(name, command->options);
    myCommands.emplace(name, std::move(command));
    return true;
}

bool HostCommandManager::setArgumentCounts(const std::string &name, const HostArgCounts &counts)
{
    auto it = myCommands.find(name);
    if (it == myCommands.end())
        return false;
    it->second->counts = counts;
    return true;
}

bool HostCommandManager::uninstallCommand(const std::string &name)
{
    return myCommands.erase(name) > 0;
}

bool HostCommandManager::isInstalled(const std::string &name) const
{
    return myCommands.count(name) > 0;
}

bool HostCommandManager::setUsage(const std::string &name, const std::string &usage)
{
    auto it = myCommands.find(name);
    if (it == myCommands.end())
        return false;
    it->second->usage = usage;
    return true;
}

std::string HostCommandManager::usage(const std::string &name) const
{
    auto it = myCommands.find(name);
    return it == myCommands.end() ? std::string() : it->second->usage;
}

bool HostCommandManager::setHelp(const std::string &name, const std::string &summary,
                                 const std::string &option_help)
{
    auto it = myCommands.find(name);
    if (it == myCommands.end())
        return false;
    it->second->summary = summary;
    it->second->optionHelp = option_help;
    return true;
}

std::string HostCommandManager::summary(const std::string &name) const
{
    auto it = myCommands.find(name);
    return it == myCommands.end() ? std::string() : it->second->summary;
}

std::string HostCommandManager::optionHelp(const std::string &name) const
{
    auto it = myCommands.find(name);
    return it == myCommands.end() ? std::string() : it->second->optionHelp;
}

std::string HostCommandManager::optionString(const std::string &name) const
{
    auto it = myCommands.find(name);
    return it == myCommands.end() ? std::string() : it->second->options;
}

bool HostCommandManager::allowedWhileLoading(const std::string &name) const
{
    auto it = myCommands.find(name);
    return it != myCommands.end() && it->second->allowedWhileLoading;
}

HostCommandCallback HostCommandManager::handler(const std::string &name) const
{
    auto it = myCommands.find(name);
    return it == myCommands.end() ? HostCommandCallback() : it->second->callback;
}

std::vector<std::string> HostCommandManager::commandNames() const
{
    std::vector<std::string> names;
    names.reserve(myCommands.size());
    for (const auto &entry : myCommands)
        names.push_back(entry.first);
    return names;
}

void HostCommandManager::setStreams(std::ostream *out, std::ostream *err)
{
    myDefaultOut = out ? out : &std::cout;
    myDefaultErr = err ? err : &std::cerr;
    if (myDepth == 0)
    {
        myCurrentOut = myDefaultOut;
        myCurrentErr = myDefaultErr;
    }
}

void HostCommandManager::reportAt(const HostExecOptions &options, int line,
                                  const std::string &message) const
{
    const std::string &source = options.source;
    if (options.checkOnly)
    {
        HostDiagnostics::report(
            HostDiagSeverity::Error, source, line, message,
            source.empty() ? message : source + ":" + std::to_string(line) + ": " + message);
        return;
    }
    if (!source.empty())
        *myCurrentErr << source << ":" << line << ": ";
    *myCurrentErr << message << "\n";
}

bool HostCommandManager::execute(const std::string &text, bool add_to_history, bool show_output)
{
    HostExecOptions options;
    options.history = add_to_history;
    options.output = show_output;
    return execute(text, options);
}

bool HostCommandManager::execute(const std::string &text, const HostExecOptions &options)
{
    if (myDepth == 0)
    {
        myCurrentOut = myDefaultOut;
        myCurrentErr = myDefaultErr;
    }
    if (myDepth >= theMaxDepth)
    {
        reportAt(options, options.firstLine, "commands nested too deeply");
        ++myFailedLines;
        return false;
    }
    gz_ExecScope scope(myCurrentOut, myCurrentErr, myDepth);
    if (options.out)
        myCurrentOut = options.out;
    if (options.err)
        myCurrentErr = options.err;
    if (!options.output)
        myCurrentOut = myNullStream.get();
    if (!options.errors)
        myCurrentErr = myNullStream.get();

    if (options.history && !isBlankText(text))
    {
        std::string line = text;
        while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
            line.pop_back();
        myHistory.push_back(line);
    }

    HostCommandParser parser(text, options.firstLine,
                             [this](const std::string &name) { return variable(name); });
    HostParsedCommand cmd;
    bool all_ran = true;
    while (!myExitRequested && parser.next(cmd))
    {
        if (!runCommand(cmd, options))
        {
            all_ran = false;
            if (options.errors)
                ++myFailedLines;
        }
    }
    return all_ran;
}

bool HostCommandManager::runCommand(const HostParsedCommand &cmd, const HostExecOptions &options)
{
    if (!cmd.error.empty())
    {
        reportAt(options, cmd.line, cmd.error);
        return false;
    }
    const std::string &name = cmd.words[0].text;
    auto it = myCommands.find(name);
    if (it == myCommands.end())
    {
        reportAt(options, cmd.line, "Unknown command: " + HostCommandParser::protect(name));
        return false;
    }
    // Held so that a handler may uninstall or replace its own command (a copy of the whole
    // entry, help texts and all, cost more than most commands).
    const std::shared_ptr<const Command> held = it->second;
    const Command &command = *held;
    if (myLoading && !command.allowedWhileLoading)
    {
        reportAt(options, cmd.line, name + ": not allowed while a scene is loading");
        return false;
    }

    const auto &words = cmd.words;
    // Sized once: a command's lists are built and dropped for every line of every script.
    std::vector<std::string> positional;
    positional.reserve(words.size());
    positional.push_back(name);
    std::vector<std::pair<char, std::vector<std::string>>> given;
    size_t i = 1;
    for (; i < words.size(); ++i)
    {
        const HostCommandWord &word = words[i];
        if (word.quoted || word.text.size() < 2 || word.text[0] != '-')
            break;
        if (word.text == "--")
        {
            ++i;
            break;
        }
        if (!isLetter(word.text[1]))
            break;
        for (size_t k = 1; k < word.text.size(); ++k)
        {
            char letter = word.text[k];
            auto count = command.valueCounts.find(letter);
            if (count == command.valueCounts.end())
            {
                reportAt(options, cmd.line, name + ": unknown option -" + std::string(1, letter));
                reportUsage(options, command);
                return false;
            }
            if (given.empty())
                given.reserve(4);
            std::vector<std::string> values;
            if (count->second > 0)
            {
                values.reserve(static_cast<size_t>(count->second));
                if (k + 1 < word.text.size())
                    values.push_back(word.text.substr(k + 1));
                while (static_cast<int>(values.size()) < count->second && i + 1 < words.size())
                    values.push_back(words[++i].text);
                if (static_cast<int>(values.size()) < count->second)
                {
                    std::string needs =
                        count->second == 1 ? "a value" : std::to_string(count->second) + " values";
                    reportAt(options, cmd.line,
                             name + ": option -" + std::string(1, letter) + " needs " + needs);
                    reportUsage(options, command);
                    return false;
                }
                given.emplace_back(letter, std::move(values));
                break;
            }
            given.emplace_back(letter, std::move(values));
        }
    }
    for (; i < words.size(); ++i)
        positional.push_back(words[i].text);
    if (options.checkOnly)
    {
        const char letter = command.counts.option;
        const bool option_given = letter != 0 && std::any_of(given.begin(), given.end(),
                                                             [letter](const auto &option)
                                                             { return option.first == letter; });
        return checkCount(options, cmd.line, name, command, static_cast<int>(positional.size()),
                          option_given);
    }

    callHandler(name, command.callback, std::move(positional), options, cmd.line,
                [&](HostCommandArgs &args)
                {
                    args.reserveOptions(given.size());
                    for (auto &option : given)
                        args.setOption(option.first, std::move(option.second));
                    args.setUsage(command.usage);
                });
    return true;
}

void HostCommandManager::reportUsage(const HostExecOptions &options, const Command &command) const
{
    if (!options.checkOnly)
        *myCurrentErr << "Usage: " << command.usage << "\n";
}

bool HostCommandManager::checkCount(const HostExecOptions &options, int line,
                                    const std::string &name, const Command &command, int argc,
                                    bool count_option) const
{
    if (command.counts.allows(argc, count_option))
        return true;
    reportAt(options, line, name + ": wrong number of arguments");
    return false;
}

void HostCommandManager::callHandler(const std::string &name, const HostCommandCallback &callback,
                                     std::vector<std::string> positional,
                                     const HostExecOptions &options, int line,
                                     const std::function<void(HostCommandArgs &)> &prepare)
{
    const bool locate = options.locateCommandErrors && !options.source.empty() &&
                        myCurrentErr != myNullStream.get();
    // Made only when needed: a string stream costs more to make than many commands take.
    std::optional<std::ostringstream> located;
    if (locate)
        located.emplace();
    HostCommandArgs args(std::move(positional), *myCurrentOut,
                         locate ? static_cast<std::ostream &>(*located) : *myCurrentErr);
    prepare(args);
    try
    {
        callback(args);
    }
    catch (const std::exception &e)
    {
        // A handler should never throw; if one does, the script must still go on.
        args.err() << name << ": " << e.what() << "\n";
    }
    if (!locate)
        return;
    const std::string text = located->str();
    for (size_t start = 0; start < text.size();)
    {
        size_t end = text.find('\n', start);
        end = end == std::string::npos ? text.size() : end + 1;
        *myCurrentErr << options.source << ":" << line << ": ";
        myCurrentErr->write(text.data() + start, static_cast<std::streamsize>(end - start));
        start = end;
    }
}

void HostCommandManager::setVariable(const std::string &name, const std::string &value)
{
    myVariables[name] = value;
}

bool HostCommandManager::unsetVariable(const std::string &name)
{
    return myVariables.erase(name) > 0;
}

const std::string *HostCommandManager::variable(const std::string &name) const
{
    auto it = myVariables.find(name);
    return it == myVariables.end() ? nullptr : &it->second;
}

std::string HostCommandManager::expandVariables(const std::string &text) const
{
    std::string from_environment;
    auto lookup = [this, &from_environment](const std::string &name) -> const std::string *
    {
        if (const std::string *value = variable(name))
            return value;
        const char *env = std::getenv(name.c_str());
        if (!env)
            return nullptr;
        from_environment = env;
        return &from_environment;
    };
    return HostCommandParser::expandVariables(text, lookup);
}

bool HostCommandManager::isValidVariableName(const std::string &name)
{
    if (name.empty() || !(isLetter(name[0]) || name[0] == '_'))
        return false;
    for (char c : name)
        if (!(isLetter(c) || c == '_' || (c >= '0' && c <= '9')))
            return false;
    return true;
}

void HostCommandManager::protectString(std::ostream &os, const std::string &text)
{
    HostCommandParser::protect(os, text);
}

std::string HostCommandManager::protectString(const std::string &text)
{
    return HostCommandParser::protect(text);
}

void HostCommandManager::protectQuotedString(std::ostream &os, const std::string &text)
{
    HostCommandParser::protectQuoted(os, text);
}
