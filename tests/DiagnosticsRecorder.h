// DiagnosticsRecorder: a HostDiagnosticCapture a test can start and stop more than once.
#pragma once

#include "host/HostDiagnostics.h"

#include <optional>
#include <string>

/// Installs a capture at start(); take() removes it and returns what it collected, as the
/// default sink would have printed it.
class DiagnosticsRecorder
{
public:
    void start() { myCapture.emplace(); }
    std::string take()
    {
        std::string text = myCapture ? myCapture->text() : std::string();
        myCapture.reset();
        return text;
    }

private:
    std::optional<HostDiagnosticCapture> myCapture;
};
