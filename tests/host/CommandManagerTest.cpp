// The command interpreter: option strings, dispatch, errors, nesting, output and history.
#include "host/HostCommandArgs.h"
#include "host/HostCommandManager.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>

namespace
{
/// An interpreter writing to string streams, with a "show" command that prints what it got:
/// the positional arguments, then each option letter with its values.
struct Interp
{
    HostCommandManager mgr;
    std::ostringstream out, err;

    explicit Interp(const char *options = "gc:e:m:p:r:::s:v")
    {
        mgr.setStreams(&out, &err);
        mgr.installCommand("show", options,
                           [](HostCommandArgs &args)
                           {
                               for (int i = 0; i < args.argc(); ++i)
                                   args.out() << (i ? " " : "") << "[" << args.argv(i) << "]";
                               for (char letter : args.optionLetters())
                               {
                                   args.out() << " -" << letter;
                                   for (int i = 0; i < args.nargp(letter); ++i)
                                       args.out() << "=" << args.argp(letter, i);
                               }
                               args.out() << "\n";
                           });
    }
    std::string run(const std::string &text)
    {
        out.str("");
        err.str("");
        mgr.execute(text);
        return out.str();
    }
};
} // namespace

TEST(CommandOptions, ParsesFlagsValuesAndMultiValueOptions)
{
    Interp in;
    EXPECT_EQ(in.run("show -e on -r 1 0 0.5 -m '*' name type"),
              "[show] [name] [type] -e=on -r=1=0=0.5 -m=*\n");
    EXPECT_EQ(in.run("show -gv grp"), "[show] [grp] -g -v\n");
    // A value-taking letter takes the rest of its cluster, then the following words.
    EXPECT_EQ(in.run("show -vcon -r1 2 3 x"), "[show] [x] -v -c=on -r=1=2=3\n");
    // Values may look like options or negative numbers.
    EXPECT_EQ(in.run("show -e -g -r -1 -2 -3 x"), "[show] [x] -e=-g -r=-1=-2=-3\n");
    // A repeated option keeps its last values.
    EXPECT_EQ(in.run("show -e on -e off"), "[show] -e=off\n");
}

TEST(CommandOptions, OptionsEndAtFirstPositionalNegativeNumberOrDashDash)
{
    Interp in;
    EXPECT_EQ(in.run("show a -g"), "[show] [a] [-g]\n");
    EXPECT_EQ(in.run("show -1 -.5 -g"), "[show] [-1] [-.5] [-g]\n");
    EXPECT_EQ(in.run("show -g -- -v"), "[show] [-v] -g\n");
    EXPECT_EQ(in.run("show -g '-v' - --x"), "[show] [-v] [-] [--x] -g\n");
    EXPECT_EQ(in.err.str(), "");
}

TEST(CommandOptions, ReportsUnknownOptionsAndMissingValues)
{
    Interp in;
    HostExecOptions opts;
    opts.source = "scene.gzs";
    opts.firstLine = 10;
    EXPECT_FALSE(in.mgr.execute("show -x a\nshow -r 1 2\nshow ok -x", opts));
    EXPECT_EQ(in.out.str(), "[show] [ok] [-x]\n");
    const std::string usage = "Usage: show [-g] [-c VALUE] [-e VALUE] [-m VALUE] [-p VALUE] "
                              "[-r VALUE1 VALUE2 VALUE3] [-s VALUE] [-v] [ARGS...]\n";
    EXPECT_EQ(in.err.str(), "scene.gzs:10: show: unknown option -x\n" + usage +
                                "scene.gzs:11: show: option -r needs 3 values\n" + usage);
    EXPECT_EQ(in.mgr.failedLines(), 2);

    Interp single("t:");
    single.run("show -t");
    EXPECT_EQ(single.err.str(),
              "show: option -t needs a value\nUsage: show [-t VALUE] [ARGS...]\n");
}

TEST(CommandOptions, RejectsMalformedOptionStringsAndDuplicates)
{
    HostCommandManager mgr;
    auto noop = [](HostCommandArgs &) {};
    for (const auto &[name, options] : {std::pair{"a", ":t"}, {"b", "tt"}, {"c", "1"}, {"", ""}})
        EXPECT_FALSE(mgr.installCommand(name, options, noop)) << name;
    EXPECT_TRUE(mgr.installCommand("omwrite", nullptr, noop, /*allowed_while_loading=*/false,
                                   "omwrite [file]"));
    EXPECT_FALSE(mgr.installCommand("omwrite", "", noop));
    EXPECT_EQ(mgr.usage("omwrite"), "omwrite [file]");
    EXPECT_FALSE(mgr.allowedWhileLoading("omwrite"));
    EXPECT_EQ(mgr.commandNames(), std::vector<std::string>({"omwrite"}));
    EXPECT_TRUE(mgr.setUsage("omwrite", "omwrite [FILE]"));
    EXPECT_EQ(mgr.usage("omwrite"), "omwrite [FILE]");
    EXPECT_EQ(mgr.usage("nothing"), "");
}

TEST(CommandOptions, InstalledHandlerCanBeWrapped)
{
    Interp interp;
    EXPECT_FALSE(interp.mgr.handler("nothing"));
    HostCommandCallback original = interp.mgr.handler("show");
    ASSERT_TRUE(original);
    ASSERT_TRUE(interp.mgr.uninstallCommand("show"));
    ASSERT_TRUE(interp.mgr.installCommand("show", "r:::",
                                          [original](HostCommandArgs &args)
                                          {
                                              args.out() << "wrapped ";
                                              original(args);
                                          }));
    EXPECT_EQ(interp.run("show -r 1 2 3 a"), "wrapped [show] [a] -r=1=2=3\n");
}

TEST(CommandExecution, FailingLinesAreReportedAndTheRestRuns)
{
    Interp in;
    HostExecOptions opts;
    opts.source = "a.gzs";
    EXPECT_FALSE(in.mgr.execute("nope 1\nshow 'x\nshow y\n\"\"\nshow z", opts));
    EXPECT_EQ(in.out.str(), "[show] [y]\n[show] [z]\n");
    EXPECT_EQ(in.err.str(), "a.gzs:1: Unknown command: nope\n"
                            "a.gzs:2: unterminated single quote\n"
                            "a.gzs:4: Unknown command: ''\n");
    EXPECT_EQ(in.mgr.failedLines(), 3);
    in.mgr.resetFailedLines();
    EXPECT_TRUE(in.mgr.execute("show"));
    EXPECT_EQ(in.mgr.failedLines(), 0);

    // A throwing handler is reported and does not stop the script.
    in.mgr.installCommand("boom", "", [](HostCommandArgs &) { throw std::runtime_error("bad"); });
    EXPECT_EQ(in.run("boom; show after"), "[show] [after]\n");
    EXPECT_EQ(in.err.str(), "boom: bad\n");
}

TEST(CommandExecution, SuppressedOutputHistoryVariablesAndNesting)
{
    Interp in;
    in.mgr.installCommand("nest", "",
                          [&in](HostCommandArgs &args)
                          {
                              in.mgr.execute(args.arg(1));
                              args.err() << "nested done\n";
                          });

    // Quiet runs discard output (also of nested runs) but keep errors, and add no history.
    EXPECT_TRUE(in.mgr.execute("show a; nest 'show b'", /*add_to_history=*/false,
                               /*show_output=*/false));
    EXPECT_EQ(std::tuple(in.out.str(), in.err.str()), std::tuple("", "nested done\n"));
    EXPECT_TRUE(in.mgr.history().empty());

    EXPECT_TRUE(in.mgr.execute("show $V\n", /*add_to_history=*/true));
    EXPECT_TRUE(in.mgr.execute("   \n", /*add_to_history=*/true));
    EXPECT_EQ(in.mgr.history(), std::vector<std::string>({"show $V"}));
    in.mgr.setVariable("V", "v 1");
    EXPECT_EQ(in.run("show $V"), "[show] [v 1]\n");
    EXPECT_TRUE(in.mgr.unsetVariable("V"));
    EXPECT_EQ(in.run("show $V"), "[show] [$V]\n");
    EXPECT_TRUE(HostCommandManager::isValidVariableName("_a9"));
    EXPECT_FALSE(HostCommandManager::isValidVariableName("9a"));
    EXPECT_FALSE(HostCommandManager::isValidVariableName("a-b"));

    // Text that runs itself stops at the nesting limit instead of the stack.
    in.mgr.installCommand("again", "", [&in](HostCommandArgs &) { in.mgr.execute("again"); });
    in.run("again; show survived");
    EXPECT_EQ(in.out.str(), "[show] [survived]\n");
    EXPECT_EQ(in.err.str(), "commands nested too deeply\n");
}

TEST(CommandExecution, LoadingRefusesUnsafeCommandsAndExitStopsEverything)
{
    Interp in;
    int writes = 0;
    in.mgr.installCommand(
        "write", "", [&writes](HostCommandArgs &) { ++writes; },
        /*allowed_while_loading=*/false);
    in.mgr.setLoading(true);
    EXPECT_EQ(in.run("write; show a"), "[show] [a]\n");
    EXPECT_EQ(in.err.str(), "write: not allowed while a scene is loading\n");
    in.mgr.setLoading(false);
    in.run("write");
    EXPECT_EQ(writes, 1);

    in.mgr.installCommand("quit", "", [&in](HostCommandArgs &) { in.mgr.requestExit(); });
    in.mgr.installCommand("nest", "",
                          [&in](HostCommandArgs &args) { in.mgr.execute(args.arg(1)); });
    EXPECT_EQ(in.run("show 1; nest 'show 2; quit; show 3'; show 4"), "[show] [1]\n[show] [2]\n");
    EXPECT_TRUE(in.mgr.exitRequested());
    in.mgr.clearExitRequest();
    EXPECT_EQ(in.run("show 5"), "[show] [5]\n");
}

TEST(CommandArgs, AccessorsAreSafeOutOfRange)
{
    std::ostringstream out, err;
    HostCommandArgs args({"cmd", "x"}, out, err);
    args.setOption('r', {"1", "2.5", "abc"});
    args.setOption('g');
    args.setUsage("cmd [-g] [-r R G B] name");
    EXPECT_EQ(std::tuple(args.argc(), args.argv(2), args.argv(-1), args.arg(5), args.commandName()),
              std::tuple(2, nullptr, nullptr, "", "cmd"));
    EXPECT_EQ(std::tuple(args.found('g'), args.nargp('g'), args.argp('g'), args.found('t')),
              std::tuple(true, 0, nullptr, false));
    EXPECT_EQ(std::tuple(args.iargp('t', 0, 7), args.iargp('r', 2, 7), args.argp('r', 3)),
              std::tuple(7, 0, nullptr));
    EXPECT_DOUBLE_EQ(args.fargp('r', 1), 2.5);
    args.showUsage();
    EXPECT_EQ(err.str(), "Usage: cmd [-g] [-r R G B] name\n");
}
