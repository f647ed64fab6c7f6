// HostDiagnostics: the sink switch and the default stderr sink.
#include "host/HostDiagnostics.h"

#include <cstdio>

namespace
{
HostDiagnostics::Sink &currentSink()
{
    static HostDiagnostics::Sink sink;
    return sink;
}
} // namespace

void HostDiagnostics::report(const HostDiagnostic &diagnostic)
{
    const Sink &sink = currentSink();
    if (sink)
        sink(diagnostic);
    else
        writeToStderr(diagnostic);
}

void HostDiagnostics::report(HostDiagSeverity severity, const std::string &file, int line,
                             const std::string &message, const std::string &text)
{
    HostDiagnostic d;
    d.mySeverity = severity;
    d.myFile = file;
    d.myLine = line;
    d.myMessage = message;
    if (!text.empty())
        d.myText = text;
    else if (!file.empty())
        d.myText = file + "[" + std::to_string(line) + "]: " + message;
    else
        d.myText = message;
    report(d);
}

HostDiagnostics::Sink HostDiagnostics::setSink(Sink sink)
{
    Sink previous = std::move(currentSink());
    currentSink() = std::move(sink);
    return previous;
}

void HostDiagnostics::writeToStderr(const HostDiagnostic &diagnostic)
{
    // One write per line keeps a diagnostic whole when stderr is shared with std::cerr users.
    std::string line = diagnostic.myText + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

std::string HostDiagnosticCapture::text() const
{
    std::string out;
    for (const HostDiagnostic &d : myDiagnostics)
        out += d.myText + "\n";
    return out;
}
