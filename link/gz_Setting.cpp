// gz_Setting: comparison and text writing of the five setting types.
#include "link/gz_Setting.h"

#include <charconv>
#include <cmath>
#include <ostream>

namespace
{
int compareNumber(double a, double b)
{
    if (a < b)
        return -1;
    if (a > b)
        return 1;
    return 0;
}

int compareValues(double a, double b)
{
    return compareNumber(a, b);
}

int compareValues(const std::string &a, const std::string &b)
{
    // std::string compares through char_traits<char>, which orders bytes as unsigned.
    const int c = a.compare(b);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

int compareValues(const GZ_Vector2 &a, const GZ_Vector2 &b)
{
    if (int c = compareNumber(a.x, b.x))
        return c;
    return compareNumber(a.y, b.y);
}

int compareValues(const GZ_Vector3 &a, const GZ_Vector3 &b)
{
    if (int c = compareNumber(a.x, b.x))
        return c;
    if (int c = compareNumber(a.y, b.y))
        return c;
    return compareNumber(a.z, b.z);
}

int compareValues(const GZ_Vector4 &a, const GZ_Vector4 &b)
{
    if (int c = compareNumber(a.x, b.x))
        return c;
    if (int c = compareNumber(a.y, b.y))
        return c;
    if (int c = compareNumber(a.z, b.z))
        return c;
    return compareNumber(a.w, b.w);
}

void writeValues(std::ostream &os, double v)
{
    os << v;
}

void writeValues(std::ostream &os, const std::string &v)
{
    std::string quoted;
    gzAppendSettingString(quoted, v);
    os.write(quoted.data(), static_cast<std::streamsize>(quoted.size()));
}

void writeValues(std::ostream &os, const GZ_Vector2 &v)
{
    os << v.x << ' ' << v.y;
}

void writeValues(std::ostream &os, const GZ_Vector3 &v)
{
    os << v.x << ' ' << v.y << ' ' << v.z;
}

void writeValues(std::ostream &os, const GZ_Vector4 &v)
{
    os << v.x << ' ' << v.y << ' ' << v.z << ' ' << v.w;
}

void appendValues(std::string &out, double v)
{
    gzAppendSettingNumber(out, v);
}

void appendValues(std::string &out, const std::string &v)
{
    gzAppendSettingString(out, v);
}

void appendValues(std::string &out, const GZ_Vector2 &v)
{
    gzAppendSettingNumber(out, v.x);
    out += ' ';
    gzAppendSettingNumber(out, v.y);
}

void appendValues(std::string &out, const GZ_Vector3 &v)
{
    gzAppendSettingNumber(out, v.x);
    out += ' ';
    gzAppendSettingNumber(out, v.y);
    out += ' ';
    gzAppendSettingNumber(out, v.z);
}

void appendValues(std::string &out, const GZ_Vector4 &v)
{
    gzAppendSettingNumber(out, v.x);
    out += ' ';
    gzAppendSettingNumber(out, v.y);
    out += ' ';
    gzAppendSettingNumber(out, v.z);
    out += ' ';
    gzAppendSettingNumber(out, v.w);
}
} // namespace

namespace
{
/// Handles values that are whole multiples of 1/16 below 1e12 (flags, counts, halves,
/// quarters: most handle settings) without the general formatter. Their exact decimal
/// form has at most 16 significant digits and no exponent under "%.17g", so writing it
/// directly gives the same text. False when the value is not of that kind.
bool appendSixteenths(std::string &out, double value)
{
    static const char *const theFractions[16] = {"",     ".0625", ".125", ".1875", ".25",  ".3125",
                                                 ".375", ".4375", ".5",   ".5625", ".625", ".6875",
                                                 ".75",  ".8125", ".875", ".9375"};
    const double magnitude = std::fabs(value);
    if (!(magnitude < 1e12))
        return false;
    const double scaled = magnitude * 16.0; // exact: below 2^53
    if (scaled != std::floor(scaled))
        return false;
    const auto sixteenths = static_cast<unsigned long long>(scaled);
    char buf[24];
    char *p = buf;
    if (std::signbit(value))
        *p++ = '-';
    p = std::to_chars(p, buf + sizeof(buf), sixteenths / 16).ptr;
    out.append(buf, p);
    out += theFractions[sixteenths % 16];
    return true;
}
} // namespace

void gzAppendSettingNumber(std::string &out, double value)
{
    if (appendSixteenths(out, value))
        return;
    // Longest %.17g text: sign, 17 digits, point, "e-308": 24 characters.
    char buf[32];
    const std::to_chars_result r =
        std::to_chars(buf, buf + sizeof(buf), value, std::chars_format::general, 17);
    out.append(buf, r.ptr);
}

void gzAppendSettingString(std::string &out, std::string_view value)
{
    out += '\'';
    std::size_t run = 0;
    for (std::size_t i = 0; i < value.size(); ++i)
    {
        const char c = value[i];
        if (c != '\'' && c != '\\' && c != '"')
            continue;
        out.append(value.data() + run, i - run);
        out += '\\';
        run = i;
    }
    out.append(value.data() + run, value.size() - run);
    out += '\'';
}

gz_Setting::~gz_Setting() = default;

int gz_Setting::compare(const gz_Setting &other) const
{
    const int type = getType();
    const int otherType = other.getType();
    if (type != otherType)
        return type < otherType ? -1 : 1;
    if (int c = compareValues(myName, other.myName))
        return c;
    return compareValue(other);
}

void gz_Setting::write(std::ostream &os) const
{
    os.write(myName.data(), static_cast<std::streamsize>(myName.size()));
    os << '(';
    writeValue(os);
    os << ')';
}

void gz_Setting::append(std::string &out) const
{
    out += myName;
    out += '(';
    appendValue(out);
    out += ')';
}

template <gz_SettingType T> std::unique_ptr<gz_Setting> gz_SpecificSetting<T>::clone() const
{
    return std::unique_ptr<gz_Setting>(new gz_SpecificSetting(*this));
}

template <gz_SettingType T> void gz_SpecificSetting<T>::copyValue(const gz_Setting &other)
{
    if (other.getType() != T)
        return;
    myValue = static_cast<const gz_SpecificSetting &>(other).myValue;
}

template <gz_SettingType T> int gz_SpecificSetting<T>::compareValue(const gz_Setting &other) const
{
    // Guards a direct call between different types; compare() never makes one.
    if (other.getType() != T)
        return T < other.getType() ? -1 : 1;
    return compareValues(myValue, static_cast<const gz_SpecificSetting &>(other).myValue);
}

template <gz_SettingType T> void gz_SpecificSetting<T>::writeValue(std::ostream &os) const
{
    writeValues(os, myValue);
}

template <gz_SettingType T> void gz_SpecificSetting<T>::appendValue(std::string &out) const
{
    appendValues(out, myValue);
}

template class gz_SpecificSetting<GZ_SETTING_NUMBER>;
template class gz_SpecificSetting<GZ_SETTING_STRING>;
template class gz_SpecificSetting<GZ_SETTING_VECTOR2>;
template class gz_SpecificSetting<GZ_SETTING_VECTOR3>;
template class gz_SpecificSetting<GZ_SETTING_VECTOR4>;
