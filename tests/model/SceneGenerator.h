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
    /// saved with the scene but have no undo.
    SceneGenerator(unsigned seed, const HostDirector &director, bool with_settings);

    /// The next command line.
    std::string next();
    /// A random binding command (ombind, omunbind, omsbind, omsunbind) on the gzsh operator
    /// types. Bindings belong to the process, not the scene, so next() makes none.
    std::string bindingCommand();

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

    std::vector<std::string> nodePaths() const;
    std::vector<std::string> handleNames() const;
    std::vector<std::string> groupNames() const;
    /// How many spare templates the node at `path` has (0 when there is no such node).
    size_t spareCount(const std::string &path) const;

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
};
