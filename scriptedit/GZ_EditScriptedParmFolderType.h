// GZ_EditScriptedParmFolderType: the kind of entry of an editable parameter interface.
#pragma once

/// What one entry of a parameter set is: the start of a block (folders, an import group,
/// multiparms), the end of the innermost open block, or an ordinary parameter. The values
/// are stable: they are stored and compared as plain ints.
enum GZ_EditScriptedParmFolderType
{
    GZ_FOLDER_COLLAPSIBLE = 0,  ///< "groupcollapsible {"
    GZ_FOLDER_SIMPLE = 1,       ///< "groupsimple {"
    GZ_FOLDER_TABS = 2,         ///< "group {"
    GZ_FOLDER_RADIO = 3,        ///< "groupradio {"
    GZ_FOLDER_IMPORT = 4,       ///< "import {"
    GZ_FOLDER_MULTI_LIST = 5,   ///< "multiparm {"
    GZ_FOLDER_MULTI_SCROLL = 6, ///< "multiscroll {"
    GZ_FOLDER_MULTI_SWITCH = 7, ///< "multiswitcher {"
    GZ_FOLDER_END = 8,          ///< closes the innermost open block
    GZ_FOLDER_NONE = 9          ///< an ordinary parameter
};
