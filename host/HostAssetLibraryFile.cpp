// HostAssetLibraryFile: reading and writing operator-type library files.
#include "host/HostAssetLibraryFile.h"

#include "host/HostDialogQuote.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <system_error>

namespace
{
const char *const theMagic = "gzoplib";
// Input counts and section sizes beyond these are taken as damage, not as data.
constexpr long long theMaxInputs = 9999;

/// Walks the text line by line, counting lines for messages.
class Cursor
{
public:
    explicit Cursor(const std::string &text) : myText(text) {}

    /// The next line without its newline; false when no complete line is left.
    bool line(std::string &out)
    {
        const size_t end = myText.find('\n', myPos);
        myLast = myLine + 1;
        if (end == std::string::npos)
            return false;
        out.assign(myText, myPos, end - myPos);
        myPos = end + 1;
        ++myLine;
        return true;
    }
    /// The next `size` bytes and the newline after them.
    bool bytes(size_t size, std::string &out)
    {
        myLast = myLine + 1;
        if (size >= myText.size() - myPos || myText[myPos + size] != '\n')
            return false;
        out.assign(myText, myPos, size);
        for (char c : out)
            myLine += c == '\n';
        myPos += size + 1;
        ++myLine;
        return true;
    }
    size_t pos() const { return myPos; }
    /// The number of the line that starts at pos().
    int nextLine() const { return myLine + 1; }
    bool atEnd() const { return myPos == myText.size(); }
    /// The line last read or tried: where damage was found.
    int lastLine() const { return myLast; }

private:
    const std::string &myText;
    size_t myPos = 0;
    int myLine = 0;
    int myLast = 1;
};

/// A whole decimal number of at most `max`, nothing else.
bool parseCount(const std::string &text, long long max, long long &value)
{
    if (text.empty() || text.size() > 18)
        return false;
    value = 0;
    for (char c : text)
    {
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + (c - '0');
    }
    return value <= max;
}

/// "KEY REST": the rest after the key and one blank.
bool keyed(const std::string &line, const std::string &key, std::string &rest)
{
    if (line.compare(0, key.size() + 1, key + " ") != 0)
        return false;
    rest = line.substr(key.size() + 1);
    return true;
}

/// A double-quoted dialog-script string spanning the whole text.
bool parseQuoted(const std::string &text, std::string &value)
{
    if (text.size() < 2 || text.front() != '"' || text.back() != '"')
        return false;
    value = HostDialogQuote::unescape(text.substr(1, text.size() - 2));
    return true;
}

/// Splits "A B" at its only blank.
bool splitPair(const std::string &text, std::string &a, std::string &b)
{
    const size_t blank = text.find(' ');
    if (blank == std::string::npos || text.find(' ', blank + 1) != std::string::npos)
        return false;
    a = text.substr(0, blank);
    b = text.substr(blank + 1);
    return true;
}

/// Splits `quoted SIZE` at the last blank (the quoted name may hold blanks).
bool splitSection(const std::string &text, std::string &name, long long &size)
{
    const size_t blank = text.rfind(' ');
    return blank != std::string::npos && parseQuoted(text.substr(0, blank), name) &&
           parseCount(text.substr(blank + 1), 1LL << 40, size);
}

bool fail(std::string &error, const char *why)
{
    error = why;
    return false;
}

bool parseDefinition(Cursor &in, const std::string &first, HostAssetDefinition &out,
                     std::string &error)
{
    std::string rest, name, label, line, lo, hi;
    long long min_inputs = 0, max_inputs = 0;
    if (!parseQuoted(first, name) || name.empty())
        return fail(error, "bad definition name");
    if (!in.line(line) || !keyed(line, "label", rest) || !parseQuoted(rest, label))
        return fail(error, "expected a label line");
    if (!in.line(line) || !keyed(line, "inputs", rest) || !splitPair(rest, lo, hi) ||
        !parseCount(lo, theMaxInputs, min_inputs) || !parseCount(hi, theMaxInputs, max_inputs))
        return fail(error, "expected an inputs line");
    const int first_line = in.nextLine() - 3;
    out = HostAssetDefinition(name, label, static_cast<int>(min_inputs),
                              static_cast<int>(max_inputs));
    out.setLine(first_line);
    while (in.line(line))
    {
        if (line == "end definition")
            return true;
        std::string section, bytes;
        long long size = 0;
        if (!keyed(line, "section", rest) || !splitSection(rest, section, size))
            return fail(error, "expected a section or the end of the definition");
        if (out.findSection(section))
            return fail(error, "section given twice");
        const int bytes_line = in.nextLine();
        if (!in.bytes(static_cast<size_t>(size), bytes))
            return fail(error, "section shorter than its size");
        out.setSection(section, bytes);
        out.setSectionLine(section, bytes_line);
    }
    return fail(error, "the file ends inside a definition");
}

bool parseAll(Cursor &in, const std::string &text, std::vector<HostAssetDefinition> &out,
              std::string &error)
{
    std::string line, rest;
    if (!in.line(line) ||
        line != std::string(theMagic) + " " + std::to_string(HostAssetLibraryFile::theVersion))
        return fail(error, "not an operator type library of this version");
    std::set<std::string> names;
    for (;;)
    {
        const size_t start = in.pos();
        if (!in.line(line))
            return fail(error, "the file ends before its last line");
        if (keyed(line, "definition", rest))
        {
            out.emplace_back();
            if (!parseDefinition(in, rest, out.back(), error))
                return false;
            if (!names.insert(out.back().getName()).second)
                return fail(error, "definition given twice");
            continue;
        }
        std::string count_text, sum;
        long long count = 0;
        if (!keyed(line, "end library", rest) || !splitPair(rest, count_text, sum) ||
            !parseCount(count_text, 1LL << 40, count))
            return fail(error, "expected a definition or the last line");
        if (static_cast<size_t>(count) != out.size())
            return fail(error, "wrong number of definitions");
        if (sum != HostAssetLibraryFile::checksum(text.substr(0, start)))
            return fail(error, "checksum mismatch");
        if (!in.atEnd())
            return fail(error, "bytes after the last line");
        return true;
    }
}
} // namespace

std::string HostAssetLibraryFile::checksum(const std::string &bytes)
{
    std::uint64_t hash = 14695981039346656037ULL;
    for (unsigned char c : bytes)
        hash = (hash ^ c) * 1099511628211ULL;
    char text[17];
    std::snprintf(text, sizeof(text), "%016llx", static_cast<unsigned long long>(hash));
    return text;
}

std::string HostAssetLibraryFile::format(const std::vector<HostAssetDefinition> &definitions)
{
    std::string text = std::string(theMagic) + " " + std::to_string(theVersion) + "\n";
    for (const HostAssetDefinition &def : definitions)
    {
        text += "definition " + HostDialogQuote::quote(def.getName()) + "\n";
        text += "label " + HostDialogQuote::quote(def.getLabel()) + "\n";
        text += "inputs " + std::to_string(def.getMinInputs()) + " " +
                std::to_string(def.getMaxInputs()) + "\n";
        for (const HostAssetDefinition::Section &section : def.getSections())
        {
            text += "section " + HostDialogQuote::quote(section.first) + " " +
                    std::to_string(section.second.size()) + "\n";
            text += section.second + "\n";
        }
        text += "end definition\n";
    }
    const std::string sum = checksum(text);
    return text + "end library " + std::to_string(definitions.size()) + " " + sum + "\n";
}

bool HostAssetLibraryFile::parse(const std::string &text,
                                 std::vector<HostAssetDefinition> &definitions, std::string &error,
                                 int &line)
{
    definitions.clear();
    Cursor in(text);
    if (parseAll(in, text, definitions, error))
        return true;
    definitions.clear();
    line = in.lastLine();
    return false;
}

bool HostAssetLibraryFile::write(const std::string &path,
                                 const std::vector<HostAssetDefinition> &definitions,
                                 std::string &error)
{
    namespace fs = std::filesystem;
    const std::string temp = path + ".new";
    std::error_code ec;
    const fs::path parent = fs::path(path).parent_path();
    if (!parent.empty())
        fs::create_directories(parent, ec);
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        if (!out)
        {
            error = "cannot write " + temp;
            return false;
        }
        out << format(definitions);
        out.close();
        if (!out)
        {
            fs::remove(temp, ec);
            error = "cannot write " + temp;
            return false;
        }
    }
    fs::rename(temp, path, ec);
    if (ec)
    {
        fs::remove(temp, ec);
        error = "cannot replace " + path;
        return false;
    }
    return true;
}
