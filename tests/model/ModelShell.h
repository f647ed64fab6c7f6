// ModelShell: the process-wide gzsh of the randomized model tests, run in-process.
#pragma once

#include <sstream>
#include <string>

class HostDirector;
class Shell;

/// The one shell of the test process, started once, with its output captured. Commands go
/// through the same interpreter as gzsh's, so every change the tests make is a real command
/// with its argument checks and undo steps.
class ModelShell
{
public:
    static ModelShell &get();

    /// Runs command text; returns what it wrote to standard output.
    std::string run(const std::string &text);
    /// What the commands run since the last call wrote to standard error; clears it.
    std::string takeErrors();

    /// Empties the scene, its persistent handles and the undo history, and forgets every
    /// scripted operator type and loaded library.
    void reset();
    /// The scene as scenesave writes it.
    std::string saved() const;

    HostDirector &director() const;

private:
    ModelShell();

    Shell *myShell;
    std::ostringstream myOut;
    std::ostringstream myErr;
};
