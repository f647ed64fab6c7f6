// gz_BindingsParser: decodes a preprocessed bindings file into a gz_BindingsDocument.
#pragma once

#include "resource/gz_BindingsDocument.h"

#include <string>

class HostPreprocessor;

/// Reads a bindings file through the host's preprocessor and records what it holds, problems
/// included, without looking at any registry. Its grammar, by level:
///
///   file      := { operator }                 blank lines and lines starting '#' are skipped
///   operator  := NAME rest-of-line  "{" line  { entry line }  "}" line
///   entry     := "bindhandle" TYPE DESCRIPTION "SETTINGS"  handle
///              | "bindselector" NAME DESCRIPTION  selector
///   handle    := "{" { link } "}"             tokens, across lines; tokens starting '#' skipped
///   link      := CHANNEL HANDLEPARM | PARM INDEX HANDLEPARM | "{" TEXT "}" HANDLEPARM
///   selector  := "{" line, PROMPT line, OPPARM INPUT REQUIRED MASK DRAG MENU SELALL line,
///                [EXTRA line], "}" line
///
/// Problems the preprocessor meets (and #error directives) become records where they are
/// met, worded as the reader's own. Reading goes on after every problem.
class gz_BindingsParser
{
public:
    /// Decodes everything `pp` (opened by the caller) delivers into `document`.
    static void read(HostPreprocessor &pp, gz_BindingsDocument &document);

private:
    struct Location
    {
        std::string file;
        int line = 0;
    };

    gz_BindingsParser(HostPreprocessor &pp, gz_BindingsDocument &document)
        : myPP(pp), myDocument(document)
    {
    }

    void readFile();
    void readOperator(const std::string &name);
    bool readHandleEntry(const Location &opened, const std::string &op_name);
    bool readSelectorEntry(const Location &opened, const std::string &op_name);
    void readHandleBlock(const std::string &what);
    void readSelectorBlock(const std::string &what, gz_BindingsSelectorFields &fields);
    bool readSelectorFields(const std::string &first, gz_BindingsSelectorFields &fields);
    bool readBracedParm(std::string &op_parm);
    bool openBlock(const std::string &what, Location &opened);
    void skipBlock(const Location &opened, const std::string &what);

    bool nextContentLine(std::string &line);
    bool nextToken(std::string &token, bool &quoted);
    bool nextHandleToken(std::string &token, bool &quoted);
    void startLine(const std::string &line, std::string &token, bool *quoted = nullptr);

    Location here() const;
    /// A new record at the line last read.
    gz_BindingsRecord &add(gz_BindingsRecord::Kind kind);
    gz_BindingsRecord &add(gz_BindingsRecord::Kind kind, const std::string &file, int line);
    int fileIndex(const std::string &file);
    void malformed(const Location &where, const std::string &what);
    void unexpected(const std::string &word, bool only_for_known_selector = false);
    void problem(const Location &where, const std::string &message, const std::string &text,
                 bool only_for_known_selector = false);

    HostPreprocessor &myPP;
    gz_BindingsDocument &myDocument;
};
