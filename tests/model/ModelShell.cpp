// ModelShell: the process-wide gzsh of the randomized model tests, run in-process.
#include "ModelShell.h"

#include "host/HostAssetLibraryManager.h"
#include "host/HostCommandManager.h"
#include "host/HostDiagnostics.h"
#include "host/HostDirector.h"
#include "host/HostOperatorTable.h"
#include "persistent/GZ_ScriptOperator.h"
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
    // Readers report through the diagnostics channel: their problems are errors too.
    HostDiagnostics::setSink([this](const HostDiagnostic &d) { myErr << d.myText << "\n"; });
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
    // Scripted types and libraries belong to the process: a seed must not see another's.
    for (HostOperatorTable *table : HostOperatorTable::getTables())
        for (int i = table->getNumOperators() - 1; i >= 0; --i)
            if (dynamic_cast<const GZ_ScriptOperator *>(table->getOperator(i)))
                table->deleteOperator(table->getOperator(i)->getName());
    HostAssetLibraryManager::get().clear();
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
