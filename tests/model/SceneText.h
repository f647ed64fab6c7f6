// SceneText: comparing saved scenes in the model tests.
#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

/// Helpers over saved scene text.
class SceneText
{
public:
    /// The saved scene with its persistent handles and groups in name order. Undoing a
    /// structural change to a handle or group re-creates it from its saved commands at the
    /// end of its list, by design, so undo restores every handle and group but not always
    /// their order; everything else must come back byte for byte.
    static std::string withHandlesSorted(const std::string &text)
    {
        std::istringstream is(text);
        std::string head, line;
        std::vector<std::string> blocks;
        while (std::getline(is, line))
        {
            // A handle or group starts at its pomadd line; its other lines follow it.
            if (line.rfind("pomadd ", 0) == 0)
                blocks.emplace_back();
            (blocks.empty() ? head : blocks.back()) += line + "\n";
        }
        std::sort(blocks.begin(), blocks.end());
        for (const std::string &block : blocks)
            head += block;
        return head;
    }

    /// The first line where two texts differ, for failure messages.
    static std::string firstDifference(const std::string &expected, const std::string &actual)
    {
        size_t at = 0;
        int line = 1;
        while (at < expected.size() && at < actual.size() && expected[at] == actual[at])
            line += expected[at++] == '\n';
        auto lineAt = [](const std::string &text, size_t pos)
        {
            const size_t begin = text.rfind('\n', pos == 0 ? 0 : pos - 1);
            const size_t from = begin == std::string::npos || pos == 0 ? 0 : begin + 1;
            return text.substr(from, text.find('\n', from) - from);
        };
        return "line " + std::to_string(line) + ": expected `" + lineAt(expected, at) + "`, got `" +
               lineAt(actual, at) + "`";
    }
};
