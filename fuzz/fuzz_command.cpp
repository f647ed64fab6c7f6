// Fuzzes the command interpreter: any text runs without crashing, and any text protected as
// one word reads back as exactly that word.
#include "host/HostCommandArgs.h"
#include "host/HostCommandManager.h"

#include <cstdint>
#include <cstdlib>
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
    static HostCommandManager *mgr = []
    {
        auto *m = new HostCommandManager;
        m->setStreams(&theSink, &theSink);
        m->setVariable("X", "value");
        m->installCommand("pomadd", "gc:e:m:p:r:::s:v",
                          [](HostCommandArgs &args)
                          {
                              for (char letter : args.optionLetters())
                                  for (int i = 0; i < args.nargp(letter); ++i)
                                      args.out() << args.argp(letter, i);
                          });
        m->installCommand("take", "", [](HostCommandArgs &args) { args.out() << args.argc(); });
        m->installCommand("run", "", [m](HostCommandArgs &args) { m->execute(args.arg(1)); });
        return m;
    }();
    const std::string text(reinterpret_cast<const char *>(data), size);
    mgr->execute(text);
    mgr->clearExitRequest();

    std::string seen;
    int count = 0;
    mgr->installCommand("one", "",
                        [&seen, &count](HostCommandArgs &args)
                        {
                            count = args.argc();
                            seen = args.arg(1);
                        });
    mgr->execute("one " + HostCommandManager::protectString(text));
    mgr->uninstallCommand("one");
    if (count != 2 || seen != text)
        std::abort();
    return 0;
}
