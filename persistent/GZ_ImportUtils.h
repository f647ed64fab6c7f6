// GZ_ImportUtils: source and token strings of parameter imports, and their checks.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

class HostNode;
class HostParm;
class HostParmTemplate;
class HostScriptPage;
class HostScriptParm;

/// What an import source names.
enum GZ_ImportType
{
    GZ_IMPORT_NONE = 0, ///< no source at all
    GZ_IMPORT_OP = 1,   ///< a node: "op:" followed by its path
    GZ_IMPORT_FILE = 2  ///< a dialog-script file
};

/// Static helpers for parameter imports. An import group of a parameter interface takes a
/// parameter, or a whole folder tab, from a source: a node ("op:" + path) or a dialog-script
/// file (any other text). Its token names what it takes: a parameter name, or for a folder
/// "FOLDERNAME:TABLABEL". These functions build and read those strings, read an import file,
/// and tell whether an import still names something it may take from its source.
///
/// Nothing is owned here except the page `parseImportFile` hands back. Lookups go through
/// maps the caller builds once per source, so checking many imports against one source costs
/// a logarithmic lookup each.
class GZ_ImportUtils
{
public:
    /// The tag that keeps a template (or, with ":" and a tab index, one switcher tab) from
    /// being imported.
    static constexpr const char *EXPORT_DISABLE_TAG = "export_disable";

    // Building strings (the buffer is cleared first).
    static void buildFileSource(std::string &out, const char *path);
    static void buildOpSource(std::string &out, const char *node_path);
    static void buildFolderToken(std::string &out, const char *folder, const char *tab);

    // Reading strings.
    static GZ_ImportType queryImportType(const char *source);
    /// path := source; true when it is not empty (false for null).
    static bool parseFileSource(const char *source, std::string &path);
    /// The node an "op:" source names, found relative to `relative_to`; path := the text
    /// after "op:". Null for another source, an empty path or a path that finds nothing.
    static HostNode *parseOpSource(const char *source, const HostNode *relative_to,
                                   std::string &path);
    /// The first page of the dialog-script file at `path` (host variables expanded), or null
    /// when the path is empty, the file cannot be read or the page is broken.
    static std::unique_ptr<HostScriptPage> parseImportFile(const char *path);

    /// Whether a template (tab >= 0: that tab of a switcher) may be imported.
    static bool isAvailableForImport(const HostParmTemplate *tmpl, int tab_index);
    static bool isAvailableForImport(const HostParm *parm, int tab_index);

    /// The blocks of a parsed import file by name, as validateFileSource reads them:
    /// ordinary parameters and multiparms, also those inside folders (not inside multiparms
    /// or imports, whose contents are not importable by name); the first block of a name
    /// wins. A switcher, which a page holds as one folder block per tab, is entered once,
    /// under its name, as a folder block whose page holds one empty folder block per tab
    /// labelled like that tab; `storage` owns those blocks.
    static void indexFileParms(const HostScriptPage &page,
                               std::vector<std::unique_ptr<HostScriptParm>> &storage,
                               std::map<std::string, HostScriptParm *> &parms);

    /// Whether an import from a file still names something suitable: the source must equal
    /// `expected_source`; a parameter token must name an entry of `parms` (a null entry is
    /// accepted) whose multiparm state is `is_multi_parm`; a folder token "NAME:LABEL" must
    /// name a folder entry that has a tab with that (non-empty) label.
    static bool validateFileSource(const char *source, const char *token, bool is_folder,
                                   bool is_multi_parm, const char *expected_source,
                                   const std::map<std::string, HostScriptParm *> &parms);
    /// The same for a node source: "op:" + `expected_path`, `parms` the node's parameters by
    /// name; a folder token must name a switcher with an importable tab of that label.
    static bool validateOpSource(const char *source, const char *token, bool is_folder,
                                 bool is_multi_parm, const char *expected_path,
                                 const std::map<std::string, HostParm *> &parms);
};
