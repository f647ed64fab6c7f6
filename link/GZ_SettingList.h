// GZ_SettingList: the ordered, typed settings of a handle and their one-line text form.
#pragma once

#include "link/GZ_Vector.h"
#include "link/gz_Setting.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class gz_SettingParser;

/// The settings of one handle (display options, owner operator, tool options), kept in
/// insertion order, e.g. the text `color(0.5 0.5 1) showoppath(1) ownerop('geo1')`.
/// Owns its settings. Names need not be unique (only parsing replaces duplicates); every
/// lookup returns the first setting of the name in array order. Lists are short, so lookups
/// are linear scans; the merge operations index names while they run.
///
/// Getters are const: they only set the read flag of the setting they find, which
/// findUnreadSettings consults to report the settings that nobody asked for.
class GZ_SettingList
{
public:
    GZ_SettingList();
    GZ_SettingList(const GZ_SettingList &other);
    GZ_SettingList &operator=(const GZ_SettingList &other);
    ~GZ_SettingList();

    /// Same settings regardless of order; neither list changes.
    bool operator==(const GZ_SettingList &other) const;
    bool operator!=(const GZ_SettingList &other) const { return !(*this == other); }

    bool isEmpty() const { return mySettings.empty(); }
    int getNumSettings() const { return static_cast<int>(mySettings.size()); }
    /// The setting at index i in array order; null when i is out of range.
    const gz_Setting *getSettingAt(int i) const;

    // Typed getters: the first setting of this name *and* the matching type fills value and
    // is marked read; otherwise value receives the default. Numbers are truncated toward
    // zero for int and bool (0.5 reads as false).
    void getSetting(std::string_view name, int &value, int dflt) const;
    void getSetting(std::string_view name, double &value, double dflt) const;
    void getSetting(std::string_view name, bool &value, bool dflt) const;
    void getSetting(std::string_view name, GZ_Vector2 &value, const GZ_Vector2 &dflt) const;
    void getSetting(std::string_view name, GZ_Vector3 &value, const GZ_Vector3 &dflt) const;
    void getSetting(std::string_view name, GZ_Vector4 &value, const GZ_Vector4 &dflt) const;
    /// A null default gives an empty string.
    void getSetting(std::string_view name, std::string &value, const char *dflt) const;

    // Appending never looks for an existing setting of the name.
    /// A null or empty value appends an empty string.
    void appendSetting(std::string_view name, const char *value);
    void appendSetting(std::string_view name, const GZ_Vector2 &value);
    void appendSetting(std::string_view name, const GZ_Vector3 &value);
    void appendSetting(std::string_view name, const GZ_Vector4 &value);
    void appendSetting(std::string_view name, double value);
    void appendSetting(std::string_view name, int value);
    /// Stored as the number 0 or 1.
    void appendSetting(std::string_view name, bool value);

    /// Deletes the first setting of this name, whatever its type.
    void removeSetting(std::string_view name);
    void clear();
    /// Ascending gz_Setting::compare order: type code, then name, then value.
    void sort();

    /// Takes over the values of other's settings into this list's settings of the same name
    /// (the last one when there are several) where the types agree. Adds nothing.
    void updateSettings(const GZ_SettingList &other);
    /// Appends clones of other's settings whose names this list does not hold; an empty
    /// list becomes a copy of other.
    void copyMissing(const GZ_SettingList &other);

    /// Replaces the contents with the settings parsed from text (null: none). Parse errors
    /// are printed to standard error as one block; whatever parsed stays in the list.
    void loadFromSettingString(const char *text);
    /// Writes every setting, separated by one blank, with 17 significant digits in general
    /// notation; the stream's precision and notation are restored afterwards.
    void generateSettingString(std::ostream &os) const;
    void generateSettingString(std::string &out) const;

    /// Writes the settings that no getter has found and no earlier call has reported (as
    /// generateSettingString would) into out, then counts every setting as reported, so
    /// each is reported at most once. True when there was one.
    bool findUnreadSettings(std::string &out);

private:
    friend class gz_SettingParser;

    template <gz_SettingType T> const gz_SpecificSetting<T> *findTyped(std::string_view name) const;
    void append(std::unique_ptr<gz_Setting> setting);
    void cloneFrom(const GZ_SettingList &other);

    std::vector<std::unique_ptr<gz_Setting>> mySettings;
    bool mySorted = false;
};
