// HostReader: search-path lookup and line reading.
#include "host/HostReader.h"

#include <filesystem>
#include <sstream>
#include <system_error>

namespace
{
std::vector<std::string> &searchPath()
{
    static std::vector<std::string> thePath;
    return thePath;
}

std::string &userDirectory()
{
    static std::string theDir = ".";
    return theDir;
}

bool isRegularFile(const std::string &path)
{
    std::error_code ec;
    return std::filesystem::is_regular_file(path, ec);
}

std::string joinPath(const std::string &dir, const std::string &name)
{
    if (dir.empty())
        return name;
    return dir.back() == '/' ? dir + name : dir + "/" + name;
}

void stripLineEnd(std::string &line)
{
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
}
} // namespace

void HostReader::setSearchPath(const std::vector<std::string> &dirs)
{
    searchPath() = dirs;
}

void HostReader::appendSearchPath(const std::string &dir)
{
    searchPath().push_back(dir);
}

void HostReader::clearSearchPath()
{
    searchPath().clear();
}

const std::vector<std::string> &HostReader::getSearchPath()
{
    return searchPath();
}

bool HostReader::findFile(const std::string &name, std::string &path)
{
    if (name.empty())
        return false;
    if (name[0] == '/')
    {
        if (!isRegularFile(name))
            return false;
        path = name;
        return true;
    }
    for (const std::string &dir : searchPath())
    {
        std::string candidate = joinPath(dir, name);
        if (isRegularFile(candidate))
        {
            path = candidate;
            return true;
        }
    }
    return false;
}

std::vector<std::string> HostReader::findAllFiles(const std::string &name)
{
    std::vector<std::string> result;
    if (name.empty())
        return result;
    if (name[0] == '/')
    {
        if (isRegularFile(name))
            result.push_back(name);
        return result;
    }
    for (const std::string &dir : searchPath())
    {
        std::string candidate = joinPath(dir, name);
        if (isRegularFile(candidate))
            result.push_back(candidate);
    }
    return result;
}

const std::string &HostReader::getUserDirectory()
{
    return userDirectory();
}

void HostReader::setUserDirectory(const std::string &dir)
{
    userDirectory() = dir;
}

bool HostReader::readLines(const std::string &path, std::vector<std::string> &lines)
{
    HostReader reader(path);
    if (!reader.isOpen())
        return false;
    lines.clear();
    std::string line;
    while (reader.getLine(line))
        lines.push_back(line);
    return true;
}

bool HostReader::readFile(const std::string &path, std::string &text)
{
    std::ifstream in(path, std::ios::binary);
    if (!in.is_open())
        return false;
    std::ostringstream buf;
    buf << in.rdbuf();
    text = buf.str();
    // A UTF-8 byte-order mark is not text: editors add it, and it would make the first word
    // unknown.
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0)
        text.erase(0, 3);
    return true;
}

HostReader::HostReader(const std::string &path) : myPath(path), myStream(path) {}

HostReader::~HostReader() = default;

bool HostReader::getLine(std::string &line)
{
    if (!myStream.is_open() || !std::getline(myStream, line))
        return false;
    stripLineEnd(line);
    ++myLine;
    return true;
}
