// ScaleShell: the one gzsh that the scale benchmarks share, and a script builder.
#pragma once

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "shell/Shell.h"

#include <sstream>
#include <string>

/// One gzsh for every scale benchmark (a shell sets up process-wide state), with its output
/// and errors kept out of the report.
class ScaleShell
{
public:
    static ScaleShell &get()
    {
        static ScaleShell *theShell = new ScaleShell;
        return *theShell;
    }

    void run(const std::string &text)
    {
        myShell.commands().execute(text);
        myOut.str("");
        myErr.str("");
    }

    /// An empty scene with undo on and an empty history.
    void reset() { run("scenenew"); }

    HostDirector &director() const { return myShell.director(); }

private:
    ScaleShell()
    {
        myShell.startup({});
        myShell.commands().setStreams(&myOut, &myErr);
    }

    Shell myShell;
    std::ostringstream myOut;
    std::ostringstream myErr;
};

/// `count` lines made by `line(i)`, as one script.
template <typename Line> std::string script(int count, Line line)
{
    std::ostringstream os;
    for (int i = 0; i < count; ++i)
        os << line(i) << "\n";
    return os.str();
}
