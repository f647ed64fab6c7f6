// CheckKinds: the kinds of file gzcheck knows, how it tells them apart and how each is read.
#pragma once

#include <string>

/// One kind of file: its name (what -t takes) and the reader that checks it.
struct CheckKind
{
    const char *name;
    /// Reads `text` (the contents of `path`) with the host's own reader; every problem goes
    /// to HostDiagnostics.
    void (*check)(const std::string &path, const std::string &text);
};

/// The table of kinds and the guess from a file's name and contents.
class CheckKinds
{
public:
    /// The kind of that name, or null.
    static const CheckKind *find(const std::string &name);
    /// The kind a file most likely is: by its name first, else by its first word.
    static const CheckKind &guess(const std::string &path, const std::string &text);
    /// The names of every kind, separated by blanks (for the usage line).
    static std::string names();
};
