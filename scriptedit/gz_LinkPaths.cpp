// gz_LinkPaths: the path arithmetic of auto-link lists.
#include "scriptedit/gz_LinkPaths.h"

std::string gz_LinkPaths::absolutePath(const std::string &path, const std::string &base)
{
    const std::string full = !path.empty() && path[0] == '/' ? path : base + "/" + path;
    std::vector<std::string> parts;
    size_t start = 0;
    while (start <= full.size())
    {
        size_t slash = full.find('/', start);
        if (slash == std::string::npos)
            slash = full.size();
        const std::string part = full.substr(start, slash - start);
        if (part == "..")
        {
            if (!parts.empty())
                parts.pop_back();
        }
        else if (!part.empty() && part != ".")
            parts.push_back(part);
        start = slash + 1;
    }
    std::string out;
    for (const std::string &part : parts)
        out += "/" + part;
    return out.empty() ? "/" : out;
}

std::vector<std::string> gz_LinkPaths::split(const std::string &links)
{
    std::vector<std::string> out;
    size_t start = 0;
    while (start < links.size())
    {
        const size_t begin = links.find_first_not_of(" \t\n", start);
        if (begin == std::string::npos)
            break;
        size_t end = links.find_first_of(" \t\n", begin);
        if (end == std::string::npos)
            end = links.size();
        out.push_back(links.substr(begin, end - begin));
        start = end;
    }
    return out;
}
