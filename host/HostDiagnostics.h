// HostDiagnostics: the one channel through which readers, commands and the library report problems.
#pragma once

#include <functional>
#include <string>
#include <vector>

/// How serious one reported problem is.
enum class HostDiagSeverity
{
    Note,
    Warning,
    Error
};

/// One reported problem. `myText` is the complete line the default sink prints (without the
/// newline), so that the shell's output stays exactly as it was; `myFile`, `myLine` and
/// `myMessage` are the same report taken apart, for sinks that format on their own (a checker
/// printing FILE:LINE: error: message, Python turning errors into exceptions).
struct HostDiagnostic
{
    HostDiagSeverity mySeverity = HostDiagSeverity::Error;
    std::string myFile; ///< empty when the problem has no file
    int myLine = 0;     ///< 0 when the problem has no line
    std::string myMessage;
    std::string myText;
};

/// The process-wide diagnostics channel. Everything runs on the host's main thread, so the
/// sink is a plain static. The default sink writes `myText` and a newline to stderr.
class HostDiagnostics
{
public:
    using Sink = std::function<void(const HostDiagnostic &)>;

    /// Hands one diagnostic to the current sink.
    static void report(const HostDiagnostic &diagnostic);
    /// Builds and reports a diagnostic; an empty `text` means "FILE[LINE]: message" where there
    /// is a file, else the message alone.
    static void report(HostDiagSeverity severity, const std::string &file, int line,
                       const std::string &message, const std::string &text = std::string());

    /// Replaces the sink and returns the previous one; an empty sink restores the default.
    static Sink setSink(Sink sink);
    /// `text` up to its first NUL byte: words taken from a damaged file are shown as the C
    /// strings they always were printed as.
    static std::string upToNul(const std::string &text) { return text.substr(0, text.find('\0')); }

    /// The sink that writes to stderr.
    static void writeToStderr(const HostDiagnostic &diagnostic);
};

/// Installs a sink for its lifetime and restores the previous one afterwards.
class HostScopedDiagnosticSink
{
public:
    explicit HostScopedDiagnosticSink(HostDiagnostics::Sink sink)
        : myPrevious(HostDiagnostics::setSink(std::move(sink)))
    {
    }
    ~HostScopedDiagnosticSink() { HostDiagnostics::setSink(std::move(myPrevious)); }
    HostScopedDiagnosticSink(const HostScopedDiagnosticSink &) = delete;
    HostScopedDiagnosticSink &operator=(const HostScopedDiagnosticSink &) = delete;

private:
    HostDiagnostics::Sink myPrevious;
};

/// Collects every diagnostic reported while it is alive instead of printing it.
class HostDiagnosticCapture
{
public:
    HostDiagnosticCapture()
        : myScope([this](const HostDiagnostic &d) { myDiagnostics.push_back(d); })
    {
    }
    const std::vector<HostDiagnostic> &diagnostics() const { return myDiagnostics; }
    /// The texts, each followed by a newline: what the default sink would have printed.
    std::string text() const;

private:
    std::vector<HostDiagnostic> myDiagnostics;
    HostScopedDiagnosticSink myScope;
};
