// HostScriptParm: one parameter block of a dialog script, as read.
#pragma once

#include "host/HostChoiceList.h"
#include "host/HostParmTemplate.h"
#include "host/HostSpareData.h"

#include <memory>
#include <string>
#include <vector>

class HostDialogStream;
class HostScriptPage;

/// One block of a dialog script's parameter section: an ordinary parameter ("parm {"), a
/// folder ("group {" and the other folder kinds), an import block or a multiparm, with every
/// keyword read into plain fields. Folders, imports and multiparms own the page of what they
/// contain. A plain document: reading fills it, `HostScriptPage::buildTemplates` applies it.
///
/// Readers of richer scripts derive from it and override `parseKeyword`, handling their own
/// keywords and passing the rest on.
class HostScriptParm
{
public:
    enum Kind
    {
        PARM,
        GROUP_COLLAPSIBLE,
        GROUP_SIMPLE,
        GROUP_TAB,
        GROUP_RADIO,
        IMPORT,
        MULTI_LIST,
        MULTI_SCROLL,
        MULTI_SWITCHER
    };
    /// Menu styles, in the order of their keywords: menu, menumini, menujoin, menureplace,
    /// menutoggle.
    enum MenuStyle
    {
        MENU_NORMAL,
        MENU_MINI,
        MENU_JOIN,
        MENU_REPLACE,
        MENU_TOGGLE
    };
    /// One default component: its text and string meaning (0 plain).
    struct Default
    {
        std::string myText;
        int myMeaning = 0;
        bool operator==(const Default &o) const
        {
            return myText == o.myText && myMeaning == o.myMeaning;
        }
    };

    explicit HostScriptParm(Kind kind = PARM);
    virtual ~HostScriptParm();

    /// The block keyword of a kind ("parm", "group", ...), and the kind of a keyword.
    static const char *keyword(Kind kind);
    static bool kindFromKeyword(const std::string &word, Kind &kind);
    bool isFolder() const { return myKind >= GROUP_COLLAPSIBLE && myKind <= GROUP_RADIO; }
    bool isMultiparm() const { return myKind >= MULTI_LIST; }
    bool isImport() const { return myKind == IMPORT; }

    /// Reads one keyword of this block (the keyword itself already read). Returns true when it
    /// was handled (even with a reported error), false for a keyword it does not know.
    virtual bool parseKeyword(HostDialogStream &in, const std::string &keyword);
    /// Checks what only the whole block can tell (sizes against defaults); reports problems.
    virtual void finish(HostDialogStream &in);

    /// The host type of the type token, with its type extension, multi-type bits and fixed
    /// size (0 when the token leaves the size free). False for an unknown token.
    static bool typeFromToken(const std::string &token, HostParmType &type, int &extension,
                              int &multi_type, int &size);
    /// The type-variant tag value of a token that shares its host type with another token
    /// ("heading", "spacer", ...); null for the others.
    static const char *typeVariant(const std::string &token);
    /// The type token of a host type (the inverse of typeFromToken; "float" when none fits).
    static std::string tokenFromType(const HostParmTemplate &tmpl);

    /// Reads a whole word as a finite number (infinities and NaN would not survive being
    /// written back, so they are not numbers here).
    static bool parseNumber(const std::string &text, double &value);

    /// The size in force: the "size" line, else the type's fixed size, else 1.
    int effectiveSize() const;

    Kind myKind;
    int myLine = 0; ///< line of the block keyword
    std::string myName;
    std::string myLabel;
    std::string myTypeToken; ///< empty when the block has no "type" line
    int mySize = 0;          ///< 0 when the block has no "size" line
    bool myBaseParm = false;
    bool myInvisible = false;
    bool myInvisibleTab = false;
    bool myTabBreak = false;
    bool myNoLabel = false;
    bool myJoinNext = false;
    bool myUnquoted = false;
    bool myHasDefault = false;
    std::vector<Default> myDefaults;
    std::string myHelp;
    std::string myConditions[HOST_NUM_CONDITIONS];
    std::string myTabConditions[HOST_NUM_CONDITIONS];
    bool myHasMenu = false;
    int myMenuStyle = MENU_NORMAL;
    bool myUseTokenValue = false;
    std::vector<HostChoiceList::Item> myMenuItems;
    bool myMenuIsScript = false;
    std::string myMenuScript;
    /// A menu script without a `language` line is in the command language (0), which is
    /// why written scripts name only the other.
    int myMenuLanguage = 0;
    bool myHasRange = false;
    double myRangeMin = 0.0;
    double myRangeMax = 1.0;
    bool myRangeMinStrict = false;
    bool myRangeMaxStrict = false;
    int myExport = HostParmTemplate::EXPORT_NONE; ///< as a template export level
    HostSpareData myParmTags;                     ///< "parmtag"
    HostSpareData myGroupTags;                    ///< "grouptag"
    /// "bindselector" lines: name, description, prompt, input, input-required, primitive
    /// mask, allow-drag, menu, select-all.
    std::vector<std::vector<std::string>> mySelectors;
    // Import blocks.
    std::string mySource;
    std::string myToken;
    std::string myMask;
    bool myEnable = true;
    /// What a folder, multiparm or import block contains; null for a plain parameter.
    std::unique_ptr<HostScriptPage> myPage;

protected:
    bool readDefault(HostDialogStream &in);
    bool readMenu(HostDialogStream &in, int style);
    bool readRange(HostDialogStream &in);
    bool readTag(HostDialogStream &in, HostSpareData &tags);
    bool readSelector(HostDialogStream &in);
};
