// gz_Setting: one named, typed handle setting, and its five concrete value types.
#pragma once

#include "link/GZ_Vector.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

/// The value type of a setting. The codes are part of the sort order of a setting list
/// (numbers first, then strings, then vectors by size), so they must not change.
enum gz_SettingType
{
    GZ_SETTING_NUMBER = 0,
    GZ_SETTING_STRING = 1,
    GZ_SETTING_VECTOR2 = 2,
    GZ_SETTING_VECTOR3 = 3,
    GZ_SETTING_VECTOR4 = 4
};

/// One named setting of a handle. Integers and booleans are stored as numbers.
/// The read flag records whether a getter of the owning list has found the setting (or the
/// list has reported it as unread); it is bookkeeping rather than value, so it may change
/// through a const setting.
class gz_Setting
{
public:
    explicit gz_Setting(std::string name) : myName(std::move(name)) {}
    virtual ~gz_Setting();

    virtual gz_SettingType getType() const = 0;
    /// A new setting of the same class with the same name, value and read flag.
    virtual std::unique_ptr<gz_Setting> clone() const = 0;
    /// -1, 0 or 1: type code first, then the name bytewise (unsigned), then the value.
    virtual int compare(const gz_Setting &other) const;
    /// Takes over other's value when it has the same type; does nothing otherwise.
    virtual void copyValue(const gz_Setting &other) = 0;
    /// name(value), the value written with the stream's current precision.
    virtual void write(std::ostream &os) const;
    /// Component-wise (numbers, vectors) or bytewise (strings); only meaningful between
    /// settings of the same type.
    virtual int compareValue(const gz_Setting &other) const = 0;
    virtual void writeValue(std::ostream &os) const = 0;
    /// Appends the value as writeValue would under 17 significant digits, without a stream;
    /// the string form of a setting list is written this way because it is much cheaper.
    virtual void appendValue(std::string &out) const = 0;

    /// Appends name(value) as write would under 17 significant digits.
    void append(std::string &out) const;

    const std::string &getName() const { return myName; }
    bool isRead() const { return myRead; }
    void setRead(bool read) const { myRead = read; }

protected:
    gz_Setting(const gz_Setting &) = default;
    gz_Setting &operator=(const gz_Setting &) = delete;

private:
    std::string myName;
    mutable bool myRead = false;
};

/// The C++ type that holds the value of each setting type.
template <gz_SettingType T> struct gz_SettingValue;
template <> struct gz_SettingValue<GZ_SETTING_NUMBER>
{
    using Type = double;
};
template <> struct gz_SettingValue<GZ_SETTING_STRING>
{
    using Type = std::string;
};
template <> struct gz_SettingValue<GZ_SETTING_VECTOR2>
{
    using Type = GZ_Vector2;
};
template <> struct gz_SettingValue<GZ_SETTING_VECTOR3>
{
    using Type = GZ_Vector3;
};
template <> struct gz_SettingValue<GZ_SETTING_VECTOR4>
{
    using Type = GZ_Vector4;
};

/// The concrete setting of one type code. Instantiated for the five codes only (in
/// gz_Setting.cpp).
template <gz_SettingType T> class gz_SpecificSetting final : public gz_Setting
{
public:
    using ValueType = typename gz_SettingValue<T>::Type;

    gz_SpecificSetting(std::string name, ValueType value)
        : gz_Setting(std::move(name)), myValue(std::move(value))
    {
    }

    gz_SettingType getType() const override { return T; }
    std::unique_ptr<gz_Setting> clone() const override;
    void copyValue(const gz_Setting &other) override;
    int compareValue(const gz_Setting &other) const override;
    void writeValue(std::ostream &os) const override;
    void appendValue(std::string &out) const override;

    const ValueType &getValue() const { return myValue; }
    void setValue(ValueType value) { myValue = std::move(value); }

private:
    gz_SpecificSetting(const gz_SpecificSetting &) = default;

    ValueType myValue;
};

using gz_NumberSetting = gz_SpecificSetting<GZ_SETTING_NUMBER>;
using gz_StringSetting = gz_SpecificSetting<GZ_SETTING_STRING>;
using gz_Vector2Setting = gz_SpecificSetting<GZ_SETTING_VECTOR2>;
using gz_Vector3Setting = gz_SpecificSetting<GZ_SETTING_VECTOR3>;
using gz_Vector4Setting = gz_SpecificSetting<GZ_SETTING_VECTOR4>;

extern template class gz_SpecificSetting<GZ_SETTING_NUMBER>;
extern template class gz_SpecificSetting<GZ_SETTING_STRING>;
extern template class gz_SpecificSetting<GZ_SETTING_VECTOR2>;
extern template class gz_SpecificSetting<GZ_SETTING_VECTOR3>;
extern template class gz_SpecificSetting<GZ_SETTING_VECTOR4>;

/// Appends value with 17 significant digits in general notation (as printf's "%.17g"), the
/// form in which every finite double reads back exactly.
void gzAppendSettingNumber(std::string &out, double value);

/// Appends a string value in setting-text form: quoted with "'", with a backslash before
/// every "'", "\" and double quote.
void gzAppendSettingString(std::string &out, std::string_view value);
