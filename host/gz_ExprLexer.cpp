// gz_ExprLexer: splits expression text into tokens for gz_ExprParser.
#include "host/gz_ExprLexer.h"

#include <cctype>
#include <cstdlib>
#include <cstring>

namespace
{
bool isNameStart(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_';
}

bool isNameChar(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

bool isDigit(char c)
{
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

gz_ExprToken makeToken(gz_ExprTokenKind kind, std::string text, size_t offset)
{
    gz_ExprToken token;
    token.myKind = kind;
    token.myText = std::move(text);
    token.myOffset = offset;
    return token;
}
} // namespace

gz_ExprToken gz_ExprLexer::next()
{
    while (myPos < myText.size() && std::isspace(static_cast<unsigned char>(myText[myPos])))
        ++myPos;
    if (myPos >= myText.size())
        return makeToken(gz_ExprTokenKind::End, "", myPos);

    const char c = myText[myPos];
    const char c1 = myPos + 1 < myText.size() ? myText[myPos + 1] : '\0';
    if (isDigit(c) || (c == '.' && isDigit(c1)))
        return lexNumber();
    if (c == '"' || c == '\'')
        return lexString();
    if (isNameStart(c))
        return lexName(gz_ExprTokenKind::Ident, myPos);
    if (c == '$')
    {
        if (!isNameStart(c1))
            return makeToken(gz_ExprTokenKind::Error, "$", myPos);
        return lexName(gz_ExprTokenKind::Variable, myPos + 1);
    }

    static const char *const theTwoCharOps[] = {"==", "!=", "<=", ">=", "&&", "||"};
    for (const char *op : theTwoCharOps)
    {
        if (c == op[0] && c1 == op[1])
        {
            gz_ExprToken token = makeToken(gz_ExprTokenKind::Op, op, myPos);
            myPos += 2;
            return token;
        }
    }
    if (std::strchr("+-*/%^<>!(),", c) != nullptr)
    {
        gz_ExprToken token = makeToken(gz_ExprTokenKind::Op, std::string(1, c), myPos);
        ++myPos;
        return token;
    }
    return makeToken(gz_ExprTokenKind::Error, std::string(1, c), myPos);
}

gz_ExprToken gz_ExprLexer::lexNumber()
{
    const size_t start = myPos;
    while (myPos < myText.size() && isDigit(myText[myPos]))
        ++myPos;
    if (myPos < myText.size() && myText[myPos] == '.')
    {
        ++myPos;
        while (myPos < myText.size() && isDigit(myText[myPos]))
            ++myPos;
    }
    // An exponent only counts when digits follow; "2e" is the number 2 and the name "e".
    if (myPos < myText.size() && (myText[myPos] == 'e' || myText[myPos] == 'E'))
    {
        size_t p = myPos + 1;
        if (p < myText.size() && (myText[p] == '+' || myText[p] == '-'))
            ++p;
        if (p < myText.size() && isDigit(myText[p]))
        {
            while (p < myText.size() && isDigit(myText[p]))
                ++p;
            myPos = p;
        }
    }
    gz_ExprToken token =
        makeToken(gz_ExprTokenKind::Number, myText.substr(start, myPos - start), start);
    token.myNumber = std::strtod(token.myText.c_str(), nullptr);
    return token;
}

gz_ExprToken gz_ExprLexer::lexString()
{
    const size_t start = myPos;
    const char quote = myText[myPos++];
    std::string contents;
    while (myPos < myText.size())
    {
        char c = myText[myPos++];
        if (c == quote)
            return makeToken(gz_ExprTokenKind::String, std::move(contents), start);
        if (c == '\\' && myPos < myText.size())
        {
            c = myText[myPos++];
            if (c == 'n')
                c = '\n';
            else if (c == 't')
                c = '\t';
            else if (c != '"' && c != '\'' && c != '\\')
                contents += '\\'; // unknown escapes stay as written
        }
        contents += c;
    }
    myPos = myText.size();
    return makeToken(gz_ExprTokenKind::Error, "unterminated string", start);
}

gz_ExprToken gz_ExprLexer::lexName(gz_ExprTokenKind kind, size_t start)
{
    const size_t tokenStart = myPos;
    myPos = start;
    while (myPos < myText.size() && isNameChar(myText[myPos]))
        ++myPos;
    return makeToken(kind, myText.substr(start, myPos - start), tokenStart);
}
