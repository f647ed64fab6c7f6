// GZ_EditScriptedParm: the tag-backed options and the tag operations.
#include "scriptedit/GZ_EditScriptedParm.h"

#include "host/HostParm.h"
#include "host/HostSpareData.h"

#include <cstdlib>
#include <cstring>
#include <string>

using Tags = HostSpareData;

HostSpareData &GZ_EditScriptedParm::spareData()
{
    if (!myTags)
        myTags.reset(new HostSpareData);
    return *myTags;
}

const char *GZ_EditScriptedParm::getSpareValue(const std::string &tag) const
{
    return myTags ? myTags->getValue(tag) : nullptr;
}

void GZ_EditScriptedParm::setSpareValue(const std::string &tag, const char *value)
{
    if (value)
        spareData().set(tag, value);
    else if (myTags)
        myTags->remove(tag);
}

bool GZ_EditScriptedParm::getTagBool(const std::string &tag) const
{
    const char *v = getSpareValue(tag);
    return v && std::strcmp(v, "1") == 0;
}

void GZ_EditScriptedParm::setTagBool(const std::string &tag, bool on)
{
    setSpareValue(tag, on ? "1" : nullptr);
}

void GZ_EditScriptedParm::addSpareData(const HostSpareData *tags)
{
    if (tags)
        spareData().merge(*tags);
}

void GZ_EditScriptedParm::copySpareValue(const std::string &tag, const HostSpareData *from)
{
    setSpareValue(tag, from ? from->getValue(tag) : nullptr);
}

int GZ_EditScriptedParm::getCallbackLanguage() const
{
    const char *v = getSpareValue(Tags::CALLBACK_LANGUAGE_TAG);
    if (!myTags)
        return 1;
    return v ? std::atoi(v) : 1;
}

void GZ_EditScriptedParm::setCallbackLanguage(int language)
{
    setSpareValue(Tags::CALLBACK_LANGUAGE_TAG, std::to_string(language).c_str());
}

int GZ_EditScriptedParm::getMultiStartOffset() const
{
    const char *v = getSpareValue(Tags::MULTI_START_OFFSET_TAG);
    return v ? std::atoi(v) : 1;
}

void GZ_EditScriptedParm::setMultiStartOffset(int offset)
{
    setSpareValue(Tags::MULTI_START_OFFSET_TAG, std::to_string(offset).c_str());
}

bool GZ_EditScriptedParm::getUnquotedFlag() const
{
    return getTagBool(Tags::UNQUOTED_TAG);
}

void GZ_EditScriptedParm::setUnquotedFlag(bool on)
{
    setTagBool(Tags::UNQUOTED_TAG, on);
}

void GZ_EditScriptedParm::setFileChooserMode(const HostSpareData *from)
{
    copySpareValue(Tags::FILE_CHOOSER_MODE_TAG, from);
}

void GZ_EditScriptedParm::setFileChooserPattern(const HostSpareData *from)
{
    copySpareValue(Tags::FILE_CHOOSER_PATTERN_TAG, from);
}

void GZ_EditScriptedParm::setOpFilter(const HostSpareData *from)
{
    copySpareValue(Tags::OP_FILTER_TAG, from);
}

bool GZ_EditScriptedParm::isSwitcherLevelSpareToken(const std::string &tag)
{
    return HostSpareData::isSwitcherLevelTag(tag);
}

void GZ_EditScriptedParm::clearRampDefaults()
{
    setSpareValue(Tags::RAMP_COLOR_DEFAULT_TAG, nullptr);
    setSpareValue(Tags::RAMP_FLOAT_DEFAULT_TAG, nullptr);
}

bool GZ_EditScriptedParm::hasRampDefaultValue() const
{
    return getSpareValue(getIsRampParmColor() ? Tags::RAMP_COLOR_DEFAULT_TAG
                                              : Tags::RAMP_FLOAT_DEFAULT_TAG) != nullptr;
}

void GZ_EditScriptedParm::setRampDefaultFromParm(const HostParm &parm)
{
    // A ramp's points are the instances of its multiparm: each instance's values, in child
    // order, joined by blanks, one instance after the other.
    std::string text;
    for (int i = 0; i < parm.getInstanceCount(); ++i)
        for (const HostParm *child : parm.getInstanceParms(i))
            for (int k = 0; k < child->getVectorSize(); ++k)
            {
                if (!text.empty())
                    text += ' ';
                text += child->getType().isString() ? child->getString(k)
                                                    : std::to_string(child->getValue(k));
            }
    setSpareValue(getIsRampParmColor() ? Tags::RAMP_COLOR_DEFAULT_TAG
                                       : Tags::RAMP_FLOAT_DEFAULT_TAG,
                  text.c_str());
}

const char *GZ_EditScriptedParm::getButtonIcon() const
{
    return getSpareValue(Tags::BUTTON_ICON_TAG);
}

void GZ_EditScriptedParm::setButtonIcon(const char *v)
{
    setSpareValue(Tags::BUTTON_ICON_TAG, v);
}

const char *GZ_EditScriptedParm::getCallbackData() const
{
    return getSpareValue(Tags::CALLBACK_DATA_TAG);
}

void GZ_EditScriptedParm::setCallbackData(const char *v)
{
    setSpareValue(Tags::CALLBACK_DATA_TAG, v);
}

const char *GZ_EditScriptedParm::getColorDynamic() const
{
    return getSpareValue(Tags::COLOR_DYNAMIC_TAG);
}

void GZ_EditScriptedParm::setColorDynamic(const char *v)
{
    setSpareValue(Tags::COLOR_DYNAMIC_TAG, v);
}

const char *GZ_EditScriptedParm::getColorType() const
{
    return getSpareValue(Tags::COLOR_TYPE_TAG);
}

void GZ_EditScriptedParm::setColorType(const char *v)
{
    setSpareValue(Tags::COLOR_TYPE_TAG, v);
}

const char *GZ_EditScriptedParm::getColorWheel() const
{
    return getSpareValue(Tags::COLOR_WHEEL_TAG);
}

void GZ_EditScriptedParm::setColorWheel(const char *v)
{
    setSpareValue(Tags::COLOR_WHEEL_TAG, v);
}

const char *GZ_EditScriptedParm::getFileChooserMode() const
{
    return getSpareValue(Tags::FILE_CHOOSER_MODE_TAG);
}

void GZ_EditScriptedParm::setFileChooserMode(const char *v)
{
    setSpareValue(Tags::FILE_CHOOSER_MODE_TAG, v);
}

const char *GZ_EditScriptedParm::getFileChooserPattern() const
{
    return getSpareValue(Tags::FILE_CHOOSER_PATTERN_TAG);
}

void GZ_EditScriptedParm::setFileChooserPattern(const char *v)
{
    setSpareValue(Tags::FILE_CHOOSER_PATTERN_TAG, v);
}

const char *GZ_EditScriptedParm::getKeyValueDictChooserCallback() const
{
    return getSpareValue(Tags::KEYVALUE_CHOOSER_CALLBACK_TAG);
}

void GZ_EditScriptedParm::setKeyValueDictChooserCallback(const char *v)
{
    setSpareValue(Tags::KEYVALUE_CHOOSER_CALLBACK_TAG, v);
}

const char *GZ_EditScriptedParm::getKeyValueDictChooserLabel() const
{
    return getSpareValue(Tags::KEYVALUE_CHOOSER_LABEL_TAG);
}

void GZ_EditScriptedParm::setKeyValueDictChooserLabel(const char *v)
{
    setSpareValue(Tags::KEYVALUE_CHOOSER_LABEL_TAG, v);
}

const char *GZ_EditScriptedParm::getKeyValueDictKeyLabel() const
{
    return getSpareValue(Tags::KEYVALUE_KEY_LABEL_TAG);
}

void GZ_EditScriptedParm::setKeyValueDictKeyLabel(const char *v)
{
    setSpareValue(Tags::KEYVALUE_KEY_LABEL_TAG, v);
}

const char *GZ_EditScriptedParm::getKeyValueDictUseChooser() const
{
    return getSpareValue(Tags::KEYVALUE_USE_CHOOSER_TAG);
}

void GZ_EditScriptedParm::setKeyValueDictUseChooser(const char *v)
{
    setSpareValue(Tags::KEYVALUE_USE_CHOOSER_TAG, v);
}

const char *GZ_EditScriptedParm::getKeyValueDictValueLabel() const
{
    return getSpareValue(Tags::KEYVALUE_VALUE_LABEL_TAG);
}

void GZ_EditScriptedParm::setKeyValueDictValueLabel(const char *v)
{
    setSpareValue(Tags::KEYVALUE_VALUE_LABEL_TAG, v);
}

const char *GZ_EditScriptedParm::getOpFilter() const
{
    return getSpareValue(Tags::OP_FILTER_TAG);
}

void GZ_EditScriptedParm::setOpFilter(const char *v)
{
    setSpareValue(Tags::OP_FILTER_TAG, v);
}

const char *GZ_EditScriptedParm::getRManType() const
{
    return getSpareValue(Tags::RMAN_TYPE_TAG);
}

void GZ_EditScriptedParm::setRManType(const char *v)
{
    setSpareValue(Tags::RMAN_TYPE_TAG, v);
}

const char *GZ_EditScriptedParm::getRampBasisDefault() const
{
    return getSpareValue(Tags::RAMP_BASIS_DEFAULT_TAG);
}

void GZ_EditScriptedParm::setRampBasisDefault(const char *v)
{
    setSpareValue(Tags::RAMP_BASIS_DEFAULT_TAG, v);
}

const char *GZ_EditScriptedParm::getRampBasisVar() const
{
    return getSpareValue(Tags::RAMP_BASIS_VAR_TAG);
}

void GZ_EditScriptedParm::setRampBasisVar(const char *v)
{
    setSpareValue(Tags::RAMP_BASIS_VAR_TAG, v);
}

const char *GZ_EditScriptedParm::getRampColorType() const
{
    return getSpareValue(Tags::RAMP_COLOR_TYPE_TAG);
}

void GZ_EditScriptedParm::setRampColorType(const char *v)
{
    setSpareValue(Tags::RAMP_COLOR_TYPE_TAG, v);
}

const char *GZ_EditScriptedParm::getRampKeysVar() const
{
    return getSpareValue(Tags::RAMP_KEYS_VAR_TAG);
}

void GZ_EditScriptedParm::setRampKeysVar(const char *v)
{
    setSpareValue(Tags::RAMP_KEYS_VAR_TAG, v);
}

const char *GZ_EditScriptedParm::getRampShowControlsDefault() const
{
    return getSpareValue(Tags::RAMP_SHOW_CONTROLS_DEFAULT_TAG);
}

void GZ_EditScriptedParm::setRampShowControlsDefault(const char *v)
{
    setSpareValue(Tags::RAMP_SHOW_CONTROLS_DEFAULT_TAG, v);
}

const char *GZ_EditScriptedParm::getRampValuesVar() const
{
    return getSpareValue(Tags::RAMP_VALUES_VAR_TAG);
}

void GZ_EditScriptedParm::setRampValuesVar(const char *v)
{
    setSpareValue(Tags::RAMP_VALUES_VAR_TAG, v);
}

const char *GZ_EditScriptedParm::getScriptAction() const
{
    return getSpareValue(Tags::SCRIPT_ACTION_TAG);
}

void GZ_EditScriptedParm::setScriptAction(const char *v)
{
    setSpareValue(Tags::SCRIPT_ACTION_TAG, v);
}

const char *GZ_EditScriptedParm::getScriptActionHelp() const
{
    return getSpareValue(Tags::SCRIPT_ACTION_HELP_TAG);
}

void GZ_EditScriptedParm::setScriptActionHelp(const char *v)
{
    setSpareValue(Tags::SCRIPT_ACTION_HELP_TAG, v);
}

const char *GZ_EditScriptedParm::getScriptActionIcon() const
{
    return getSpareValue(Tags::SCRIPT_ACTION_ICON_TAG);
}

void GZ_EditScriptedParm::setScriptActionIcon(const char *v)
{
    setSpareValue(Tags::SCRIPT_ACTION_ICON_TAG, v);
}

void GZ_EditScriptedParm::extractGroupSpareData(const HostSpareData *switcher_tags, int folder)
{
    if (!switcher_tags)
        return;
    HostSpareData folder_tags;
    if (HostSpareData::extractFolderTags(*switcher_tags, folder, folder_tags) > 0)
        addSpareData(&folder_tags);
}
