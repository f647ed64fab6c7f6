// gz_OldParm: one parameter or channel as it was when an edit began.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class GZ_EditScriptedParm;

/// What GZ_OldParms follows for one parameter (no suffix, component 0) or one of its
/// channels (the suffix that follows the parameter name, and its component) through the
/// renames and deletions of an edit.
struct gz_OldParm
{
    static constexpr uint8_t DELETED = 1;
    static constexpr uint8_t RAMP = 2;

    std::string myOriginalName;
    std::string myCurrentName;
    std::string myOriginalSuffix;
    std::string myCurrentSuffix;
    int32_t myComponent = 0;
    /// The multiparm openers that contain the parameter, outermost first; only for names
    /// holding an instance mark.
    std::vector<GZ_EditScriptedParm *> myMultiparmOwners;
    uint8_t myFlags = 0;
    /// 1 for a colour ramp, 0 for a float ramp (meaningful with RAMP).
    uint8_t myRampColor = 0;

    bool isDeleted() const { return (myFlags & DELETED) != 0; }
    bool isRamp() const { return (myFlags & RAMP) != 0; }
    bool isChanged() const
    {
        return isDeleted() || myOriginalName != myCurrentName ||
               myOriginalSuffix != myCurrentSuffix;
    }
    std::string getOldChannel() const { return myOriginalName + myOriginalSuffix; }
    std::string getNewChannel() const { return myCurrentName + myCurrentSuffix; }
};
