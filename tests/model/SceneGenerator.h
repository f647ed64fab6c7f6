// SceneGenerator: random gzsh command lines that change a scene, for the model tests.
#pragma once

#include <random>
#include <string>
#include <vector>

class HostDirector;

/// Makes one random command line at a time from a seed. It looks at the live scene (its
/// nodes, persistent handles and groups) so that most lines act on things that exist; a few
/// name things that do not, so that failing commands are exercised too. The same seed
/// against the same scene gives the same lines, which is what makes a failure reproducible
/// from its seed and the length of its prefix.
class SceneGenerator
{
public:
    /// With `with_settings` the lines also set handle settings (pomparm, omparm), which are
    /// saved with the scene but have no undo. With a `types_dir`, nodes are also made of the
    /// scripted types typeCommand() defines, whose scripts and libraries go into that folder.
    SceneGenerator(unsigned seed, const HostDirector &director, bool with_settings,
                   const std::string &types_dir = "");

    /// The next command line.
    std::string next();
    /// A random binding command (ombind, omunbind, omsbind, omsunbind) on the gzsh operator
    /// types. Bindings belong to the process, not the scene, so next() makes none.
    std::string bindingCommand();
    /// A random line that defines scripted operator types (optypeload of a new random
    /// script written to the types folder; always while none is defined), saves one into a
    /// library there (optypesave) or loads a library saved there (libload). Types belong to the
    /// process and have no undo; next() makes these lines only when `types_in_sequence` is set.
    std::string typeCommand();
    void setTypesInSequence(bool on) { myTypesInSequence = on; }

private:
    std::string nodeCommand();
    std::string parmCommand();
    std::string channelCommand();
    std::string handleCommand();
    std::string groupCommand();
    std::string dragCommand();
    std::string settingsCommand();
    std::string readCommand();
    /// Spare parameters: add (from text), remove, move, compile (a listing that must not
    /// change the node), copy, and values set on them.
    std::string spareCommand();
    std::string sequenceTypeCommand();
    /// One to `most` random pieces of a parameter section, each at most once if `distinct`.
    std::string spareSection(int most, bool distinct);
    /// A whole operator dialog script for the type `name`.
    std::string typeScript(const std::string &name);
    /// An expression that refers to a spare channel of a live node, by absolute or relative
    /// path, so that renames and removals have referrers to repair.
    std::string spareReference(const std::string &from);

    std::vector<std::string> nodePaths() const;
    std::vector<std::string> handleNames() const;
    std::vector<std::string> groupNames() const;
    /// Names of the scripted operator types in `table` ("Sop", "Object").
    std::vector<std::string> scriptedTypes(const char *table) const;
    std::vector<std::string> scriptedNodePaths() const;
    /// The names of the spare parameters of the node at `path`, or of their channels.
    std::vector<std::string> spareNames(const std::string &path, bool channels) const;
    /// How many spare templates the node at `path` has (0 when there is no such node).
    size_t spareCount(const std::string &path) const;

    /// A scripted type of `table` half of the time when there is one, else a built-in one.
    std::string typeFrom(const char *table, std::initializer_list<const char *> built_in);
    std::string nodePath();
    std::string handleName();
    std::string groupName();
    std::string channel();
    std::string number(bool words = true);
    std::string options();
    std::string bindingPair();
    std::string settings();
    /// A name meant to break saved lines: blanks, both quotes, "$", ";", "#", backslashes.
    std::string hostile();

    int below(int n);
    bool chance(int percent) { return below(100) < percent; }
    const char *pick(std::initializer_list<const char *> words);
    /// A name from the live ones most of the time, else one of `fresh` (protected).
    std::string nameFrom(const std::vector<std::string> &live,
                         std::initializer_list<const char *> fresh);

    std::mt19937 myRng;
    const HostDirector &myDirector;
    bool myWithSettings;
    std::string myTypesDir;
    bool myTypesInSequence = false;
    int myScripts = 0;
};
