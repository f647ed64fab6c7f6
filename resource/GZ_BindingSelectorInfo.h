// GZ_BindingSelectorInfo: one selector bound to an operator type.
#pragma once

#include <string>

/// A selector bound to an operator type: which selector prompts for which operator input,
/// and which operator parameter receives the selection text. Identified within its operator
/// type by the description. Equality is identity (the same object), not field comparison.
class GZ_BindingSelectorInfo
{
public:
    GZ_BindingSelectorInfo() = default;
    GZ_BindingSelectorInfo(std::string name, std::string description, std::string prompt,
                           std::string op_parm, std::string menu, std::string prim_mask,
                           int op_input, bool op_input_req, bool allow_drag, bool ast_sel_all,
                           std::string extra_info);

    const std::string &getName() const { return myName; }
    const std::string &getDescription() const { return myDescription; }
    const std::string &getPrompt() const { return myPrompt; }
    /// The operator parameter that receives the selection (group) text; empty for none.
    const std::string &getOpParm() const { return myOpParm; }
    const std::string &getMenu() const { return myMenu; }
    const std::string &getPrimMask() const { return myPrimMask; }
    int getOpInput() const { return myOpInput; }
    bool getOpInputReq() const { return myOpInputReq; }
    bool getAllowDrag() const { return myAllowDrag; }
    bool getAstSelAll() const { return myAstSelAll; }
    const std::string &getExtraInfo() const { return myExtraInfo; }

    bool operator==(const GZ_BindingSelectorInfo &other) const { return this == &other; }
    bool operator!=(const GZ_BindingSelectorInfo &other) const { return this != &other; }

private:
    std::string myName;
    std::string myDescription;
    std::string myPrompt;
    std::string myOpParm;
    std::string myMenu;
    std::string myPrimMask;
    int myOpInput = 0;
    bool myOpInputReq = false;
    bool myAllowDrag = false;
    bool myAstSelAll = false;
    std::string myExtraInfo;
};
