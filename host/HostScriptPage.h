// HostScriptPage: a page of a dialog script (or a bare parameter section), and its templates.
#pragma once

#include "host/HostScriptParm.h"
#include "host/HostSpareLayout.h"

#include <memory>
#include <string>
#include <vector>

class HostDialogStream;

/// A parsed page: "{ name ... label ... parameter blocks ... }" or the bare parameter section
/// that holds only parameter blocks. Owns its parameter blocks (and through them the pages of
/// folders, multiparms and imports). Reading is separate from applying: `parsePage` and
/// `parseSection` build the document, `buildTemplates` turns it into host templates and
/// import records, and `fromTemplates` goes the other way.
///
/// The creation of blocks and sub-pages, help reading and unknown tokens are virtual, so a
/// reader of scripted operator types extends the grammar without parsing again.
class HostScriptPage
{
public:
    static constexpr int MAX_DEPTH = 64;

    HostScriptPage();
    virtual ~HostScriptPage();

    /// Reads "{" then the page up to its "}". False at the end of input (nothing reported) or
    /// when the page is broken (reported).
    bool parsePage(HostDialogStream &in);
    /// Reads parameter blocks up to the end of input. False when anything was reported.
    bool parseSection(HostDialogStream &in);

    /// The templates and import records of this page's parameters. Returns false (with the
    /// reasons in `errors`, one line each) when a block could not be applied; the rest is
    /// still built.
    bool buildTemplates(HostSpareLayout &layout, std::string &errors) const;
    /// The templates of the one block `parm` alone, as if it were the only block of a page
    /// (a folder gives a switcher of that folder only).
    static bool buildBlockTemplates(const HostScriptParm &parm, HostSpareLayout &layout,
                                    std::string &errors);
    /// The page that describes `layout` (the inverse of buildTemplates).
    static std::unique_ptr<HostScriptPage> fromTemplates(const HostSpareLayout &layout);

    const std::string &getName() const { return myName; }
    const std::string &getLabel() const { return myLabel; }
    const std::string &getHelp() const { return myHelp; }
    const HostSpareData &getTags() const { return myTags; }
    const char *getTag(const std::string &name) const { return myTags.getValue(name); }
    int getNumParms() const { return static_cast<int>(myParms.size()); }
    HostScriptParm *getParm(int i) const { return myParms[i].get(); }
    /// The first block of that name on this page (not in folders), or null.
    HostScriptParm *findParm(const std::string &name) const;
    /// The folders that form one switcher with the folder block at i (consecutive tab or
    /// radio folders up to a tab break; a collapsible or simple folder alone): the index of
    /// the first and of the last. Both are i for a block that is no folder.
    void getSwitcherRange(int i, int &first, int &last) const;
    /// The number of folders in the switcher of block i (0 for a block that is no folder).
    int getSwitcherFolderCount(int i) const;
    /// The obsolete-parameter section, or null when the page has none.
    const HostScriptPage *getObsolete() const { return myObsolete.get(); }
    /// Appends a block (used when building a page from templates).
    void addParm(std::unique_ptr<HostScriptParm> parm) { myParms.push_back(std::move(parm)); }

    std::string myName;
    std::string myLabel;
    std::string myHelp; ///< the help lines joined by newlines
    HostSpareData myTags;

protected:
    /// A new, empty block of that kind.
    virtual std::unique_ptr<HostScriptParm> createParm(HostScriptParm::Kind kind);
    /// The pages of an import block and of folders and multiparms.
    virtual std::unique_ptr<HostScriptPage> createImportPage();
    virtual std::unique_ptr<HostScriptPage> createFolderPage();
    /// Reads the page's help block ("help {" already read): quoted lines up to "}".
    virtual bool parseHelp(HostDialogStream &in);
    /// Called for every help line read.
    virtual void addHelpLine(const std::string &line);
    /// A page-level token that is none of the page keywords. The default reports it as
    /// unknown and skips the rest of its line (and a block that starts there). Returns
    /// whether the page can go on.
    virtual bool parseUnknownToken(HostDialogStream &in, const std::string &token);

private:
    bool parseContents(HostDialogStream &in, bool braced, int depth);
    bool parseBlock(HostDialogStream &in, HostScriptParm::Kind kind, int depth);
    bool parseBlockBody(HostDialogStream &in, HostScriptParm &parm, int depth);

    std::vector<std::unique_ptr<HostScriptParm>> myParms;
    std::unique_ptr<HostScriptPage> myObsolete;
};
