// Fuzzes gzsh's commands over a real scene: no input may crash the shell. The interpreter is
// kept in loading mode, which refuses the commands that write files or exit.
#include "shell/Shell.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"

#include <cstdint>
#include <sstream>
#include <string>

namespace
{
// Output is thrown away after each input, so memory stays flat.
std::ostringstream theSink;
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    theSink.str("");
    static Shell *shell = []
    {
        auto *s = new Shell;
        s->startup({});
        s->commands().setStreams(&theSink, &theSink);
        s->commands().setLoading(true);
        return s;
    }();
    shell->director().clearScene();
    while (!shell->commands().variables().empty())
        shell->commands().unsetVariable(shell->commands().variables().begin()->first);
    shell->commands().execute("nodeadd geo /obj/geo1; nodeadd xform /obj/geo1/xform1");
    shell->commands().execute(std::string(reinterpret_cast<const char *>(data), size));
    shell->commands().clearExitRequest();
    return 0;
}
