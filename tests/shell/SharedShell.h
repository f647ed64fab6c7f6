// SharedShell: one started gzsh for the shell tests that drive commands by text.
#pragma once

#include "shell/Shell.h"

#include "host/HostCommandManager.h"

#include <sstream>
#include <string>

/// The process-wide shell, started on first use.
inline Shell &sharedShell()
{
    static Shell *theShell = []
    {
        auto *s = new Shell;
        s->startup({});
        return s;
    }();
    return *theShell;
}

/// Runs one command line in the shared shell and returns its standard output; its standard
/// error goes to `errors` when given.
inline std::string runInSharedShell(const std::string &text, std::string *errors = nullptr)
{
    std::ostringstream out, err;
    sharedShell().commands().setStreams(&out, &err);
    sharedShell().commands().execute(text);
    sharedShell().commands().setStreams(nullptr, nullptr);
    if (errors)
        *errors = err.str();
    return out.str();
}
