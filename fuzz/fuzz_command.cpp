// Fuzzes the command interpreter: any text runs without crashing, and any text protected as
// one word reads back as exactly that word.
#include "host/HostCommandArgs.h"
#include "host/HostCommandManager.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

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

    // Protected words read back as themselves, each as one argument, whatever they hold.
    const std::string first = text.substr(0, text.size() / 2);
    const std::string second = text.substr(text.size() / 2);
    std::vector<std::string> seen;
    mgr->installCommand("one", "",
                        [&seen](HostCommandArgs &args)
                        { seen.assign(args.args().begin() + 1, args.args().end()); });
    mgr->execute("one " + HostCommandManager::protectString(text));
    const bool whole = seen.size() == 1 && seen[0] == text;
    seen.clear();
    mgr->execute("one " + HostCommandManager::protectString(first) + " " +
                 HostCommandManager::protectString(second));
    mgr->uninstallCommand("one");
    if (!whole || seen.size() != 2 || seen[0] != first || seen[1] != second)
        std::abort();
    return 0;
}
