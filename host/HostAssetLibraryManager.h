// HostAssetLibraryManager: the host's operator-type library files and the loaded ones.
#pragma once

#include "host/HostAssetDefinition.h"

#include <map>
#include <string>
#include <vector>

class HostOperator;

/// Keeps the operator-type library files the host has loaded, each with a description of
/// where it came from, and changes library files on disk. Reading a damaged file is refused
/// whole and reported through HostDiagnostics naming the file; saving replaces a file
/// atomically. Paths are used as given; `expandPath` expands a path's variables.
class HostAssetLibraryManager
{
public:
    /// One loaded library: its file, where it came from, and its definitions.
    struct Library
    {
        std::string myPath;
        std::string mySource;
        std::vector<HostAssetDefinition> myDefinitions;
    };

    /// The process-wide manager.
    static HostAssetLibraryManager &get();

    /// The extension of library files the host makes by default.
    static const char *getDefaultLibraryExtension() { return ".oplib"; }
    /// The source description of a library that was added by saving a definition into it.
    static const char *getSaveSourceDescription() { return "Current SCN File"; }

    /// `path` with the host's variables ($HOME and the like) expanded.
    static std::string expandPath(const std::string &path);

    /// Reads every definition of `path`; false (reported, nothing kept) when the file cannot
    /// be read or is damaged. Reports name the file `shown_name` (default: `path`), so a file
    /// found on the search path is named as the user gave it.
    static bool readLibrary(const std::string &path, std::vector<HostAssetDefinition> &out,
                            const std::string &shown_name = std::string());

    /// Reads `path` and keeps it as loaded with `source` (loading it again refreshes it and
    /// keeps its place and takes the new source). False when it could not be read (reported).
    bool loadLibrary(const std::string &path, const std::string &source,
                     const std::string &shown_name = std::string());
    bool isLoaded(const std::string &path) const { return findLibrary(path) != nullptr; }
    const Library *findLibrary(const std::string &path) const;
    const std::vector<Library> &getLibraries() const { return myLibraries; }
    /// Forgets every loaded library (files stay).
    void clear();

    /// The path of the first loaded library that defines `qualified_name` ("Sop/nudge"), or
    /// an empty string.
    std::string findDefinitionLibrary(const std::string &qualified_name) const;

    /// A new definition for `op` (qualified name, label, input counts) with no sections yet.
    static HostAssetDefinition createIndexFile(const HostOperator &op);
    /// Adds the section to the definition, or replaces its bytes.
    static void addSection(HostAssetDefinition &def, const std::string &name,
                           const std::string &bytes);

    /// Adds `def` to the library file `path`, replacing a definition of the same name in its
    /// place; a missing file (and its directories) is created. A damaged file is left alone.
    /// A loaded copy of the library is refreshed. False (reported) when nothing changed.
    bool addDefinitionToFile(const std::string &path, const HostAssetDefinition &def);

private:
    Library *findMutable(const std::string &path);
    void reindex();

    std::vector<Library> myLibraries;
    /// Qualified name to the index of the first library defining it.
    std::map<std::string, size_t> myIndex;
};
