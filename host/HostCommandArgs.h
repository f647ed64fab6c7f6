// HostCommandArgs: one parsed invocation of a command, as its handler receives it.
#pragma once

#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

/// The arguments of one command invocation: the positional arguments (argument 0 is the
/// command name), the options that were given with their values, the output and error
/// streams, and the command's usage text. The interpreter builds it for each run; tests and
/// library code may build one by hand. Does not own the streams.
class HostCommandArgs
{
public:
    HostCommandArgs(std::vector<std::string> args, std::ostream &out, std::ostream &err);

    /// Number of positional arguments, the command name included.
    int argc() const { return static_cast<int>(myArgs.size()); }
    /// Argument i, or null when i is out of range.
    const char *argv(int i) const;
    /// Argument i, or the empty string when i is out of range.
    const std::string &arg(int i) const;
    const std::vector<std::string> &args() const { return myArgs; }
    const std::string &commandName() const { return arg(0); }

    /// Whether option `letter` was given.
    bool found(char letter) const { return findOption(letter) != nullptr; }
    /// Number of values given with option `letter` (0 for a flag or a missing option).
    int nargp(char letter) const;
    /// Value i of option `letter`, or null when the option or the value is missing.
    const char *argp(char letter, int i = 0) const;
    /// Value i of option `letter` read as a decimal integer (atoi rules), or `fallback` when
    /// missing.
    int iargp(char letter, int i = 0, int fallback = 0) const;
    /// Value i of option `letter` read as a floating-point number (atof rules), or
    /// `fallback` when missing.
    double fargp(char letter, int i = 0, double fallback = 0.0) const;
    /// The option letters in the order they were first given.
    std::string optionLetters() const;

    /// Records option `letter` with its values; a repeated option keeps the last values.
    void setOption(char letter, std::vector<std::string> values = {});
    /// Room for `count` options, so that setting them allocates once.
    void reserveOptions(std::size_t count) { myOptions.reserve(myOptions.size() + count); }

    std::ostream &out() const { return *myOut; }
    std::ostream &err() const { return *myErr; }

    /// The command's usage, without the "Usage: " prefix.
    const std::string &usage() const { return myUsage; }
    void setUsage(std::string usage) { myUsage = std::move(usage); }
    /// Writes "Usage: " and the usage text, then a newline, to the error stream.
    void showUsage() const;

private:
    const std::vector<std::string> *findOption(char letter) const;

    std::vector<std::string> myArgs;
    std::vector<std::pair<char, std::vector<std::string>>> myOptions;
    std::ostream *myOut;
    std::ostream *myErr;
    std::string myUsage;
};
