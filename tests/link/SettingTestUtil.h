// Helpers shared by the setting-list tests: parse with captured diagnostics, write to a string.
#pragma once

#include "host/HostDiagnostics.h"
#include "link/GZ_SettingList.h"

#include <gtest/gtest.h>

#include <string>

/// Parses text into list and returns what the parse reported.
inline std::string parseInto(GZ_SettingList &list, const char *text)
{
    HostDiagnosticCapture capture;
    list.loadFromSettingString(text);
    return capture.text();
}

inline std::string written(const GZ_SettingList &list)
{
    std::string text;
    list.generateSettingString(text);
    return text;
}

/// What a getter gives for `name`, starting from `start` so that a getter that leaves the
/// variable alone shows.
template <typename T, typename D>
T got(const GZ_SettingList &list, const char *name, D dflt, T start = T{})
{
    T value = start;
    list.getSetting(name, value, dflt);
    return value;
}

/// The list parsed from text, written back; errors go to *errors when given.
inline std::string reparsed(const char *text, std::string *errors = nullptr)
{
    GZ_SettingList list;
    std::string err = parseInto(list, text);
    if (errors)
        *errors = err;
    return written(list);
}
