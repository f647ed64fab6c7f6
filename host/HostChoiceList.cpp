// HostChoiceList: menu items and lookups.
#include "host/HostChoiceList.h"

namespace
{
const std::string theEmpty;
}

void HostChoiceList::addItem(const std::string &token, const std::string &label)
{
    myItems.push_back({token, label});
}

const std::string &HostChoiceList::getToken(int i) const
{
    return (i >= 0 && i < getNumItems()) ? myItems[i].myToken : theEmpty;
}

const std::string &HostChoiceList::getLabel(int i) const
{
    return (i >= 0 && i < getNumItems()) ? myItems[i].myLabel : theEmpty;
}

int HostChoiceList::findToken(const std::string &token) const
{
    for (int i = 0; i < getNumItems(); ++i)
        if (myItems[i].myToken == token)
            return i;
    return -1;
}

void HostChoiceList::setScript(const std::string &script, int language)
{
    myScript = script;
    myScriptLanguage = language;
}

bool HostChoiceList::operator==(const HostChoiceList &o) const
{
    if (myItems.size() != o.myItems.size())
        return false;
    for (size_t i = 0; i < myItems.size(); ++i)
        if (myItems[i].myToken != o.myItems[i].myToken ||
            myItems[i].myLabel != o.myItems[i].myLabel)
            return false;
    return myScript == o.myScript && myScriptLanguage == o.myScriptLanguage &&
           myFlags == o.myFlags && myDynamic == o.myDynamic;
}
