// HostParm: component values, states, defaults and saved state of one parameter.
#include "host/HostParm.h"

#include "host/HostChoiceList.h"
#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostParmList.h"
#include "host/HostPrefetch.h"
#include "host/HostRampNaming.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

namespace
{
const std::string theEmpty;
const HostParmDefault theNoDefault;
const HostParmDefault theFolderDefault(0.0);
const std::vector<HostParm *> theNoInstance;
const std::vector<std::vector<HostParm *>> theNoInstances;
const std::vector<HostParmInterest> theNoInterests;

// The default a fresh component starts from. A switcher's template defaults describe its
// folders, so its value (the open folder) starts at 0.
const HostParmDefault &templateDefault(const HostParmTemplate &tmpl, int k)
{
    if (tmpl.getType().isSwitcher())
        return theFolderDefault;
    return tmpl.getDefault(k);
}

// Applies a default to a component's value slots according to the parameter kind.
void applyDefault(HostParmComponent &c, const HostParmDefault &d, bool is_string)
{
    c.myExpression.clear();
    c.myChannel.reset();
    c.myValue = d.myNumber;
    if (is_string)
    {
        c.myString = d.myString;
        c.myMeaning = d.myMeaning;
        return;
    }
    c.myString.clear();
    c.myMeaning = HOST_STRING_LITERAL;
    if (!d.myString.empty() && d.myMeaning != HOST_STRING_LITERAL)
    {
        c.myExpression = d.myString;
        c.myMeaning = d.myMeaning; // the expression's language
    }
}

// Shared channels and blocks compare by what they hold: saved states and live parameters
// may hold equal copies; null holds the empty value.
template <typename P> bool samePointee(const P &a, const P &b)
{
    return a == b || (a && b && *a == *b);
}

// The number of components of a parameter of this template.
std::size_t componentCount(const HostParmTemplate &tmpl)
{
    return static_cast<std::size_t>(std::max(tmpl.getNumChannels(), 0));
}
} // namespace

bool HostParmComponent::operator==(const HostParmComponent &o) const
{
    return myValue == o.myValue && myString == o.myString && myMeaning == o.myMeaning &&
           myExpression == o.myExpression && samePointee(myChannel, o.myChannel) &&
           samePointee(myDefault, o.myDefault) && samePointee(myOverride, o.myOverride) &&
           myLocked == o.myLocked && myEnabled == o.myEnabled && myActive == o.myActive;
}

std::size_t HostParm::componentsOffset()
{
    const std::size_t align = alignof(HostParmComponent);
    return (sizeof(HostParm) + align - 1) / align * align;
}

std::size_t HostParm::blockSize(const HostParmTemplate &tmpl)
{
    return componentsOffset() + componentCount(tmpl) * sizeof(HostParmComponent);
}

HostParm::Owner HostParm::create(const HostParmTemplate &tmpl, HostParmList *list, int index,
                                 void *storage)
{
    const std::size_t n = componentCount(tmpl);
    void *block = storage ? storage : ::operator new(blockSize(tmpl));
    auto *components =
        reinterpret_cast<HostParmComponent *>(static_cast<char *>(block) + componentsOffset());
    std::uninitialized_value_construct_n(components, n);
    try
    {
        Owner parm(new (block) HostParm(tmpl, list, index, components));
        parm->myOwnsBlock = storage == nullptr;
        return parm;
    }
    catch (...)
    {
        std::destroy_n(components, n);
        if (!storage)
            ::operator delete(block);
        throw;
    }
}

void HostParm::Release::operator()(HostParm *parm) const
{
    const bool owns = parm->myOwnsBlock;
    parm->~HostParm();
    if (owns)
        ::operator delete(static_cast<void *>(parm));
}

HostParm::HostParm(const HostParmTemplate &tmpl, HostParmList *list, int index,
                   HostParmComponent *components)
    : myTemplate(&tmpl), myList(list), myNode(list ? list->getNode() : nullptr), myIndex(index),
      myName(tmpl.getToken()), myComponents(components),
      myNumComponents(static_cast<int>(componentCount(tmpl)))
{
    const int n = myNumComponents;
    const bool is_string = tmpl.getType().isString();
    for (int k = 0; k < n; ++k)
    {
        applyDefault(myComponents[k], templateDefault(tmpl, k), is_string);
        referencesChanged(k);
    }
}

HostParm::~HostParm()
{
    if (myReferenced)
        getNode()->getDirector()->getReferenceIndex().remove(*this);
    std::destroy_n(myComponents, myNumComponents);
}

void HostParm::referencesChanged(int k)
{
    // Most writes leave a plain value: with nothing filed for this parameter and no call in
    // the new text there is nothing to re-file, so the node and its director are not looked
    // up on every write.
    if (!myReferenced && !HostReferenceIndex::mayRefer(getExpression(k)))
        return;
    if (HostNode *node = getNode())
        node->getDirector()->getReferenceIndex().update(*this, k);
}

void HostParm::prefetch(const HostParm *parm, int k, int stage)
{
    // Stage 0 must not read the parameter: its lines are what it asks for. The components
    // sit right after it in its block.
    if (stage == 0)
    {
        const char *base = reinterpret_cast<const char *>(parm);
        HostPrefetch(base);
        HostPrefetch(base + sizeof(HostParm) - 1);
        HostPrefetch(base + componentsOffset() +
                     static_cast<std::size_t>(k) * sizeof(HostParmComponent));
        return;
    }
    if (k < 0 || k >= parm->myNumComponents)
        return;
    const Rare *rare = parm->myRare.get();
    if (stage == 1)
    {
        HostPrefetch(parm->myNode);
        HostPrefetch(rare);
        HostPrefetch(parm->myComponents[k].myExpression.data());
    }
    else if (rare && static_cast<std::size_t>(k) < rare->myFiled.size())
        HostPrefetch(stage == 2 ? static_cast<const void *>(&rare->myFiled[k])
                                : rare->myFiled[k].data());
}

HostNode *HostParm::getNode() const
{
    return myNode;
}

const std::string &HostParm::getChannelName(int k) const
{
    if (k < 0 || k >= getVectorSize())
        return theEmpty;
    if (!myRare || myRare->myChannelNames.empty())
        return myTemplate->getChannelName(k);
    return myRare->myChannelNames[k];
}

void HostParm::setChannelName(int k, const std::string &name)
{
    // Only instances of multiparms rename their channels: the others share the template's
    // names instead of holding copies (a node has many components).
    std::vector<std::string> &names = rare().myChannelNames;
    if (names.empty())
        for (int j = 0; j < getVectorSize(); ++j)
            names.push_back(myTemplate->getChannelName(j));
    names[k] = name;
}

int HostParm::findChannel(const std::string &channel) const
{
    for (int k = 0; k < getVectorSize(); ++k)
        if (getChannelName(k) == channel)
            return k;
    return -1;
}

double HostParm::getValue(int k) const
{
    return (k >= 0 && k < getVectorSize()) ? myComponents[k].myValue : 0.0;
}

int HostParm::getInt(int k) const
{
    return static_cast<int>(getValue(k));
}

const std::string &HostParm::getString(int k) const
{
    return (k >= 0 && k < getVectorSize()) ? myComponents[k].myString : theEmpty;
}

HostStringMeaning HostParm::getStringMeaning(int k) const
{
    return (k >= 0 && k < getVectorSize()) ? myComponents[k].myMeaning : HOST_STRING_LITERAL;
}

void HostParm::setValue(int k, double value)
{
    if (k < 0 || k >= getVectorSize())
        return;
    const HostParmTemplate &t = *myTemplate;
    if (t.hasRange())
    {
        const HostParmRange &r = t.getRange();
        if (r.myMinStrict && value < r.myMin)
            value = r.myMin;
        if (r.myMaxStrict && value > r.myMax)
            value = r.myMax;
    }
    if (getType().isInteger() || getType().isOrdinal() || getType().isMultiparm())
        value = std::round(value);
    value = clampToMenu(value);
    HostParmComponent &c = myComponents[k];
    c.myValue = value;
    c.myExpression.clear();
    if (!getType().isString() && !getType().isData())
        c.myMeaning = HOST_STRING_LITERAL;
    referencesChanged(k);
}

double HostParm::clampToMenu(double value) const
{
    // A menu holds the index of one of its items; handles drag it like any number.
    const HostChoiceList *menu = myTemplate->getChoiceList();
    if (!getType().isOrdinalMenu() || !menu || menu->getNumItems() == 0)
        return value;
    if (std::isnan(value))
        return 0;
    return std::min(std::max(value, 0.0), static_cast<double>(menu->getNumItems() - 1));
}

void HostParm::setString(int k, const std::string &text, HostStringMeaning meaning)
{
    if (k < 0 || k >= getVectorSize())
        return;
    HostParmComponent &c = myComponents[k];
    if (getType().isString() || getType().isData())
    {
        c.myString = text;
        c.myMeaning = meaning;
        referencesChanged(k);
        return;
    }
    // A number parameter given text: an expression replaces its constant; a literal is
    // read as a number.
    if (meaning != HOST_STRING_LITERAL)
    {
        setExpression(k, text, meaning);
        return;
    }
    setValue(k, std::strtod(text.c_str(), nullptr));
}

// evalFloat, evalInt and evalString evaluate expressions and channels: HostParmChannels.cpp.

bool HostParm::isLocked(int k) const
{
    return k >= 0 && k < getVectorSize() && myComponents[k].myLocked;
}

void HostParm::setLocked(int k, bool locked)
{
    if (k >= 0 && k < getVectorSize())
        myComponents[k].myLocked = locked;
}

bool HostParm::isEnabled(int k) const
{
    return k >= 0 && k < getVectorSize() && myComponents[k].myEnabled;
}

void HostParm::setEnabled(int k, bool enabled)
{
    if (k >= 0 && k < getVectorSize())
        myComponents[k].myEnabled = enabled;
}

bool HostParm::isEnabled() const
{
    return std::all_of(myComponents, myComponents + myNumComponents,
                       [](const HostParmComponent &c) { return c.myEnabled; });
}

bool HostParm::isActive(int k) const
{
    return k >= 0 && k < getVectorSize() && myComponents[k].myActive;
}

void HostParm::setActive(int k, bool active)
{
    if (k >= 0 && k < getVectorSize())
        myComponents[k].myActive = active;
}

bool HostParm::hasChannel(int k) const
{
    return k >= 0 && k < getVectorSize() && myComponents[k].myChannel != nullptr;
}

bool HostParm::isTimeDependent(int k) const
{
    return k >= 0 && k < getVectorSize() &&
           (myComponents[k].myChannel || !myComponents[k].myExpression.empty());
}

const HostParmDefault &HostParm::getDefault(int k) const
{
    if (k < 0 || k >= getVectorSize())
        return theNoDefault;
    const HostParmComponent &c = myComponents[k];
    return c.myDefault ? *c.myDefault : templateDefault(*myTemplate, k);
}

void HostParm::setDefault(int k, const HostParmDefault &value)
{
    if (k < 0 || k >= getVectorSize())
        return;
    // The template's own default is kept as null, so equal states hold equal blocks.
    HostParmComponent &c = myComponents[k];
    if (value == templateDefault(*myTemplate, k))
        c.myDefault.reset();
    else
        c.myDefault = std::make_shared<const HostParmDefault>(value);
}

const HostParmDefault &HostParm::getFactoryDefault(int k) const
{
    return (k >= 0 && k < getVectorSize()) ? templateDefault(*myTemplate, k) : theNoDefault;
}

void HostParm::overwriteDefault(int k)
{
    if (k < 0 || k >= getVectorSize())
        return;
    HostParmComponent &c = myComponents[k];
    HostParmDefault d(c.myValue);
    if (getType().isString() || getType().isData())
    {
        d.myString = c.myString;
        d.myMeaning = c.myMeaning;
    }
    else if (!c.myExpression.empty())
    {
        d.myString = c.myExpression;
        d.myMeaning = c.myMeaning == HOST_STRING_LITERAL ? HOST_STRING_EXPRESSION : c.myMeaning;
    }
    setDefault(k, d);
}

void HostParm::revertToDefault(int k)
{
    if (k < 0 || k >= getVectorSize())
        return;
    HostParmComponent &c = myComponents[k];
    applyDefault(c, getDefault(k), getType().isString() || getType().isData());
    referencesChanged(k);
}

void HostParm::restoreFactoryDefault(int k)
{
    if (k >= 0 && k < getVectorSize())
        myComponents[k].myDefault.reset();
}

bool HostParm::isAtDefault(int k) const
{
    if (k < 0 || k >= getVectorSize())
        return false;
    HostParmComponent fresh = myComponents[k];
    applyDefault(fresh, getDefault(k), getType().isString() || getType().isData());
    const HostParmComponent &c = myComponents[k];
    // A channel without keys changes nothing that is saved or evaluated.
    const bool animated = c.myChannel && c.myChannel->getNumKeys() > 0;
    return !animated && c.myExpression == fresh.myExpression && c.myValue == fresh.myValue &&
           c.myString == fresh.myString && c.myMeaning == fresh.myMeaning;
}

HostParmState HostParm::saveState() const
{
    HostParmState state;
    state.myComponents.assign(myComponents, myComponents + myNumComponents);
    state.myHidden = myHidden;
    state.myInstanceCount = myInstanceCount;
    return state;
}

void HostParm::restoreState(const HostParmState &state)
{
    // The component count is the template's; a state of another shape restores what fits.
    const size_t n = std::min(state.myComponents.size(), static_cast<size_t>(myNumComponents));
    for (size_t k = 0; k < n; ++k)
    {
        myComponents[k] = state.myComponents[k];
        referencesChanged(static_cast<int>(k));
    }
    myHidden = state.myHidden;
    if (hasInstances() && myList && state.myInstanceCount != myInstanceCount)
        myList->setInstanceCount(*this, state.myInstanceCount);
}

void HostParm::swapComponent(int k, HostParmComponent &other)
{
    if (k < 0 || k >= myNumComponents)
        return;
    std::swap(myComponents[k], other);
    referencesChanged(k);
}

void HostParm::addInputInterest(const HostParmInterest &interest)
{
    if (!hasInputInterest(interest))
        rare().myInterests.push_back(interest);
}

void HostParm::removeInputInterest(const HostParmInterest &interest)
{
    if (!myRare)
        return;
    std::vector<HostParmInterest> &interests = myRare->myInterests;
    auto it = std::find(interests.begin(), interests.end(), interest);
    if (it != interests.end())
        interests.erase(it);
}

bool HostParm::hasInputInterest(const HostParmInterest &interest) const
{
    const std::vector<HostParmInterest> &interests = getInputInterests();
    return std::find(interests.begin(), interests.end(), interest) != interests.end();
}

const std::vector<HostParmInterest> &HostParm::getInputInterests() const
{
    return myRare ? myRare->myInterests : theNoInterests;
}

void HostParm::notifyInputInterests(void *data) const
{
    // Copy: a callback may remove its own interest.
    std::vector<HostParmInterest> interests = getInputInterests();
    for (const HostParmInterest &i : interests)
        if (i.myCallback && hasInputInterest(i))
            i.myCallback(i.myCallee, data);
}

const std::vector<HostParm *> &HostParm::getInstanceParms(int i) const
{
    const std::vector<std::vector<HostParm *>> &all = instances();
    return (i >= 0 && i < static_cast<int>(all.size())) ? all[i] : theNoInstance;
}

HostParm::Rare &HostParm::rare() const
{
    if (!myRare)
        myRare = std::make_unique<Rare>();
    return *myRare;
}

const std::vector<std::vector<HostParm *>> &HostParm::instances() const
{
    return myRare ? myRare->myInstances : theNoInstances;
}

bool HostParm::hasInstances() const
{
    return isMultiParm() || HostRampNaming::isRamp(getTemplate());
}

const HostParmTemplate *HostParm::getInstanceTemplates() const
{
    if (HostRampNaming::isRamp(getTemplate()))
        return HostRampNaming::pointTemplates(getName(), HostRampNaming::isColor(getTemplate()));
    return getTemplate().getChildList();
}
