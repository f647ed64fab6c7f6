// GZ_BindingSelectorInfo: one selector bound to an operator type.
#include "resource/GZ_BindingSelectorInfo.h"

GZ_BindingSelectorInfo::GZ_BindingSelectorInfo(std::string name, std::string description,
                                               std::string prompt, std::string op_parm,
                                               std::string menu, std::string prim_mask,
                                               int op_input, bool op_input_req, bool allow_drag,
                                               bool ast_sel_all, std::string extra_info)
    : myName(std::move(name)), myDescription(std::move(description)), myPrompt(std::move(prompt)),
      myOpParm(std::move(op_parm)), myMenu(std::move(menu)), myPrimMask(std::move(prim_mask)),
      myOpInput(op_input), myOpInputReq(op_input_req), myAllowDrag(allow_drag),
      myAstSelAll(ast_sel_all), myExtraInfo(std::move(extra_info))
{
}
