// HostScriptParm: reading the keywords of one dialog-script parameter block.
#include "host/HostScriptParm.h"

#include "host/HostDialogStream.h"
#include "host/HostLanguageNames.h"
#include "host/HostScriptPage.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace
{
const char *const KEYWORDS[] = {"parm",      "groupcollapsible", "groupsimple",
                                "group",     "groupradio",       "import",
                                "multiparm", "multiscroll",      "multiswitcher"};

const char *const CONDITIONS[HOST_NUM_CONDITIONS] = {"disablewhen", "hidewhen", "nocookwhen"};
const char *const MENUS[] = {"menu", "menumini", "menujoin", "menureplace", "menutoggle"};

/// One type token: its host type, extension, multi-type bits, fixed size (0 free) and the
/// variant tag that tells it from a token of the same host type.
struct TypeRow
{
    const char *myToken;
    HostParmType myType;
    int myExtension;
    int myMultiType;
    int mySize;
    const char *myVariant;
};

constexpr std::uint64_t ANIM = HostParmType::ANIMATABLE;
constexpr std::uint64_t INTG = HostParmType::INTEGER;
constexpr HostParmType F(std::uint64_t flags)
{
    return {HostParmBasic::Float, ANIM | flags};
}
constexpr HostParmType O(std::uint64_t flags)
{
    return {HostParmBasic::Ordinal, flags};
}
constexpr HostParmType S(std::uint64_t flags)
{
    return {HostParmBasic::String, flags};
}
constexpr HostParmType D(std::uint64_t flags)
{
    return {HostParmBasic::Data, flags};
}

const TypeRow TYPES[] = {
    {"integer", F(INTG), 0, 0, 0, nullptr},
    {"float", F(0), 0, 0, 0, nullptr},
    {"vector2", F(HostParmType::NAME_XYZW), 0, 0, 2, nullptr},
    {"vector", F(HostParmType::NAME_XYZW), 0, 0, 3, nullptr},
    {"vector4", F(HostParmType::NAME_XYZW), 0, 0, 4, nullptr},
    {"intvector2", F(INTG | HostParmType::NAME_XYZW), 0, 0, 2, nullptr},
    {"intvector", F(INTG | HostParmType::NAME_XYZW), 0, 0, 3, nullptr},
    {"intvector4", F(INTG | HostParmType::NAME_XYZW), 0, 0, 4, nullptr},
    {"uv", F(HostParmType::NAME_UVW), 0, 0, 2, nullptr},
    {"uvw", F(HostParmType::NAME_UVW), 0, 0, 3, nullptr},
    {"toggle", O(HostParmType::TOGGLE), 0, 0, 1, nullptr},
    {"ordinal", O(HostParmType::ORDINAL_MENU), 0, 0, 1, nullptr},
    {"button", O(HostParmType::BUTTON), 0, 0, 1, nullptr},
    {"angle", F(HostParmType::ANGLE | HostParmType::NAME_BEGIN_END), 0, 0, 0, nullptr},
    {"direction", F(HostParmType::POLAR | HostParmType::NAME_XYZW), 0, 0, 3, nullptr},
    {"color", F(HostParmType::RGB | HostParmType::NAME_RGBA), 0, 0, 3, nullptr},
    {"color4", F(HostParmType::RGBA | HostParmType::NAME_RGBA), 0, 0, 4, nullptr},
    {"ramp_flt", F(INTG), 0, HostParmTemplate::MULTI_RAMP_FLOAT, 1, nullptr},
    {"ramp_rgb", F(INTG), 0, HostParmTemplate::MULTI_RAMP_COLOR, 1, nullptr},
    {"string", S(0), 0, 0, 0, nullptr},
    {"file", S(HostParmType::FILE), 0, 0, 1, nullptr},
    {"directory", S(HostParmType::FILE | HostParmType::DIRECTORY), 0, 0, 1, nullptr},
    {"image", S(HostParmType::FILE | HostParmType::IMAGE_FILE), 0, 0, 1, nullptr},
    {"geometry", S(HostParmType::FILE | HostParmType::GEOMETRY_FILE), 0, 0, 1, nullptr},
    {"oppath", S(HostParmType::NODE_PATH), HostParmTemplate::EXT_NODE_PATH, 0, 1, nullptr},
    {"oplist", S(HostParmType::NODE_LIST), 0, 0, 1, nullptr},
    {"label", S(HostParmType::LABEL), 0, 0, 0, nullptr},
    {"heading", S(HostParmType::LABEL), 0, 0, 0, "heading"},
    {"message", S(HostParmType::LABEL), 0, 0, 0, "message"},
    {"separator", S(HostParmType::SEPARATOR), 0, 0, 1, nullptr},
    {"spacer", S(HostParmType::SEPARATOR), 0, 0, 1, "spacer"},
    {"rgbamask", O(HostParmType::RGBA_MASK), 0, 0, 1, nullptr},
    {"group", F(INTG), 0, 0, 1, "group"},
    {"log", F(HostParmType::LOGARITHMIC), 0, 0, 0, nullptr},
    {"intlog", F(INTG | HostParmType::LOGARITHMIC), 0, 0, 0, nullptr},
    {"data", D(0), 0, 0, 0, nullptr},
    {"geometrydata", D(HostParmType::GEOMETRY_DATA), 0, 0, 0, nullptr},
    {"keyvaluedict", D(HostParmType::KEY_VALUE_DICT), 0, 0, 1, nullptr},
    {"float_minmax", F(HostParmType::NAME_MINMAX), 0, 0, 2, nullptr},
    {"int_minmax", F(INTG | HostParmType::NAME_MINMAX), 0, 0, 2, nullptr},
    {"buttonstrip", O(HostParmType::BUTTON_STRIP), 0, 0, 1, nullptr},
    {"iconstrip", O(HostParmType::ICON_STRIP), 0, 0, 1, nullptr},
};

/// Reads the argument of a keyword; reports "Expected ... after KEYWORD" when it is missing.
bool readArg(HostDialogStream &in, const std::string &keyword, std::string &value)
{
    bool quoted = false;
    std::string peek;
    if (!in.nextOnSameLine() || !in.peekToken(peek, &quoted) ||
        (!quoted && (peek == "{" || peek == "}" || peek == "[" || peek == "]")))
    {
        in.error("Expected a value after '" + keyword + "'");
        return false;
    }
    in.getToken(value);
    return true;
}

bool expect(HostDialogStream &in, const char *what, const std::string &context)
{
    std::string token;
    bool quoted = false;
    if (in.getToken(token, &quoted) && !quoted && token == what)
        return true;
    in.error(std::string("Expected '") + what + "' in " + context);
    return false;
}
} // namespace

bool HostScriptParm::parseNumber(const std::string &text, double &value)
{
    if (text.empty())
        return false;
    char *end = nullptr;
    errno = 0;
    value = std::strtod(text.c_str(), &end);
    // Infinities and NaN are not numbers here: they would not survive being written back.
    return end && *end == '\0' && errno != ERANGE && std::isfinite(value);
}

HostScriptParm::HostScriptParm(Kind kind) : myKind(kind) {}

HostScriptParm::~HostScriptParm() = default;

const char *HostScriptParm::keyword(Kind kind)
{
    return KEYWORDS[kind];
}

bool HostScriptParm::kindFromKeyword(const std::string &word, Kind &kind)
{
    for (int k = PARM; k <= MULTI_SWITCHER; ++k)
        if (word == KEYWORDS[k])
        {
            kind = static_cast<Kind>(k);
            return true;
        }
    return false;
}

bool HostScriptParm::typeFromToken(const std::string &token, HostParmType &type, int &extension,
                                   int &multi_type, int &size)
{
    for (const TypeRow &row : TYPES)
        if (token == row.myToken)
        {
            type = row.myType;
            extension = row.myExtension;
            multi_type = row.myMultiType;
            size = row.mySize;
            return true;
        }
    return false;
}

const char *HostScriptParm::typeVariant(const std::string &token)
{
    for (const TypeRow &row : TYPES)
        if (token == row.myToken)
            return row.myVariant;
    return nullptr;
}

namespace
{
const char *vectorToken(const HostParmType &t, int size, bool integer)
{
    if (!t.namesXYZW())
        return nullptr;
    if (size == 4)
        return integer ? "intvector4" : "vector4";
    if (size == 2)
        return integer ? "intvector2" : "vector2";
    if (size == 3)
        return integer ? "intvector" : "vector";
    return nullptr;
}

const char *rampToken(const HostParmTemplate &tmpl)
{
    if (tmpl.getVectorSize() != 1)
        return nullptr;
    if (tmpl.getMultiType() & HostParmTemplate::MULTI_RAMP_FLOAT)
        return "ramp_flt";
    if (tmpl.getMultiType() & HostParmTemplate::MULTI_RAMP_COLOR)
        return "ramp_rgb";
    return nullptr;
}

bool isVariant(const HostParmTemplate &tmpl, const char *variant)
{
    const char *v = tmpl.getTag(HostSpareData::TYPE_VARIANT_TAG);
    return v && std::strcmp(v, variant) == 0;
}

const char *stringToken(const HostParmTemplate &tmpl)
{
    const HostParmType &t = tmpl.getType();
    if (t.isImageFile())
        return "image";
    if (t.isGeometryFile())
        return "geometry";
    if (t.isDirectory())
        return "directory";
    if (t.isFile())
        return "file";
    if (tmpl.getTypeExtension() == HostParmTemplate::EXT_NODE_PATH || t.isNodePath())
        return "oppath";
    if (t.isNodeList())
        return "oplist";
    if (t.isLabel())
        return isVariant(tmpl, "heading")   ? "heading"
               : isVariant(tmpl, "message") ? "message"
                                            : "label";
    if (t.isSeparator())
        return isVariant(tmpl, "spacer") ? "spacer" : "separator";
    return "string";
}

const char *floatToken(const HostParmTemplate &tmpl)
{
    const HostParmType &t = tmpl.getType();
    const int size = tmpl.getVectorSize();
    if (t.isRGBA() || t.isRGB() || t.namesRGBA())
        return size == 4 ? "color4" : "color";
    if (t.isPolar())
        return "direction";
    if (t.isLogarithmic())
        return "log";
    if (const char *v = vectorToken(t, size, /*integer=*/false))
        return v;
    if (t.namesUVW() && (size == 2 || size == 3))
        return size == 3 ? "uvw" : "uv";
    if (t.namesMinMax() && size == 2)
        return "float_minmax";
    if (t.isAngle())
        return "angle";
    return "float";
}

const char *integerToken(const HostParmTemplate &tmpl)
{
    const HostParmType &t = tmpl.getType();
    if (const char *v = vectorToken(t, tmpl.getVectorSize(), /*integer=*/true))
        return v;
    if (const char *r = rampToken(tmpl))
        return r;
    if (t.isLogarithmic())
        return "intlog";
    if (t.namesMinMax() && tmpl.getVectorSize() == 2)
        return "int_minmax";
    return isVariant(tmpl, "group") ? "group" : "integer";
}

const char *ordinalToken(const HostParmTemplate &tmpl)
{
    const HostParmType &t = tmpl.getType();
    if (t.isToggle())
        return "toggle";
    if (t.isButtonStrip())
        return "buttonstrip";
    if (t.isIconStrip())
        return "iconstrip";
    if (t.isRGBAMask())
        return "rgbamask";
    if (t.isButton())
        return "button";
    if (t.isOrdinalMenu())
        return "ordinal";
    return integerToken(tmpl);
}
} // namespace

std::string HostScriptParm::tokenFromType(const HostParmTemplate &tmpl)
{
    const HostParmType &t = tmpl.getType();
    if (t.isData())
        return t.isGeometryData() ? "geometrydata" : t.isKeyValueDict() ? "keyvaluedict" : "data";
    if (t.isString())
        return stringToken(tmpl);
    if (t.isOrdinal())
        return ordinalToken(tmpl);
    if (t.isFloat())
        return t.isInteger() ? integerToken(tmpl) : floatToken(tmpl);
    return "float";
}

int HostScriptParm::effectiveSize() const
{
    if (mySize > 0)
        return mySize;
    HostParmType type;
    int ext = 0, multi = 0, size = 0;
    if (typeFromToken(myTypeToken, type, ext, multi, size) && size > 0)
        return size;
    return 1;
}

bool HostScriptParm::readDefault(HostDialogStream &in)
{
    myHasDefault = true;
    myDefaults.clear();
    std::string token;
    bool quoted = false;
    if (!in.peekToken(token, &quoted))
        return false;
    if (quoted || token != "{")
    {
        // A multiparm's instance count: "default N".
        in.getToken(token);
        myDefaults.push_back({token, 0});
        return true;
    }
    in.getToken(token);
    while (in.getToken(token, &quoted))
    {
        if (!quoted && token == "}")
            return true;
        if (quoted || token != "[")
        {
            if (!quoted && (token == "{" || token == "]"))
                break;
            myDefaults.push_back({token, 0});
            continue;
        }
        Default d;
        std::string language;
        bool q = false;
        if (!in.getToken(d.myText, &q) || !in.getToken(language, &q) || q)
            break;
        if (!HostLanguageNames::stringMeaningFromName(language.c_str(), d.myMeaning))
            in.error("Unknown expression language '" + language + "'");
        myDefaults.push_back(d);
        if (!expect(in, "]", "a default value"))
            return false;
    }
    in.error("Malformed default block");
    return false;
}

bool HostScriptParm::readMenu(HostDialogStream &in, int style)
{
    myHasMenu = true;
    myMenuStyle = style;
    myMenuItems.clear();
    myMenuScript.clear();
    myMenuIsScript = false;
    myMenuLanguage = 0;
    std::string token;
    bool quoted = false;
    if (in.peekToken(token, &quoted) && !quoted && token == "usetokenvalue")
    {
        in.getToken(token);
        myUseTokenValue = true;
    }
    if (!expect(in, "{", "a menu"))
        return false;
    while (in.getToken(token, &quoted))
    {
        if (!quoted && token == "}")
            return true;
        if (!quoted && token == "[")
        {
            std::string piece;
            if (!in.getToken(piece) || !expect(in, "]", "a menu script line"))
                return false;
            if (myMenuIsScript)
                myMenuScript += '\n';
            myMenuScript += piece;
            myMenuIsScript = true;
            continue;
        }
        if (!quoted && token == "language")
        {
            std::string name;
            if (!in.getToken(name) ||
                !HostLanguageNames::scriptLanguageFromName(name.c_str(), myMenuLanguage))
                in.error("Unknown script language '" + name + "'");
            continue;
        }
        if (!quoted && (token == "{" || token == "]"))
            break;
        std::string label;
        bool label_quoted = false;
        if (!in.getToken(label, &label_quoted) || (!label_quoted && label == "}"))
        {
            in.error("Menu item '" + token + "' has no label");
            return !label.empty();
        }
        myMenuItems.push_back({token, label});
    }
    in.error("Malformed menu block");
    return false;
}

bool HostScriptParm::readRange(HostDialogStream &in)
{
    if (!expect(in, "{", "a range"))
        return false;
    std::string lo, hi;
    if (!in.getToken(lo) || !in.getToken(hi))
        return false;
    myRangeMinStrict = !lo.empty() && lo.back() == '!';
    myRangeMaxStrict = !hi.empty() && hi.back() == '!';
    if (myRangeMinStrict)
        lo.pop_back();
    if (myRangeMaxStrict)
        hi.pop_back();
    if (!parseNumber(lo, myRangeMin) || !parseNumber(hi, myRangeMax))
        in.error("Bad number in range { " + lo + " " + hi + " }");
    else
        myHasRange = true;
    return expect(in, "}", "a range");
}

bool HostScriptParm::readTag(HostDialogStream &in, HostSpareData &tags)
{
    std::string name, value;
    if (!expect(in, "{", "a tag") || !in.getToken(name) || !in.getToken(value))
        return false;
    tags.set(name, value);
    return expect(in, "}", "a tag");
}

bool HostScriptParm::readSelector(HostDialogStream &in)
{
    std::vector<std::string> fields;
    std::string token;
    bool quoted = false;
    while (fields.size() < 9 && in.peekToken(token, &quoted))
    {
        if (!quoted && (token == "{" || token == "}"))
            break;
        in.getToken(token);
        fields.push_back(token);
    }
    if (fields.size() < 9)
    {
        in.error("missing parameters in call to bindselector");
        return false;
    }
    mySelectors.push_back(fields);
    return true;
}

bool HostScriptParm::parseKeyword(HostDialogStream &in, const std::string &kw)
{
    std::string value;
    if (kw == "name")
    {
        if (readArg(in, kw, value))
            myName = value;
    }
    else if (kw == "label")
    {
        // An import block's label is written verbatim, to the end of its line.
        if (myKind == IMPORT)
            myLabel = in.getRestOfLine();
        else if (readArg(in, kw, value))
            myLabel = value;
    }
    else if (kw == "type")
    {
        if (readArg(in, kw, value))
        {
            HostParmType t;
            int ext = 0, multi = 0, size = 0;
            if (typeFromToken(value, t, ext, multi, size))
                myTypeToken = value;
            else
            {
                in.error("Unknown parameter type '" + value + "'");
                myTypeToken = "float";
            }
        }
    }
    else if (kw == "size")
    {
        double n = 0;
        if (!readArg(in, kw, value))
            return true;
        if (!parseNumber(value, n) || n != std::floor(n))
            in.error("Bad size '" + value + "'");
        else if (n < 1 || n > 16)
            in.error("Size " + value + " is outside 1 to 16");
        else
            mySize = static_cast<int>(n);
    }
    else if (kw == "baseparm")
        myBaseParm = true;
    else if (kw == "invisible")
        myInvisible = true;
    else if (kw == "invisibletab")
        myInvisibleTab = true;
    else if (kw == "tabbreak")
        myTabBreak = true;
    else if (kw == "nolabel")
        myNoLabel = true;
    else if (kw == "joinnext")
        myJoinNext = true;
    else if (kw == "unquoted")
        myUnquoted = true;
    else if (kw == "default")
        readDefault(in);
    else if (kw == "help")
    {
        if (readArg(in, kw, value))
            myHelp = value;
    }
    else if (kw == "range")
        readRange(in);
    else if (kw == "export")
    {
        if (!readArg(in, kw, value))
            return true;
        if (value == "none")
            myExport = HostParmTemplate::EXPORT_NONE;
        else if (value == "dialog")
            myExport = HostParmTemplate::EXPORT_DIALOG;
        else if (value == "all")
            myExport = HostParmTemplate::EXPORT_ALL;
        else
            in.error("Unknown export level '" + value + "'");
    }
    else if (kw == "parmtag")
        readTag(in, myParmTags);
    else if (kw == "grouptag")
        readTag(in, myGroupTags);
    else if (kw == "bindselector")
        readSelector(in);
    else if (kw == "source" || kw == "token" || kw == "mask")
    {
        if (readArg(in, kw, value))
            (kw == "source" ? mySource : kw == "token" ? myToken : myMask) = value;
    }
    else if (kw == "enable")
    {
        double n = 0;
        if (!readArg(in, kw, value))
            return true;
        if (!parseNumber(value, n))
            in.error("Bad number '" + value + "' after 'enable'");
        else
            myEnable = n != 0;
    }
    else
    {
        for (int c = 0; c < HOST_NUM_CONDITIONS; ++c)
        {
            if (kw == CONDITIONS[c] && readArg(in, kw, value))
                myConditions[c] = value;
            if (kw == std::string(CONDITIONS[c]) + "tab" && readArg(in, kw, value))
                myTabConditions[c] = value;
            if (kw == CONDITIONS[c] || kw == std::string(CONDITIONS[c]) + "tab")
                return true;
        }
        for (int m = MENU_NORMAL; m <= MENU_TOGGLE; ++m)
            if (kw == MENUS[m])
            {
                readMenu(in, m);
                return true;
            }
        return false;
    }
    return true;
}

void HostScriptParm::finish(HostDialogStream &in)
{
    if (myKind != PARM || myBaseParm)
        return;
    const int size = effectiveSize();
    // A parameter without components (separators) writes one empty default.
    if (static_cast<int>(myDefaults.size()) > size &&
        !(myDefaults.size() == 1 && myDefaults[0].myText.empty()))
        in.error("Parameter '" + myName + "' has " + std::to_string(myDefaults.size()) +
                 " default values for size " + std::to_string(size));
    if (static_cast<int>(myDefaults.size()) > size)
        myDefaults.resize(size);
}
