// Randomized undo: every step of a random sequence of scene changes undoes and redoes back
// to exactly the scene it left.
#include "ModelRun.h"
#include "ModelSeeds.h"
#include "ModelShell.h"
#include "SceneGenerator.h"
#include "SceneText.h"
#include "ScratchDir.h"

#include "host/HostDirector.h"
#include "host/HostUndoManager.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>

namespace
{
constexpr int theSteps = 250;

/// The scene after a step: the time it was saved at and the saved text.
struct Checkpoint
{
    double time = 0.0;
    std::string text;
    std::string command;
};

/// One seed's sequence: runs it (with an occasional undo or redo among the changes), then
/// undoes and redoes it all, comparing the saved scene at every undo depth a command left.
class UndoRun : public ModelRun
{
public:
    UndoRun(unsigned seed, const ScratchDir &dir) : ModelRun(seed), myDir(dir) {}

    std::string check(int steps) override
    {
        ModelShell &shell = ModelShell::get();
        shell.reset();
        myLines.clear();
        myCheckpoints.clear();
        SceneGenerator generate(seed(), shell.director(), /*with_settings=*/false,
                                myDir.freshFolder("types"));
        // Scripted types have no undo: they are defined (saved, loaded) before the changes.
        for (int i = 0; i < 6; ++i)
        {
            myLines.push_back(generate.typeCommand());
            shell.run(myLines.back());
        }
        shell.takeErrors();
        undo().clear();
        myCheckpoints[0] = {0.0, scene(), "(the scene with its types)"};
        std::mt19937 chooser(seed());
        for (int i = 0; i < steps; ++i)
        {
            const unsigned roll = chooser() % 100;
            myLines.push_back(roll < 5 ? "undo" : roll < 8 ? "redo" : generate.next());
            const std::string &line = myLines.back();
            std::string fault = line == "undo" || line == "redo" ? moveBy(line) : runStep(line);
            if (!fault.empty())
                return fault;
        }
        // Whatever the sequence left to redo is redone at the end too.
        const int top = undo().getUndoCount() + undo().getRedoCount();
        for (int depth = undo().getUndoCount() - 1; depth >= 0; --depth)
        {
            std::string fault = moveTo("undo", depth);
            if (!fault.empty())
                return fault;
        }
        for (int depth = 1; depth <= top; ++depth)
        {
            std::string fault = moveTo("redo", depth);
            if (!fault.empty())
                return fault;
        }
        return "";
    }

private:
    static HostUndoManager &undo() { return ModelShell::get().director().getUndoManager(); }
    static std::string scene() { return SceneText::withHandlesSorted(ModelShell::get().saved()); }

    std::string runStep(const std::string &line)
    {
        ModelShell &shell = ModelShell::get();
        const int depth_before = undo().getUndoCount();
        const std::string before = scene();
        shell.run(line);
        shell.takeErrors();
        const int depth = undo().getUndoCount();
        const std::string after = scene();
        if (depth < depth_before)
            return "`" + line + "` dropped undo steps";
        // Compiling only writes the reduced interface; the node keeps its own.
        if (line.rfind("sparecompile ", 0) == 0 && (depth != depth_before || after != before))
            return "`" + line + "` changed the node";
        // A change after an undo discards what could have been redone.
        myCheckpoints.erase(myCheckpoints.upper_bound(depth_before), myCheckpoints.end());
        if (depth == depth_before)
        {
            // Only the time may change without an undo step; it is no scene change.
            if (after != before && line.rfind("tcur ", 0) != 0)
                return "`" + line + "` changed the scene without an undo step: " +
                       SceneText::firstDifference(before, after);
            return "";
        }
        myCheckpoints[depth] = {shell.director().getTime(), after, line};
        return "";
    }

    /// Runs undo or redo once; at a depth that a command left, the scene must be the one
    /// saved then (at the time it was saved).
    std::string moveTo(const std::string &command, int depth)
    {
        ModelShell &shell = ModelShell::get();
        shell.run(command);
        const std::string errors = shell.takeErrors();
        if (!errors.empty() || undo().getUndoCount() != depth)
            return command + " to depth " + std::to_string(depth) + " failed: " + errors;
        return compareAt(depth, command);
    }

    /// An undo or redo in the sequence; with nothing to undo or redo it does nothing.
    std::string moveBy(const std::string &command)
    {
        const bool possible =
            command == "undo" ? undo().getUndoCount() > 0 : undo().getRedoCount() > 0;
        if (!possible)
            return "";
        return moveTo(command, undo().getUndoCount() + (command == "undo" ? -1 : 1));
    }

    std::string compareAt(int depth, const std::string &command)
    {
        ModelShell &shell = ModelShell::get();
        const auto found = myCheckpoints.find(depth);
        if (found == myCheckpoints.end())
            return "";
        shell.director().setTime(found->second.time);
        const std::string text = scene();
        if (text != found->second.text)
            return command + " to the scene after `" + found->second.command +
                   "` gave another scene: " + SceneText::firstDifference(found->second.text, text);
        return "";
    }

    const ScratchDir &myDir;
    std::map<int, Checkpoint> myCheckpoints;
};
} // namespace

TEST(UndoModel, EveryStepUndoesAndRedoesToTheSceneItLeft)
{
    ScratchDir dir("gz_undo_");
    for (unsigned seed : ModelSeeds::get(/*first=*/1000, /*count=*/64))
        UndoRun(seed, dir).expectNoFault(theSteps);
}
