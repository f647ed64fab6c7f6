// gz_ExprLexer: splits expression text into tokens for gz_ExprParser.
#pragma once

#include <string>

/// Kinds of expression tokens.
enum class gz_ExprTokenKind
{
    End,      ///< the end of the text
    Number,   ///< a decimal number, with optional fraction and exponent
    String,   ///< a quoted string; the token text is the unescaped contents
    Ident,    ///< a name: letters, digits, '_' (not starting with a digit)
    Variable, ///< '$' followed by a name; the token text is the name without '$'
    Op,       ///< an operator or punctuation; the token text is its spelling
    Error     ///< a character that starts no token, or an unterminated string
};

/// One token with its byte offset in the text.
struct gz_ExprToken
{
    gz_ExprTokenKind myKind = gz_ExprTokenKind::End;
    std::string myText;
    double myNumber = 0.0;
    size_t myOffset = 0;
};

/// Reads tokens one at a time from a text it does not own (the text must outlive it).
///
/// Grammar of tokens:
///   number   := digits ["." digits] [("e"|"E") ["+"|"-"] digits] | "." digits [exponent]
///   string   := '"' chars '"' | "'" chars "'"   (backslash escapes \" \' \\ \n \t)
///   ident    := (letter | "_") (letter | digit | "_")*
///   variable := "$" ident
///   op       := "==" "!=" "<=" ">=" "&&" "||" "+" "-" "*" "/" "%" "^" "<" ">" "!" "(" ")" ","
/// White space between tokens is skipped.
class gz_ExprLexer
{
public:
    explicit gz_ExprLexer(const std::string &text) : myText(text) {}

    /// The next token; after End or Error, keeps returning it.
    gz_ExprToken next();

private:
    gz_ExprToken lexNumber();
    gz_ExprToken lexString();
    gz_ExprToken lexName(gz_ExprTokenKind kind, size_t start);

    const std::string &myText;
    size_t myPos = 0;
};
