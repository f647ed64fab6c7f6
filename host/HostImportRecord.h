// HostImportRecord: one import block of a parameter interface, kept beside its templates.
#pragma once

#include <string>

/// An import group of a parameter interface: parameters (or a folder tab) taken from a node
/// ("op:" followed by its path) or from a dialog-script file. Templates cannot hold it, so a
/// template list carries its imports as a separate list of records.
///
/// Position: the record stands inside folder `myFolder` of the switcher template at flat index
/// `mySwitcher` of the top-level list (both -1 at the top level), right after the template at
/// flat index `myAfter` together with everything that template holds (a switcher's folders),
/// or, with `myAfter` -1, first in that folder (or first of all). Several records at one place
/// keep their list order.
struct HostImportRecord
{
    int mySwitcher = -1;
    int myFolder = -1;
    int myAfter = -1;
    std::string myLabel;
    std::string mySource;
    std::string myToken;
    std::string myMask;
    bool myEnable = true;

    bool operator==(const HostImportRecord &o) const
    {
        return mySwitcher == o.mySwitcher && myFolder == o.myFolder && myAfter == o.myAfter &&
               myLabel == o.myLabel && mySource == o.mySource && myToken == o.myToken &&
               myMask == o.myMask && myEnable == o.myEnable;
    }
    bool operator!=(const HostImportRecord &o) const { return !(*this == o); }
};
