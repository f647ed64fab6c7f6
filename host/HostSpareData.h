// HostSpareData: the name-value tags of a parameter template.
#pragma once

#include <map>
#include <string>

/// A set of string tags (name to value) carried by a parameter template. Tags hold options
/// that have no field of their own (callbacks, file-chooser modes, folder styles, ...).
/// Iteration is in name order, so anything written from tags is deterministic.
class HostSpareData
{
public:
    // Tag names with a fixed role in the host.
    static constexpr const char *CALLBACK_TAG = "script_callback";
    static constexpr const char *CALLBACK_LANGUAGE_TAG = "script_callback_language";
    static constexpr const char *MULTI_START_OFFSET_TAG = "multistartoffset";
    static constexpr const char *GROUP_TYPE_TAG = "group_type";
    static constexpr const char *COLLAPSIBLE_GROUP = "collapsible";
    static constexpr const char *SIMPLE_GROUP = "simple";

    // Tags behind the options of the parameter editor, by role. Switcher-level roles (see
    // isSwitcherLevelTag) are the callback, its language, the default folder and the header.
    static constexpr const char *CALLBACK_DATA_TAG = "script_callback_data";
    static constexpr const char *UNQUOTED_TAG = "string_unquoted";
    static constexpr const char *SWITCHER_BASE_TAG = "switcher_base_name";
    static constexpr const char *VOP_VARIABLE_TAG = "vop_variable";
    static constexpr const char *DEFAULT_FOLDER_TAG = "folder_default";
    static constexpr const char *HEADER_TOGGLE_TAG = "folder_header_toggle";
    static constexpr const char *HEADER_PARM_TAG = "folder_header_parm";
    /// A folder's tab that is not shown (per folder, see folderTagName).
    static constexpr const char *FOLDER_HIDDEN_TAG = "folder_hidden";
    static constexpr const char *BUTTON_ICON_TAG = "button_icon";
    static constexpr const char *COLOR_DYNAMIC_TAG = "color_dynamic";
    static constexpr const char *COLOR_TYPE_TAG = "color_type";
    static constexpr const char *COLOR_WHEEL_TAG = "color_wheel";
    static constexpr const char *FILE_CHOOSER_MODE_TAG = "file_chooser_mode";
    static constexpr const char *FILE_CHOOSER_PATTERN_TAG = "file_chooser_pattern";
    static constexpr const char *KEYVALUE_CHOOSER_CALLBACK_TAG = "keyvalue_chooser_callback";
    static constexpr const char *KEYVALUE_CHOOSER_LABEL_TAG = "keyvalue_chooser_label";
    static constexpr const char *KEYVALUE_KEY_LABEL_TAG = "keyvalue_key_label";
    static constexpr const char *KEYVALUE_USE_CHOOSER_TAG = "keyvalue_use_chooser";
    static constexpr const char *KEYVALUE_VALUE_LABEL_TAG = "keyvalue_value_label";
    static constexpr const char *OP_FILTER_TAG = "node_filter";
    static constexpr const char *RMAN_TYPE_TAG = "renderer_type";
    // Ramp tags all begin with "ramp": writers escape their values in the alternative mode.
    static constexpr const char *RAMP_BASIS_DEFAULT_TAG = "ramp_basis_default";
    static constexpr const char *RAMP_BASIS_VAR_TAG = "ramp_basis_var";
    static constexpr const char *RAMP_COLOR_TYPE_TAG = "ramp_color_type";
    static constexpr const char *RAMP_KEYS_VAR_TAG = "ramp_keys_var";
    static constexpr const char *RAMP_SHOW_CONTROLS_DEFAULT_TAG = "ramp_show_controls";
    static constexpr const char *RAMP_VALUES_VAR_TAG = "ramp_values_var";
    static constexpr const char *RAMP_COLOR_DEFAULT_TAG = "ramp_color_default";
    static constexpr const char *RAMP_FLOAT_DEFAULT_TAG = "ramp_float_default";
    static constexpr const char *SCRIPT_ACTION_TAG = "action_script";
    static constexpr const char *SCRIPT_ACTION_HELP_TAG = "action_help";
    static constexpr const char *SCRIPT_ACTION_ICON_TAG = "action_icon";
    /// Marks the type variants that share a host type with another type token: the value is
    /// the token ("heading", "message", "spacer", "group"). The dialog-script reader sets it;
    /// a builder of editable definitions reads it to pick the type label.
    static constexpr const char *TYPE_VARIANT_TAG = "type_variant";

    /// Whether a tag belongs to a whole switcher rather than to one of its folders.
    static bool isSwitcherLevelTag(const std::string &name);
    /// A switcher template keeps the tags of its folder k as "NAME:k"; tags without such a
    /// suffix belong to the switcher (and are read as the first folder's).
    static std::string folderTagName(const std::string &name, int folder);
    /// The tags of folder k of a switcher's tag set, with their plain names: "NAME:k" tags,
    /// and for folder 0 also the switcher's own tags. The group-type and hidden-folder tags
    /// (which the folder type and the invisible flag carry) are left out. Returns the count.
    static int extractFolderTags(const HostSpareData &switcher_tags, int folder,
                                 HostSpareData &out);

    HostSpareData() = default;

    /// The value of a tag, or null when the tag is missing.
    const char *getValue(const std::string &name) const;
    bool has(const std::string &name) const { return myTags.count(name) != 0; }
    void set(const std::string &name, const std::string &value) { myTags[name] = value; }
    /// Removes a tag; returns whether it was there.
    bool remove(const std::string &name) { return myTags.erase(name) != 0; }
    void clear() { myTags.clear(); }
    bool empty() const { return myTags.empty(); }
    int size() const { return static_cast<int>(myTags.size()); }

    /// Copies every tag of `other` into this set, replacing tags of the same name.
    void merge(const HostSpareData &other);

    const std::map<std::string, std::string> &tags() const { return myTags; }

    bool operator==(const HostSpareData &o) const { return myTags == o.myTags; }
    bool operator!=(const HostSpareData &o) const { return !(*this == o); }

private:
    std::map<std::string, std::string> myTags;
};
