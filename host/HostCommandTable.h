// HostCommandTable: installs the rows of a command table into the interpreter.
#pragma once

#include "host/HostCommandManager.h"
#include "host/HostCommandRow.h"

#include <functional>
#include <ostream>

/// The one installer of command rows, used by the host's shell and the library's layers. A
/// row whose name is installed already is left alone, so installing a table twice (a second
/// shell, a manager made again) changes nothing.
class HostCommandTable
{
public:
    /// Installs `rows` into `commands`; each handler runs on what `context` returns when the
    /// command runs, and the command does nothing when that is null. Returns how many rows
    /// were installed.
    template <typename Context, typename Rows>
    static int install(HostCommandManager &commands, const Rows &rows,
                       std::function<Context *()> context)
    {
        int installed = 0;
        for (const HostCommandRow<Context> &row : rows)
        {
            if (commands.isInstalled(row.name))
                continue;
            auto handler = row.handler;
            const HostArgCounts counts = row.counts();
            auto run = [context, handler, counts](HostCommandArgs &args)
            {
                if (!countAllowed(args, counts))
                    return;
                if (Context *target = context())
                    handler(*target, args);
            };
            if (!commands.installCommand(row.name, row.options, run, row.allowedWhileLoading,
                                         row.synopsis))
                continue;
            commands.setHelp(row.name, row.summary, row.optionHelp);
            commands.setArgumentCounts(row.name, counts);
            ++installed;
        }
        return installed;
    }

private:
    /// Whether the word count is one the row allows; reports it when not.
    static bool countAllowed(HostCommandArgs &args, const HostArgCounts &counts)
    {
        if (counts.allows(args.argc(), counts.option != 0 && args.found(counts.option)))
            return true;
        args.err() << args.commandName() << ": wrong number of arguments\n";
        args.showUsage();
        return false;
    }
};
