// Checker: gzcheck itself — arguments, reading files and printing what their readers report.
#pragma once

#include <set>
#include <string>

struct CheckKind;
struct HostDiagnostic;

/// Checks files with the readers the host and the library use (nothing is run or applied
/// beyond a scratch session): every problem is printed as "FILE:LINE: error: message" or
/// "FILE:LINE: warning: message" on standard output ("FILE: ..." when the problem has no
/// line), or only their count with -q.
class Checker
{
public:
    /// Exit statuses of gzcheck.
    enum Status
    {
        STATUS_CLEAN = 0,  ///< no errors (warnings allowed)
        STATUS_ERRORS = 1, ///< at least one error
        STATUS_USAGE = 2   ///< bad usage, an unreadable file or a kind that cannot be checked
    };

    /// Runs gzcheck with its command-line arguments and returns the exit status.
    int main(int argc, const char *const *argv);

private:
    /// Checks one file; false when it cannot be read or its kind cannot be checked.
    bool checkFile(const std::string &path, const CheckKind *forced);
    void print(const HostDiagnostic &d, const std::string &path);

    bool myQuiet = false;
    int myErrors = 0;
    int myFindings = 0;
    /// The lines printed for the file being checked.
    std::set<std::string> mySeen;
};
