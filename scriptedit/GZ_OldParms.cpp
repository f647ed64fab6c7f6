// GZ_OldParms: the records of an edit's renames and deletions, and whole-token replacement.
#include "scriptedit/GZ_OldParms.h"

#include "host/HostNode.h"

#include <cctype>
#include <cstring>

namespace
{
int theDeletionBehavior = 0;

bool isWordChar(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

bool isPathChar(char c)
{
    return isWordChar(c) || c == '.' || c == '/';
}

// Whether the occurrence of a name whose path (the text just before it) is `path` refers to
// `edited` when read in `referring`.
bool pathLeadsTo(const std::string &path, const HostNode &edited, const HostNode &referring)
{
    if (path.empty())
        return &referring == &edited;
    std::string node_path = path;
    while (node_path.size() > 1 && node_path.back() == '/')
        node_path.pop_back();
    return referring.findNode(node_path) == &edited;
}
} // namespace

int GZ_OldParms::getParameterDeletionBehavior()
{
    return theDeletionBehavior;
}

void GZ_OldParms::setParameterDeletionBehavior(int behavior)
{
    theDeletionBehavior = behavior;
}

int GZ_OldParms::addOldParm(const char *name, const char *channel, int component)
{
    gz_OldParm rec;
    rec.myOriginalName = name ? name : "";
    rec.myCurrentName = rec.myOriginalName;
    const size_t len = rec.myOriginalName.size();
    if (channel && std::strlen(channel) > len)
        rec.myOriginalSuffix = rec.myCurrentSuffix = channel + len;
    rec.myComponent = component;
    myRecords.push_back(std::move(rec));
    return static_cast<int>(myRecords.size()) - 1;
}

void GZ_OldParms::renameOldParm(const char *old_name, const char *new_name)
{
    if (!old_name)
        return;
    for (gz_OldParm &rec : myRecords)
        if (!rec.isDeleted() && rec.myCurrentName == old_name)
            rec.myCurrentName = new_name ? new_name : "";
}

void GZ_OldParms::renameOldParmChannel(const char *name, const char *old_suffix,
                                       const char *new_suffix)
{
    if (!name || !old_suffix)
        return;
    for (gz_OldParm &rec : myRecords)
        if (!rec.isDeleted() && rec.myCurrentName == name && rec.myCurrentSuffix == old_suffix)
            rec.myCurrentSuffix = new_suffix ? new_suffix : "";
}

void GZ_OldParms::deleteOldParm(const char *name)
{
    if (!name)
        return;
    for (gz_OldParm &rec : myRecords)
        if (!rec.isDeleted() && rec.myCurrentName == name)
            rec.myFlags |= gz_OldParm::DELETED;
}

void GZ_OldParms::deleteOldParmChannel(const char *name, const char *suffix)
{
    if (!name || !suffix)
        return;
    for (gz_OldParm &rec : myRecords)
        if (!rec.isDeleted() && rec.myCurrentName == name && rec.myCurrentSuffix == suffix)
            rec.myFlags |= gz_OldParm::DELETED;
}

void GZ_OldParms::undeleteOldParm(const char *name)
{
    if (!name)
        return;
    for (gz_OldParm &rec : myRecords)
        if (rec.isDeleted() && rec.myCurrentName == name)
            rec.myFlags &= static_cast<uint8_t>(~gz_OldParm::DELETED);
}

std::string GZ_OldParms::getNewName(const std::string &name) const
{
    for (const gz_OldParm &rec : myRecords)
        if (rec.myOriginalName == name)
            return rec.myCurrentName;
    return name;
}

std::string GZ_OldParms::getOriginalName(const std::string &name) const
{
    for (const gz_OldParm &rec : myRecords)
        if (rec.myCurrentName == name)
            return rec.myOriginalName;
    return name;
}

bool GZ_OldParms::hasOldParm(const std::string &name) const
{
    for (const gz_OldParm &rec : myRecords)
        if (rec.myOriginalName == name)
            return true;
    return false;
}

bool GZ_OldParms::hasDeletedOldParm(const std::string &name) const
{
    for (const gz_OldParm &rec : myRecords)
        if (rec.isDeleted() && rec.myOriginalName == name)
            return true;
    return false;
}

void GZ_OldParms::getDeletedParms(std::vector<std::string> &names) const
{
    for (const gz_OldParm &rec : myRecords)
        if (rec.isDeleted())
            names.push_back(rec.myOriginalName);
}

void GZ_OldParms::getRenamedParms(std::vector<std::string> &old_names,
                                  std::vector<std::string> &new_names) const
{
    for (const gz_OldParm &rec : myRecords)
        if (!rec.isDeleted() && rec.myOriginalName != rec.myCurrentName)
        {
            old_names.push_back(rec.myOriginalName);
            new_names.push_back(rec.myCurrentName);
        }
}

void GZ_OldParms::preserveOldParms(const GZ_EditScriptedParms &parms)
{
    clear();
    myOriginal = parms;
    for (int i = 0; i < myOriginal.entries(); ++i)
    {
        GZ_EditScriptedParm *parm = myOriginal.getParm(i);
        if (parm->getName().empty() || parm->getIsGroupEnd())
            continue;
        gz_OldParm &rec = myRecords[addOldParm(parm->getName().c_str(), nullptr, 0)];
        if (parm->getName().find('#') != std::string::npos)
            for (int j = i; (j = myOriginal.getParentGroupParm(j)) >= 0;)
                if (myOriginal.getParm(j)->getIsMultiParm())
                    rec.myMultiparmOwners.insert(rec.myMultiparmOwners.begin(),
                                                 myOriginal.getParm(j));
        if (parm->getIsRampParm())
        {
            rec.myFlags |= gz_OldParm::RAMP;
            rec.myRampColor = parm->getIsRampParmColor() ? 1 : 0;
        }
    }
}

void GZ_OldParms::clear()
{
    myRecords.clear();
    myOriginal.clearParms();
}

const GZ_EditScriptedParm *GZ_OldParms::findOriginal(const std::string &name) const
{
    return myOriginal.getParmWithName(name);
}

// An occurrence counts only as a whole token: no letter, digit or "_" before it, none of
// those nor "/" after it (so "amp" is not found in "amp2", "preamp" or "amp/x"). The run of
// path characters in front of it must lead from the referring node to the edited one; with
// no path it names a channel of the referring node itself.
bool GZ_OldParms::getModifiedString(const std::string &text, std::string &out,
                                    const HostNode *edited, const HostNode *referring,
                                    const std::string &old_name, const std::string &new_name)
{
    out = text;
    if (!edited || !referring || old_name.empty())
        return false;
    std::string result;
    size_t copied = 0;
    bool changed = false;
    for (size_t pos = text.find(old_name); pos != std::string::npos;
         pos = text.find(old_name, pos + 1))
    {
        const size_t end = pos + old_name.size();
        if (end < text.size() && (isWordChar(text[end]) || text[end] == '/'))
            continue;
        if (pos > 0 && isWordChar(text[pos - 1]))
            continue;
        size_t start = pos;
        while (start > 0 && isPathChar(text[start - 1]))
            --start;
        if (!pathLeadsTo(text.substr(start, pos - start), *edited, *referring))
            continue;
        result.append(text, copied, pos - copied);
        result += new_name;
        copied = end;
        changed = true;
    }
    if (changed)
        out = result + text.substr(copied);
    return changed;
}
