// GZ_SettingList: list operations, the settings-text parser and writer.
#include "link/GZ_SettingList.h"

#include "host/HostDiagnostics.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>
#include <iostream>
#include <limits>
#include <unordered_map>
#include <unordered_set>

namespace
{
// Below this many settings a linear scan beats building a hash index.
constexpr std::size_t theIndexThreshold = 64;
constexpr std::size_t theNotFound = static_cast<std::size_t>(-1);

const char *const theErrorPrefix = "Handle Setting Error: ";

bool isSettingSpace(char c)
{
    switch (c)
    {
    case ' ':
    case '\t':
    case '\n':
    case '\v':
    case '\f':
    case '\r':
        return true;
    default:
        return false;
    }
}

bool isNumberChar(char c)
{
    return (c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The number of leading characters of word that form a decimal floating-point number:
/// [sign] digits [. digits] [(e|E) [sign] digits], at least one mantissa digit, the
/// exponent only when it has a digit. Zero when the word does not start with a number.
std::size_t leadingNumberLength(std::string_view word)
{
    std::size_t i = 0;
    const std::size_t n = word.size();
    if (i < n && (word[i] == '+' || word[i] == '-'))
        ++i;
    std::size_t digits = 0;
    while (i < n && isDigit(word[i]))
        ++i, ++digits;
    if (i < n && word[i] == '.')
    {
        ++i;
        while (i < n && isDigit(word[i]))
            ++i, ++digits;
    }
    if (digits == 0)
        return 0;
    if (i < n && (word[i] == 'e' || word[i] == 'E'))
    {
        std::size_t j = i + 1;
        if (j < n && (word[j] == '+' || word[j] == '-'))
            ++j;
        if (j < n && isDigit(word[j]))
        {
            while (j < n && isDigit(word[j]))
                ++j;
            i = j;
        }
    }
    return i;
}

/// Whether a decimal number text (as accepted by leadingNumberLength) whose value is out of
/// the double range is too large rather than too small: its decimal magnitude, the position
/// of the first significant digit plus the exponent, is positive.
bool overflows(std::string_view number)
{
    std::size_t i = (number[0] == '+' || number[0] == '-') ? 1 : 0;
    long long magnitude = 0;
    bool significant = false;
    for (; i < number.size() && isDigit(number[i]); ++i)
    {
        significant = significant || number[i] != '0';
        if (significant)
            ++magnitude;
    }
    if (i < number.size() && number[i] == '.')
    {
        for (++i; i < number.size() && isDigit(number[i]) && !significant; ++i)
        {
            significant = number[i] != '0';
            if (!significant)
                --magnitude;
        }
        while (i < number.size() && isDigit(number[i]))
            ++i;
    }
    if (i < number.size())
    {
        // Exponent, saturated: anything beyond a few thousand decides the same way.
        ++i;
        bool negative = false;
        if (number[i] == '+' || number[i] == '-')
            negative = number[i++] == '-';
        long long exponent = 0;
        for (; i < number.size(); ++i)
            exponent = std::min<long long>(exponent * 10 + (number[i] - '0'), 1000000);
        magnitude += negative ? -exponent : exponent;
    }
    return magnitude > 0;
}

/// The value of the longest leading decimal number of word; 0 when there is none. Values
/// beyond the double range become the largest finite double or zero of the right sign (an
/// infinity would be written as "inf", which settings text cannot read back). Independent
/// of the C locale, so a written list always reads back the same.
double lenientNumber(std::string_view word)
{
    const std::size_t length = leadingNumberLength(word);
    if (length == 0)
        return 0.0;
    std::string_view number = word.substr(0, length);
    const bool negative = number[0] == '-';
    // from_chars accepts a leading minus but not a plus.
    const std::string_view digits = number[0] == '+' ? number.substr(1) : number;
    double value = 0.0;
    const std::from_chars_result r =
        std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (r.ec == std::errc::result_out_of_range)
    {
        value = overflows(number) ? std::numeric_limits<double>::max() : 0.0;
        return negative ? -value : value;
    }
    return value;
}

/// Truncation toward zero, clamped to the int range; NaN reads as 0.
int truncateToInt(double value)
{
    if (std::isnan(value))
        return 0;
    if (value >= static_cast<double>(INT_MAX))
        return INT_MAX;
    if (value <= static_cast<double>(INT_MIN))
        return INT_MIN;
    return static_cast<int>(value);
}
} // namespace

/// The settings-text parser: one pass over the text with the state machine below, adding
/// each finished setting to the list as it goes.
///
/// Grammar: settings separated by white space (blank, tab, newline, vertical tab, form
/// feed, carriage return), leading and trailing white space allowed. A setting is a name
/// (characters that are neither white space nor "("), optional white space, "(", one to
/// four values separated by white space, ")". A value is a number word (characters up to
/// white space or ")", which must all be in "0123456789.-+eE") or a quoted string ("'" up
/// to the next unescaped "'"; a backslash makes the next character literal and is
/// dropped). A string must be the only value; the count of number words gives the type.
///
/// Names and number words are kept as views into the text; only string values are copied
/// (they may hold escapes), so parsing a typical line allocates little beyond the settings.
class gz_SettingParser
{
public:
    explicit gz_SettingParser(GZ_SettingList &list) : myList(list) {}

    void parse(const char *text);
    const std::string &errors() const { return myErrors; }

private:
    enum State
    {
        BETWEEN_SETTINGS = 0,
        IN_NAME = 1,
        AFTER_NAME = 2,
        IN_VALUE = 3,
        BETWEEN_VALUES = 4,
        FAILED = 5
    };

    void inName();
    void afterName();
    void inValue();
    void betweenValues();
    void atEnd();

    void beginName();
    void finishSetting();
    std::unique_ptr<gz_Setting> buildSetting();
    void addSetting(std::unique_ptr<gz_Setting> setting);
    /// Index of the setting of this name in the list, or theNotFound.
    std::size_t findByName(std::string_view name);

    void error(const char *message);
    void error(const char *message, const char *suffix);

    GZ_SettingList &myList;
    const char *myPos = nullptr;
    const char *myEnd = nullptr;
    State myState = BETWEEN_SETTINGS;

    const char *myNameBegin = nullptr;
    std::string_view myName;
    std::string_view myWords[4];
    std::string myString;
    int myLastValue = -1;
    bool myIsString = false;

    std::string myErrors;
    // Built once the list grows long, so that long texts do not parse in quadratic time.
    // Parsing keeps names unique, so each name maps to its one index.
    std::unordered_map<std::string_view, std::size_t> myIndex;
    bool myIndexed = false;
};

void gz_SettingParser::parse(const char *text)
{
    myPos = text;
    myEnd = text + std::strlen(text);
    while (myPos < myEnd && myState != FAILED)
    {
        switch (myState)
        {
        case BETWEEN_SETTINGS:
            if (isSettingSpace(*myPos))
            {
                ++myPos;
                break;
            }
            beginName();
            myState = IN_NAME;
            break;
        case IN_NAME:
            inName();
            break;
        case AFTER_NAME:
            afterName();
            break;
        case IN_VALUE:
            inValue();
            break;
        case BETWEEN_VALUES:
            betweenValues();
            break;
        case FAILED:
            break;
        }
    }
    if (myState != FAILED)
        atEnd();
}

void gz_SettingParser::beginName()
{
    myNameBegin = myPos;
    myName = std::string_view();
}

void gz_SettingParser::inName()
{
    while (myPos < myEnd && !isSettingSpace(*myPos) && *myPos != '(')
        ++myPos;
    myName = std::string_view(myNameBegin, static_cast<std::size_t>(myPos - myNameBegin));
    if (myPos == myEnd)
        return;
    myState = *myPos == '(' ? BETWEEN_VALUES : AFTER_NAME;
    ++myPos;
}

void gz_SettingParser::afterName()
{
    const char c = *myPos;
    if (isSettingSpace(c))
    {
        ++myPos;
        return;
    }
    if (c == '(')
    {
        ++myPos;
        myState = BETWEEN_VALUES;
        return;
    }
    // A name with no value list: report it and take this character as the next name.
    error("Missing value for setting ");
    beginName();
    myState = IN_NAME;
}

void gz_SettingParser::inValue()
{
    if (!myIsString)
    {
        const char *begin = myWords[myLastValue].data();
        while (myPos < myEnd && !isSettingSpace(*myPos) && *myPos != ')')
            ++myPos;
        myWords[myLastValue] = std::string_view(begin, static_cast<std::size_t>(myPos - begin));
        if (myPos == myEnd)
            return;
        // A closing parenthesis ends the word and is handled again between values.
        if (isSettingSpace(*myPos))
            ++myPos;
        myState = BETWEEN_VALUES;
        return;
    }
    while (myPos < myEnd)
    {
        const char *run = myPos;
        while (myPos < myEnd && *myPos != '\'' && *myPos != '\\')
            ++myPos;
        myString.append(run, static_cast<std::size_t>(myPos - run));
        if (myPos == myEnd)
            return;
        if (*myPos == '\'')
        {
            ++myPos;
            myState = BETWEEN_VALUES;
            return;
        }
        if (myPos + 1 == myEnd)
        {
            error("Missing character following \\ in setting ");
            myState = FAILED;
            return;
        }
        myString += myPos[1];
        myPos += 2;
    }
}

void gz_SettingParser::betweenValues()
{
    const char c = *myPos;
    if (isSettingSpace(c))
    {
        ++myPos;
        return;
    }
    if (c == ')')
    {
        if (myLastValue < 0)
        {
            error("Missing values for setting ");
            myState = FAILED;
            return;
        }
        ++myPos;
        finishSetting();
        return;
    }
    if (myIsString)
    {
        error("Found value after string when parsing setting ");
        myState = FAILED;
        return;
    }
    if (myLastValue == 3)
    {
        error("Too many vector elements in setting ");
        myState = FAILED;
        return;
    }
    if (myLastValue >= 0 && c == '\'')
    {
        error("Strings may not appear in multi-element values for setting ");
        myState = FAILED;
        return;
    }
    ++myLastValue;
    if (c == '\'')
    {
        myIsString = true;
        myString.clear();
    }
    else
    {
        myWords[myLastValue] = std::string_view(myPos, 1);
    }
    ++myPos;
    myState = IN_VALUE;
}

void gz_SettingParser::atEnd()
{
    switch (myState)
    {
    case BETWEEN_SETTINGS:
    case FAILED:
        return;
    case IN_NAME:
    case AFTER_NAME:
        error("Missing value for setting ");
        break;
    case IN_VALUE:
        error(myIsString ? "Missing ' on string when parsing setting "
                         : "Missing terminating ')' when parsing setting ");
        break;
    case BETWEEN_VALUES:
        error("Missing terminating ')' when parsing setting ");
        break;
    }
    myState = FAILED;
}

void gz_SettingParser::finishSetting()
{
    addSetting(buildSetting());
    myList.mySorted = false;
    myName = std::string_view();
    for (std::string_view &word : myWords)
        word = std::string_view();
    myLastValue = -1;
    myIsString = false;
    myState = BETWEEN_SETTINGS;
}

std::unique_ptr<gz_Setting> gz_SettingParser::buildSetting()
{
    std::string name(myName);
    if (myIsString)
        return std::make_unique<gz_StringSetting>(std::move(name), std::move(myString));

    double v[4] = {0.0, 0.0, 0.0, 0.0};
    for (int i = 0; i <= myLastValue; ++i)
    {
        const std::string_view word = myWords[i];
        if (!std::all_of(word.begin(), word.end(), isNumberChar))
            error("Invalid number in setting ", ".\n    (Enclose strings in single quotes.)");
        v[i] = lenientNumber(word);
    }
    switch (myLastValue)
    {
    case 0:
        return std::make_unique<gz_NumberSetting>(std::move(name), v[0]);
    case 1:
        return std::make_unique<gz_Vector2Setting>(std::move(name), GZ_Vector2{v[0], v[1]});
    case 2:
        return std::make_unique<gz_Vector3Setting>(std::move(name), GZ_Vector3{v[0], v[1], v[2]});
    default:
        return std::make_unique<gz_Vector4Setting>(std::move(name),
                                                   GZ_Vector4{v[0], v[1], v[2], v[3]});
    }
}

void gz_SettingParser::addSetting(std::unique_ptr<gz_Setting> setting)
{
    std::vector<std::unique_ptr<gz_Setting>> &settings = myList.mySettings;
    const std::size_t found = findByName(setting->getName());
    if (found == theNotFound)
    {
        settings.push_back(std::move(setting));
        if (myIndexed)
            myIndex.emplace(settings.back()->getName(), settings.size() - 1);
        return;
    }
    // The last occurrence wins but keeps the position of the first.
    error("The setting \"", "\" appears more than once");
    if (myIndexed)
        myIndex.erase(settings[found]->getName());
    settings[found] = std::move(setting);
    if (myIndexed)
        myIndex.emplace(settings[found]->getName(), found);
}

std::size_t gz_SettingParser::findByName(std::string_view name)
{
    const std::vector<std::unique_ptr<gz_Setting>> &settings = myList.mySettings;
    if (!myIndexed && settings.size() >= theIndexThreshold)
    {
        myIndex.reserve(settings.size() * 2);
        for (std::size_t i = 0; i < settings.size(); ++i)
            myIndex.emplace(settings[i]->getName(), i);
        myIndexed = true;
    }
    if (myIndexed)
    {
        const auto it = myIndex.find(name);
        return it == myIndex.end() ? theNotFound : it->second;
    }
    for (std::size_t i = 0; i < settings.size(); ++i)
        if (settings[i]->getName() == name)
            return i;
    return theNotFound;
}

void gz_SettingParser::error(const char *message)
{
    error(message, "");
}

void gz_SettingParser::error(const char *message, const char *suffix)
{
    if (!myErrors.empty())
        myErrors += '\n';
    myErrors += theErrorPrefix;
    myErrors += message;
    myErrors += myName;
    myErrors += suffix;
}

GZ_SettingList::GZ_SettingList() = default;

GZ_SettingList::GZ_SettingList(const GZ_SettingList &other) : mySorted(other.mySorted)
{
    cloneFrom(other);
}

GZ_SettingList &GZ_SettingList::operator=(const GZ_SettingList &other)
{
    if (this == &other)
        return *this;
    mySettings.clear();
    cloneFrom(other);
    mySorted = other.mySorted;
    return *this;
}

GZ_SettingList::~GZ_SettingList() = default;

void GZ_SettingList::cloneFrom(const GZ_SettingList &other)
{
    mySettings.reserve(other.mySettings.size());
    for (const std::unique_ptr<gz_Setting> &setting : other.mySettings)
        mySettings.push_back(setting->clone());
}

namespace
{
/// The settings of a list in the order sort() would give them, without moving them.
std::vector<const gz_Setting *> sortedView(const std::vector<std::unique_ptr<gz_Setting>> &settings,
                                           bool sorted)
{
    std::vector<const gz_Setting *> view;
    view.reserve(settings.size());
    for (const std::unique_ptr<gz_Setting> &setting : settings)
        view.push_back(setting.get());
    if (!sorted)
        std::stable_sort(view.begin(), view.end(),
                         [](const gz_Setting *a, const gz_Setting *b)
                         { return a->compare(*b) < 0; });
    return view;
}
} // namespace

bool GZ_SettingList::operator==(const GZ_SettingList &other) const
{
    if (mySettings.size() != other.mySettings.size())
        return false;
    const std::vector<const gz_Setting *> mine = sortedView(mySettings, mySorted);
    const std::vector<const gz_Setting *> theirs = sortedView(other.mySettings, other.mySorted);
    for (std::size_t i = 0; i < mine.size(); ++i)
        if (mine[i]->compare(*theirs[i]) != 0)
            return false;
    return true;
}

const gz_Setting *GZ_SettingList::getSettingAt(int i) const
{
    if (i < 0 || static_cast<std::size_t>(i) >= mySettings.size())
        return nullptr;
    return mySettings[static_cast<std::size_t>(i)].get();
}

template <gz_SettingType T>
const gz_SpecificSetting<T> *GZ_SettingList::findTyped(std::string_view name) const
{
    for (const std::unique_ptr<gz_Setting> &setting : mySettings)
    {
        if (setting->getType() != T || setting->getName() != name)
            continue;
        setting->setRead(/*read=*/true);
        return static_cast<const gz_SpecificSetting<T> *>(setting.get());
    }
    return nullptr;
}

void GZ_SettingList::getSetting(std::string_view name, int &value, int dflt) const
{
    const gz_NumberSetting *s = findTyped<GZ_SETTING_NUMBER>(name);
    value = s ? truncateToInt(s->getValue()) : dflt;
}

void GZ_SettingList::getSetting(std::string_view name, double &value, double dflt) const
{
    const gz_NumberSetting *s = findTyped<GZ_SETTING_NUMBER>(name);
    value = s ? s->getValue() : dflt;
}

void GZ_SettingList::getSetting(std::string_view name, bool &value, bool dflt) const
{
    const gz_NumberSetting *s = findTyped<GZ_SETTING_NUMBER>(name);
    value = s ? truncateToInt(s->getValue()) != 0 : dflt;
}

void GZ_SettingList::getSetting(std::string_view name, GZ_Vector2 &value,
                                const GZ_Vector2 &dflt) const
{
    const gz_Vector2Setting *s = findTyped<GZ_SETTING_VECTOR2>(name);
    value = s ? s->getValue() : dflt;
}

void GZ_SettingList::getSetting(std::string_view name, GZ_Vector3 &value,
                                const GZ_Vector3 &dflt) const
{
    const gz_Vector3Setting *s = findTyped<GZ_SETTING_VECTOR3>(name);
    value = s ? s->getValue() : dflt;
}

void GZ_SettingList::getSetting(std::string_view name, GZ_Vector4 &value,
                                const GZ_Vector4 &dflt) const
{
    const gz_Vector4Setting *s = findTyped<GZ_SETTING_VECTOR4>(name);
    value = s ? s->getValue() : dflt;
}

void GZ_SettingList::getSetting(std::string_view name, std::string &value, const char *dflt) const
{
    const gz_StringSetting *s = findTyped<GZ_SETTING_STRING>(name);
    if (s)
        value = s->getValue();
    else
        value = dflt ? dflt : "";
}

void GZ_SettingList::append(std::unique_ptr<gz_Setting> setting)
{
    mySettings.push_back(std::move(setting));
    mySorted = false;
}

void GZ_SettingList::appendSetting(std::string_view name, const char *value)
{
    append(std::make_unique<gz_StringSetting>(std::string(name), value ? value : ""));
}

void GZ_SettingList::appendSetting(std::string_view name, const GZ_Vector2 &value)
{
    append(std::make_unique<gz_Vector2Setting>(std::string(name), value));
}

void GZ_SettingList::appendSetting(std::string_view name, const GZ_Vector3 &value)
{
    append(std::make_unique<gz_Vector3Setting>(std::string(name), value));
}

void GZ_SettingList::appendSetting(std::string_view name, const GZ_Vector4 &value)
{
    append(std::make_unique<gz_Vector4Setting>(std::string(name), value));
}

void GZ_SettingList::appendSetting(std::string_view name, double value)
{
    append(std::make_unique<gz_NumberSetting>(std::string(name), value));
}

void GZ_SettingList::appendSetting(std::string_view name, int value)
{
    append(std::make_unique<gz_NumberSetting>(std::string(name), static_cast<double>(value)));
}

void GZ_SettingList::appendSetting(std::string_view name, bool value)
{
    append(std::make_unique<gz_NumberSetting>(std::string(name), value ? 1.0 : 0.0));
}

void GZ_SettingList::removeSetting(std::string_view name)
{
    const auto it =
        std::find_if(mySettings.begin(), mySettings.end(),
                     [name](const std::unique_ptr<gz_Setting> &s) { return s->getName() == name; });
    if (it != mySettings.end())
        mySettings.erase(it);
}

void GZ_SettingList::clear()
{
    mySettings.clear();
}

void GZ_SettingList::sort()
{
    // Stable, and merge-based: it stays within bounds even when NaN components make
    // compare inconsistent, which an introsort would not promise.
    std::stable_sort(mySettings.begin(), mySettings.end(),
                     [](const std::unique_ptr<gz_Setting> &a, const std::unique_ptr<gz_Setting> &b)
                     { return a->compare(*b) < 0; });
    mySorted = true;
}

void GZ_SettingList::updateSettings(const GZ_SettingList &other)
{
    if (isEmpty() || other.isEmpty())
        return;
    // When names repeat, the last setting of the name takes the value: later entries
    // overwrite earlier ones in the index.
    std::unordered_map<std::string_view, gz_Setting *> lastByName;
    lastByName.reserve(mySettings.size());
    for (const std::unique_ptr<gz_Setting> &setting : mySettings)
        lastByName[setting->getName()] = setting.get();
    for (const std::unique_ptr<gz_Setting> &source : other.mySettings)
    {
        const auto it = lastByName.find(source->getName());
        if (it != lastByName.end() && it->second != source.get())
            it->second->copyValue(*source);
    }
}

void GZ_SettingList::copyMissing(const GZ_SettingList &other)
{
    if (other.isEmpty() || this == &other)
        return;
    if (isEmpty())
    {
        *this = other;
        return;
    }
    std::unordered_set<std::string_view> held;
    held.reserve(mySettings.size());
    for (const std::unique_ptr<gz_Setting> &setting : mySettings)
        held.insert(setting->getName());
    // Clones are collected first: appending could move the settings the set points into.
    std::vector<std::unique_ptr<gz_Setting>> missing;
    for (const std::unique_ptr<gz_Setting> &source : other.mySettings)
        if (held.count(source->getName()) == 0)
            missing.push_back(source->clone());
    if (missing.empty())
        return;
    for (std::unique_ptr<gz_Setting> &setting : missing)
        mySettings.push_back(std::move(setting));
    mySorted = false;
}

void GZ_SettingList::loadFromSettingString(const char *text)
{
    clear();
    if (!text)
        return;
    gz_SettingParser parser(*this);
    parser.parse(text);
    if (parser.errors().empty())
        return;
    // One report for the whole text: its problems are lines of one block.
    HostDiagnostics::report(HostDiagSeverity::Error, "", 0, parser.errors());
}

void GZ_SettingList::generateSettingString(std::ostream &os) const
{
    const std::streamsize precision = os.precision(17);
    const std::ios_base::fmtflags notation = os.flags();
    os.unsetf(std::ios_base::floatfield);
    for (std::size_t i = 0; i < mySettings.size(); ++i)
    {
        if (i > 0)
            os << ' ';
        mySettings[i]->write(os);
    }
    os.flags(notation);
    os.precision(precision);
}

void GZ_SettingList::generateSettingString(std::string &out) const
{
    out.clear();
    for (std::size_t i = 0; i < mySettings.size(); ++i)
    {
        if (i > 0)
            out += ' ';
        mySettings[i]->append(out);
    }
}

bool GZ_SettingList::findUnreadSettings(std::string &out)
{
    out.clear();
    bool found = false;
    for (const std::unique_ptr<gz_Setting> &setting : mySettings)
    {
        if (!setting->isRead())
        {
            if (found)
                out += ' ';
            setting->append(out);
            found = true;
        }
        // Reported once: a later call names only settings added since.
        setting->setRead(/*read=*/true);
    }
    return found;
}
