// HostReader: the search path, and reading text files line by line.
#pragma once

#include <fstream>
#include <memory>
#include <string>
#include <vector>

/// Finds files on the host's search path and reads text files by lines.
///
/// The search path is a process-wide ordered list of directories (set by the shell from its
/// -p options, then the shipped data directory). A relative name such as "OPbindings" or
/// "config/Help/handle/xform" is looked up in each directory in order. Absolute names are
/// used as they are.
///
/// An instance reads one file: `getLine` returns lines without their line break and counts
/// them, so readers can report "file:line".
class HostReader
{
public:
    // Search path.
    static void setSearchPath(const std::vector<std::string> &dirs);
    static void appendSearchPath(const std::string &dir);
    static void clearSearchPath();
    static const std::vector<std::string> &getSearchPath();
    /// The first existing regular file for `name` on the search path; false when none.
    static bool findFile(const std::string &name, std::string &path);
    /// Every existing regular file for `name`, in search-path order.
    static std::vector<std::string> findAllFiles(const std::string &name);
    /// The per-user directory (where user files such as written bindings go).
    static const std::string &getUserDirectory();
    static void setUserDirectory(const std::string &dir);

    /// Reads a whole file as lines (line breaks removed; a final line without a break
    /// counts). False when the file cannot be opened.
    static bool readLines(const std::string &path, std::vector<std::string> &lines);
    /// Reads a whole file as text. False when the file cannot be opened.
    static bool readFile(const std::string &path, std::string &text);

    /// Opens `path` for reading (use isOpen to check).
    explicit HostReader(const std::string &path);
    ~HostReader();
    HostReader(const HostReader &) = delete;
    HostReader &operator=(const HostReader &) = delete;

    bool isOpen() const { return myStream.is_open(); }
    const std::string &getFileName() const { return myPath; }
    /// Reads the next line (without "\n" or "\r\n"); false at the end.
    bool getLine(std::string &line);
    /// Number of the line last read (1-based; 0 before the first).
    int getLineNumber() const { return myLine; }

private:
    std::string myPath;
    std::ifstream myStream;
    int myLine = 0;
};
