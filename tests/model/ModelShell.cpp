// ModelShell: the process-wide gzsh of the randomized model tests, run in-process.
#include "ModelShell.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"
#include "shell/Shell.h"
#include "shell/ShellScene.h"

ModelShell &ModelShell::get()
{
    static ModelShell *theShell = new ModelShell;
    return *theShell;
}

ModelShell::ModelShell() : myShell(new Shell)
{
    myShell->startup({});
    myShell->commands().setStreams(&myOut, &myErr);
}

std::string ModelShell::run(const std::string &text)
{
    myOut.str("");
    myShell->commands().execute(text);
    return myOut.str();
}

std::string ModelShell::takeErrors()
{
    std::string text = myErr.str();
    myErr.str("");
    return text;
}

void ModelShell::reset()
{
    run("scenenew");
    takeErrors();
}

std::string ModelShell::saved() const
{
    std::ostringstream os;
    ShellScene::write(os, myShell->director());
    return os.str();
}

HostDirector &ModelShell::director() const
{
    return myShell->director();
}
