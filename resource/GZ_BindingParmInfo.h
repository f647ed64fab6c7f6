// GZ_BindingParmInfo: one link from a handle parameter to an operator parameter.
#pragma once

#include <string>

/// One parameter link of a bound handle instance: the operator parameter, written as a
/// channel name ("tx") or a whole parameter name, and the handle parameter that drives it.
/// Equality is identity: two links compare equal only when they are the same object.
class GZ_BindingParmInfo
{
public:
    GZ_BindingParmInfo() = default;
    GZ_BindingParmInfo(std::string op_parm, std::string gz_parm)
        : myOpParm(std::move(op_parm)), myGZParm(std::move(gz_parm))
    {
    }

    const std::string &getOpParm() const { return myOpParm; }
    const std::string &getGZParm() const { return myGZParm; }

    bool operator==(const GZ_BindingParmInfo &other) const { return this == &other; }
    bool operator!=(const GZ_BindingParmInfo &other) const { return this != &other; }

private:
    std::string myOpParm;
    std::string myGZParm;
};
