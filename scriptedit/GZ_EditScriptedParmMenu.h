// GZ_EditScriptedParmMenu: one item of a parameter definition's menu.
#pragma once

#include <string>
#include <utility>

/// A menu item: the token stored in the parameter and the label shown for it. A plain value.
class GZ_EditScriptedParmMenu
{
public:
    GZ_EditScriptedParmMenu() = default;
    GZ_EditScriptedParmMenu(std::string token, std::string label)
        : myToken(std::move(token)), myLabel(std::move(label))
    {
    }

    const std::string &getToken() const { return myToken; }
    const std::string &getLabel() const { return myLabel; }
    void setToken(const std::string &token) { myToken = token; }
    void setLabel(const std::string &label) { myLabel = label; }

    /// An item with neither token nor label is a placeholder, not a choice: it is not written.
    bool isValidChoice() const { return !myToken.empty() || !myLabel.empty(); }

    bool operator==(const GZ_EditScriptedParmMenu &o) const
    {
        return myToken == o.myToken && myLabel == o.myLabel;
    }

private:
    std::string myToken;
    std::string myLabel;
};
