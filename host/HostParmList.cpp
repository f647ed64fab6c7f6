// HostParmList: building parameters from templates, multiparm instances, indexes.
#include "host/HostParmList.h"

#include "host/HostDirector.h"
#include "host/HostNode.h"
#include "host/HostStringHash.h"

#include <vector>

namespace
{
// The name of instance `number` of a child template: its first "#" becomes the number, so
// nested multiparms fill one "#" per level.
std::string instanceName(const std::string &name, int number)
{
    std::string result = name;
    const size_t hash = result.find('#');
    if (hash != std::string::npos)
        result.replace(hash, 1, std::to_string(number));
    return result;
}
} // namespace

HostParmList::HostParmList(HostNode *node, const HostParmTemplate *templates) : myNode(node)
{
    std::size_t parms = 0, channels = 0;
    for (const HostParmTemplate *t = templates; t && !t->isTerminator(); ++t, ++parms)
    {
        channels += static_cast<std::size_t>(t->getVectorSize());
        myBlockSize += HostParm::blockSize(*t);
    }
    if (myBlockSize > 0)
        myBlock.reset(new std::max_align_t[(myBlockSize + sizeof(std::max_align_t) - 1) /
                                           sizeof(std::max_align_t)]);
    myParms.reserve(parms);
    myByName.reserve(parms);
    myByChannel.reserve(channels);
    for (const HostParmTemplate *t = templates; t && !t->isTerminator(); ++t)
        addParm(*t, /*spare=*/false, nullptr, -1);
}

HostParmList::~HostParmList() = default;

void *HostParmList::takeStorage(std::size_t bytes)
{
    if (myBlockSize - myBlockUsed < bytes)
        return nullptr;
    void *storage = reinterpret_cast<char *>(myBlock.get()) + myBlockUsed;
    myBlockUsed += bytes;
    return storage;
}

HostParm *HostParmList::getParm(int i) const
{
    return (i >= 0 && i < getEntries()) ? myParms[i].get() : nullptr;
}

HostParm *HostParmList::getParm(const std::string &name) const
{
    return myByName.find(name).myParm;
}

int HostParmList::getParmIndex(const std::string &name) const
{
    HostParm *parm = getParm(name);
    return parm ? parm->getIndex() : -1;
}

HostParm *HostParmList::findChannel(const std::string &channel, int &vec_index) const
{
    if (const ChannelRef ref = myByChannel.find(channel); ref.myParm)
    {
        vec_index = ref.myComponent;
        return ref.myParm;
    }
    if (HostParm *parm = getParm(channel))
    {
        vec_index = 0;
        return parm;
    }
    auto alias = myAliases.find(channel);
    if (alias != myAliases.end())
    {
        if (const ChannelRef target = myByChannel.find(alias->second); target.myParm)
        {
            vec_index = target.myComponent;
            return target.myParm;
        }
    }
    vec_index = -1;
    return nullptr;
}

HostParm *HostParmList::addParm(const HostParmTemplate &tmpl, bool spare, HostParm *owner,
                                int instance)
{
    // Instances are made while the list is built too; the block holds the templates' own.
    void *storage = owner ? nullptr : takeStorage(HostParm::blockSize(tmpl));
    HostParm::Owner parm = HostParm::create(tmpl, this, getEntries(), storage);
    HostParm *p = parm.get();
    p->mySpare = spare;
    if (owner)
    {
        p->myOwner = owner;
        p->myInstanceNumber = instance;
        // Fill one "#" per level, outermost first: the numbers of the enclosing instances,
        // then this one.
        // A ramp's point names are built on the ramp's own (already numbered) name.
        std::vector<int> numbers{instance};
        for (const HostParm *o = owner; o && o->myOwner && o->isMultiParm(); o = o->myOwner)
            numbers.insert(numbers.begin(), o->myInstanceNumber);
        p->myName = tmpl.getToken();
        for (int number : numbers)
            p->myName = instanceName(p->myName, number);
        for (int k = 0; k < p->getVectorSize(); ++k)
            p->setChannelName(k, tmpl.getType().isSwitcher() || tmpl.getType().isMultiparm()
                                     ? p->myName
                                     : HostParmTemplate::makeChannelName(tmpl.getType(), p->myName,
                                                                         tmpl.getVectorSize(), k));
    }
    myParms.push_back(std::move(parm));
    indexParm(*p);
    if (p->hasInstances())
    {
        const int count = static_cast<int>(tmpl.getDefault(0).myNumber);
        for (int i = 0; i < count; ++i)
            addInstance(*p);
        p->myComponents[0].myValue = p->myInstanceCount;
    }
    return p;
}

void HostParmList::addInstance(HostParm &multi)
{
    const HostParmTemplate &tmpl = multi.getTemplate();
    const int number = tmpl.getMultiStartOffset() + multi.myInstanceCount;
    std::vector<HostParm *> instance;
    for (const HostParmTemplate *c = multi.getInstanceTemplates(); c && !c->isTerminator(); ++c)
        instance.push_back(addParm(*c, multi.mySpare, &multi, number));
    if (myNode && myNode->getDirector())
        myNode->getDirector()->getMultiParmLinks().fillInstance(*myNode, instance);
    multi.rare().myInstances.push_back(std::move(instance));
    ++multi.myInstanceCount;
}

void HostParmList::indexParm(HostParm &parm)
{
    // First registration wins, so lookups keep the result of a front-to-back search.
    myByName.add(&parm, 0);
    for (int k = 0; k < parm.getVectorSize(); ++k)
        myByChannel.add(&parm, k);
}

void HostParmList::rebuildIndexes()
{
    myByName.clear();
    myByChannel.clear();
    for (int i = 0; i < getEntries(); ++i)
    {
        myParms[i]->myIndex = i;
        indexParm(*myParms[i]);
    }
}

void HostParmList::markWithInstances(const HostParm &parm, std::vector<bool> &marked) const
{
    marked[parm.getIndex()] = true;
    for (const auto &instance : parm.instances())
        for (const HostParm *child : instance)
            markWithInstances(*child, marked);
}

void HostParmList::removeMarked(std::vector<bool> &marked)
{
    size_t out = 0;
    for (size_t i = 0; i < myParms.size(); ++i)
        if (!marked[i])
            myParms[out++] = std::move(myParms[i]);
    myParms.resize(out);
    rebuildIndexes();
}

int HostParmList::appendSpareParms(const HostParmTemplate *templates)
{
    const int first = getEntries();
    for (const HostParmTemplate *t = templates; t && !t->isTerminator(); ++t)
        addParm(*t, /*spare=*/true, nullptr, -1);
    return first;
}

void HostParmList::removeSpareParms()
{
    std::vector<bool> marked(myParms.size(), false);
    bool any = false;
    for (const auto &parm : myParms)
        if (parm->isSpare() && !marked[parm->getIndex()])
        {
            markWithInstances(*parm, marked);
            any = true;
        }
    if (any)
        removeMarked(marked);
}

bool HostParmList::setInstanceCount(HostParm &parm, int count)
{
    if (!parm.hasInstances() || parm.myList != this)
        return false;
    if (count < 0)
        count = 0;
    while (parm.myInstanceCount < count)
        addInstance(parm);
    if (parm.myInstanceCount > count)
    {
        std::vector<bool> marked(myParms.size(), false);
        for (int i = count; i < parm.myInstanceCount; ++i)
            for (const HostParm *child : parm.instances()[i])
                markWithInstances(*child, marked);
        parm.rare().myInstances.resize(count);
        parm.myInstanceCount = count;
        removeMarked(marked);
    }
    parm.myComponents[0].myValue = count;
    return true;
}

bool HostParmList::addChannelAlias(const std::string &alias, const std::string &channel)
{
    if (!myByChannel.find(channel).myParm)
        return false;
    myAliases[alias] = channel;
    return true;
}

const std::string *HostParmList::getChannelAlias(const std::string &alias) const
{
    auto it = myAliases.find(alias);
    return it == myAliases.end() ? nullptr : &it->second;
}

// ---------------------------------------------------------------------------------------
// Index

void HostParmList::Index::clear()
{
    for (Slot &slot : mySlots)
        slot = Slot();
    myCount = 0;
}

void HostParmList::Index::reserve(std::size_t count)
{
    std::size_t capacity = 8;
    while (4 * count > 3 * capacity)
        capacity *= 2;
    if (capacity > mySlots.size())
        rehash(capacity);
}

void HostParmList::Index::add(HostParm *parm, int component)
{
    if (4 * (myCount + 1) > 3 * mySlots.size())
        rehash(mySlots.empty() ? 8 : 2 * mySlots.size());
    const Slot entry{parm, component,
                     static_cast<std::uint32_t>(HostStringHash(keyOf({parm, component, 0})))};
    Slot &slot = mySlots[slotOf(keyOf(entry), entry.myHash)];
    if (slot.myParm)
        return;
    slot = entry;
    ++myCount;
}

HostParmList::ChannelRef HostParmList::Index::find(std::string_view name) const
{
    if (mySlots.empty())
        return {nullptr, -1};
    const Slot &slot = mySlots[slotOf(name, static_cast<std::uint32_t>(HostStringHash(name)))];
    return {slot.myParm, slot.myComponent};
}

const std::string &HostParmList::Index::keyOf(const Slot &slot) const
{
    return myChannels ? slot.myParm->getChannelName(slot.myComponent) : slot.myParm->getName();
}

std::size_t HostParmList::Index::slotOf(std::string_view name, std::uint32_t hash) const
{
    const std::size_t mask = mySlots.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask)
    {
        const Slot &slot = mySlots[i];
        if (!slot.myParm || (slot.myHash == hash && keyOf(slot) == name))
            return i;
    }
}

void HostParmList::Index::rehash(std::size_t capacity)
{
    std::vector<Slot> old(capacity);
    old.swap(mySlots);
    for (const Slot &slot : old)
        if (slot.myParm)
            mySlots[slotOf(keyOf(slot), slot.myHash)] = slot;
}
