// Fuzzes gzsh's commands over a real scene: no input may crash the shell. The interpreter is
// kept in loading mode, which refuses the commands that write files or exit.
#include "shell/Shell.h"

#include "host/HostCommandManager.h"
#include "host/HostDirector.h"

#include <cstdint>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Shell *shell = []
    {
        auto *s = new Shell;
        s->startup({});
        static std::ostringstream sink;
        s->commands().setStreams(&sink, &sink);
        s->commands().setLoading(true);
        return s;
    }();
    shell->director().clearScene();
    shell->commands().execute("nodeadd geo /obj/geo1; nodeadd xform /obj/geo1/xform1");
    shell->commands().execute(std::string(reinterpret_cast<const char *>(data), size));
    shell->commands().clearExitRequest();
    return 0;
}
