// HostTagList: parsing a tag-list text.
#include "host/HostTagList.h"

bool HostTagList::isTagChar(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.';
}

HostTagList::HostTagList(const std::string &text, std::string &errors)
{
    std::string word;
    bool bad = false;
    auto flush = [&]()
    {
        if (bad)
            errors += "Invalid tag '" + word + "'\n";
        else if (!word.empty())
            myTags.insert(word);
        word.clear();
        bad = false;
    };
    for (char c : text)
    {
        if (c == ' ' || c == '\t' || c == '\n' || c == ',')
            flush();
        else
        {
            bad = bad || !isTagChar(c);
            word += c;
        }
    }
    flush();
}
