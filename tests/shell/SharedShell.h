// SharedShell: one started gzsh for the shell tests that drive commands by text.
#pragma once

#include "shell/Shell.h"

#include "host/HostCommandManager.h"

#include <sstream>
#include <string>

/// Runs one command line in the shared shell and returns its standard output; its standard
/// error goes to `errors` when given.
inline std::string runInSharedShell(const std::string &text, std::string *errors = nullptr)
{
    static Shell *theShell = []
    {
        auto *s = new Shell;
        s->startup({});
        return s;
    }();
    std::ostringstream out, err;
    theShell->commands().setStreams(&out, &err);
    theShell->commands().execute(text);
    theShell->commands().setStreams(nullptr, nullptr);
    if (errors)
        *errors = err.str();
    return out.str();
}
