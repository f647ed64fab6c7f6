// HostChoiceList: the menu of a parameter template (static items or a script that makes them).
#pragma once

#include <string>
#include <vector>

/// A menu attached to a parameter template: either a fixed list of (token, label) items or a
/// script that produces them, plus behaviour bits. Plain value; owned by its template.
class HostChoiceList
{
public:
    /// Behaviour bits of a menu.
    enum Flag : unsigned
    {
        REPLACE = 0x1,     ///< picking an item replaces the value (else it toggles a token)
        USE_TOKEN = 0x10,  ///< the value is the item's token rather than its index
        EXCLUSIVE = 0x1000 ///< the value must be one of the items
    };

    struct Item
    {
        std::string myToken;
        std::string myLabel;
    };

    HostChoiceList() = default;
    explicit HostChoiceList(unsigned flags) : myFlags(flags) {}

    unsigned flags() const { return myFlags; }
    void setFlags(unsigned flags) { myFlags = flags; }
    bool isExclusive() const { return (myFlags & EXCLUSIVE) != 0; }
    bool isReplace() const { return (myFlags & REPLACE) != 0; }
    bool usesToken() const { return (myFlags & USE_TOKEN) != 0; }

    void addItem(const std::string &token, const std::string &label);
    const std::vector<Item> &items() const { return myItems; }
    int getNumItems() const { return static_cast<int>(myItems.size()); }
    /// The token of item i, or empty when i is out of range.
    const std::string &getToken(int i) const;
    const std::string &getLabel(int i) const;
    /// Index of the first item with that token, or -1.
    int findToken(const std::string &token) const;

    /// A dynamic menu is built by its script each time it is shown.
    bool isDynamic() const { return !myScript.empty() || myDynamic; }
    void setDynamic(bool dynamic) { myDynamic = dynamic; }
    const std::string &getScript() const { return myScript; }
    /// Language of the script: 0 the host command language, 1 the scripting language.
    int getScriptLanguage() const { return myScriptLanguage; }
    void setScript(const std::string &script, int language);

    bool operator==(const HostChoiceList &o) const;
    bool operator!=(const HostChoiceList &o) const { return !(*this == o); }

private:
    std::vector<Item> myItems;
    std::string myScript;
    int myScriptLanguage = 1;
    unsigned myFlags = EXCLUSIVE;
    bool myDynamic = false;
};
