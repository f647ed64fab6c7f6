// HostCommandRow: one command as a command table declares it.
#pragma once

#include "host/HostArgCounts.h"
#include "host/HostCommandArgs.h"

/// One command of a table: what the interpreter installs and what `help` shows. `Context` is
/// what the handler works on (the shell, a manager); HostCommandTable installs the rows.
template <typename Context> struct HostCommandRow
{
    const char *name;
    /// Option string: a letter, then one ':' per value it takes.
    const char *options;
    /// Synopsis, command name first ("nodeadd TYPE PATH").
    const char *synopsis;
    /// Checks its arguments, does the work, reports on the streams of `args`; never throws.
    void (*handler)(Context &context, HostCommandArgs &args);
    /// False for commands that must not run from a scene file being loaded (they write
    /// files or leave the session).
    bool allowedWhileLoading = true;
    /// One sentence on what the command does, as docs/commands.md says it.
    const char *summary = "";
    /// One line per option, "-X WHAT  what it does", separated by newlines; empty without.
    const char *optionHelp = "";
    /// How many words the command takes, its name included; the interpreter refuses other
    /// counts with "NAME: wrong number of arguments" and the usage before the handler runs.
    /// -1 for `leastArgs` leaves counting to the handler (then a check of a script without
    /// running it cannot see a wrong count), -1 for `mostArgs` sets no limit.
    int leastArgs = -1;
    int mostArgs = -1;
    /// Words past `leastArgs` come in groups of this many.
    int stepArgs = 1;
    /// When the option `countOption` is given, these counts apply instead (0: no such option).
    char countOption = 0;
    int optionLeastArgs = -1;
    int optionMostArgs = -1;

    HostArgCounts counts() const
    {
        return {leastArgs, mostArgs, stepArgs, countOption, optionLeastArgs, optionMostArgs};
    }
};
