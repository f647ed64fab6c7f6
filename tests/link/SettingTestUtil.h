// Helpers shared by the setting-list tests: parse with captured errors, write to a string.
#pragma once

#include "StderrCapture.h"
#include "link/GZ_SettingList.h"

#include <string>

/// Parses text into list and returns what the parse printed to standard error.
inline std::string parseInto(GZ_SettingList &list, const char *text)
{
    StderrCapture capture;
    list.loadFromSettingString(text);
    return capture.take();
}

inline std::string written(const GZ_SettingList &list)
{
    std::string text;
    list.generateSettingString(text);
    return text;
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
