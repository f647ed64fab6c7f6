// GZ_EditScriptedOp: the editable definition of a whole scripted operator type.
#include "scriptedit/GZ_EditScriptedOp.h"

#include "host/HostAssetLibraryManager.h"
#include "host/HostDialogQuote.h"
#include "host/HostScriptOperator.h"
#include "resource/GZ_ResourceManager.h"

#include <algorithm>
#include <ostream>
#include <sstream>

namespace
{
template <typename T> T valueAt(const std::vector<T> &values, int i, T dflt)
{
    return (i >= 0 && i < static_cast<int>(values.size())) ? values[i] : dflt;
}

template <typename T> void setAt(std::vector<T> &values, int i, T value)
{
    if (i < 0 || i > GZ_EditScriptedOp::theMaxIndex)
        return;
    if (i >= static_cast<int>(values.size()))
        values.resize(i + 1);
    values[i] = value;
}

/// The handle a binding describes: its type's parameters bound as the binding says.
std::unique_ptr<GZ_EditScriptedOpHandle> handleFromBinding(const GZ_BindingHandleInfo &info)
{
    auto handle = std::make_unique<GZ_EditScriptedOpHandle>(info.getGZName());
    handle->setDescription(info.getGZDescription());
    std::string settings;
    info.getDefaultSettings().generateSettingString(settings);
    handle->setSettings(settings);
    for (const GZ_BindingParmInfo &link : info.getBindings())
        handle->bindChannel(link.getGZParm(), link.getOpParm());
    return handle;
}

GZ_EditScriptedParms::BuildOptions buildOptions()
{
    return GZ_EditScriptedParms::BuildOptions();
}
} // namespace

GZ_EditScriptedOp::GZ_EditScriptedOp(HostScriptOperator *op, HostNode *node)
    : myOperator(op), myParms(op, node, buildOptions())
{
    if (!op)
        return;
    myName = op->getName();
    myScript = op->getScriptName();
    myLabel = op->getLabel();
    myHelp = op->getHelp();
    const std::string &table = op->getTableName();
    myShopFlag = table == "Shop";
    myVopFlag = table == "Vop";
    myObjFlag = table == "Object";
    myInputNames = op->getInputNames();
    myInputLabels = op->getInputLabels();
    myInputIsRef = op->getInputIsReference();
    myOutputLabels = op->getOutputLabels();
    myUnitLength = op->getUnitLength();
    myUnitMass = op->getUnitMass();
    GZ_ResourceManager *manager = GZgetResourceManager();
    const std::vector<GZ_BindingHandleInfo> *bindings =
        manager ? manager->getBindingHandles(op) : nullptr;
    if (bindings)
        for (const GZ_BindingHandleInfo &info : *bindings)
            myHandles.push_back(handleFromBinding(info));
}

GZ_EditScriptedOp::GZ_EditScriptedOp(const GZ_EditScriptedOp &other)
{
    *this = other;
}

GZ_EditScriptedOp &GZ_EditScriptedOp::operator=(const GZ_EditScriptedOp &other)
{
    if (this == &other)
        return *this;
    myOperator = other.myOperator;
    myParms = other.myParms;
    copyHandles(other);
    myName = other.myName;
    myScript = other.myScript;
    myLabel = other.myLabel;
    myHelp = other.myHelp;
    myShopFlag = other.myShopFlag;
    myVopFlag = other.myVopFlag;
    myObjFlag = other.myObjFlag;
    myWarning = other.myWarning;
    myInputNames = other.myInputNames;
    myInputLabels = other.myInputLabels;
    myInputIsRef = other.myInputIsRef;
    myOutputLabels = other.myOutputLabels;
    myUnitLength = other.myUnitLength;
    myUnitMass = other.myUnitMass;
    return *this;
}

GZ_EditScriptedOp::~GZ_EditScriptedOp() = default;

void GZ_EditScriptedOp::copyHandles(const GZ_EditScriptedOp &other)
{
    myHandles.clear();
    for (const auto &handle : other.myHandles)
        myHandles.push_back(std::make_unique<GZ_EditScriptedOpHandle>(*handle));
}

std::string GZ_EditScriptedOp::getInputName(int i) const
{
    return valueAt(myInputNames, i, std::string());
}
void GZ_EditScriptedOp::setInputName(int i, const std::string &name)
{
    setAt(myInputNames, i, name);
}
std::string GZ_EditScriptedOp::getInputLabel(int i) const
{
    return valueAt(myInputLabels, i, std::string());
}
void GZ_EditScriptedOp::setInputLabel(int i, const std::string &label)
{
    setAt(myInputLabels, i, label);
}
bool GZ_EditScriptedOp::getInputIsReference(int i) const
{
    return valueAt(myInputIsRef, i, false);
}
void GZ_EditScriptedOp::setInputIsReference(int i, bool is_ref)
{
    setAt(myInputIsRef, i, is_ref);
}
std::string GZ_EditScriptedOp::getOutputLabel(int i) const
{
    return valueAt(myOutputLabels, i, std::string());
}
void GZ_EditScriptedOp::setOutputLabel(int i, const std::string &label)
{
    setAt(myOutputLabels, i, label);
}

GZ_EditScriptedOpHandle *GZ_EditScriptedOp::getHandle(int i) const
{
    return (i >= 0 && i < getNHandles()) ? myHandles[i].get() : nullptr;
}

void GZ_EditScriptedOp::addHandle(GZ_EditScriptedOpHandle *handle)
{
    if (handle)
        myHandles.emplace_back(handle);
}

void GZ_EditScriptedOp::removeHandles(int first, int last)
{
    first = std::max(first, 0);
    last = std::min(last, getNHandles() - 1);
    if (first > last)
        return;
    myHandles.erase(myHandles.begin() + first, myHandles.begin() + last + 1);
}

void GZ_EditScriptedOp::moveHandles(int first, int last, int offset)
{
    if (first < 0 || last >= getNHandles() || first > last || first + offset < 0 ||
        last + offset >= getNHandles() || offset == 0)
        return;
    auto begin = myHandles.begin();
    if (offset < 0)
        std::rotate(begin + first + offset, begin + first, begin + last + 1);
    else
        std::rotate(begin + first, begin + last + 1, begin + last + 1 + offset);
}

void GZ_EditScriptedOp::saveBlock(std::ostream &os, const std::string &text, const char *prefix)
{
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line))
    {
        if (prefix)
            os << prefix;
        os << HostDialogQuote::quote(line) << '\n';
    }
}

void GZ_EditScriptedOp::saveHelp(std::ostream &os) const
{
    os << "    help {\n";
    saveBlock(os, myHelp, "\t");
    os << "    }\n";
}

void GZ_EditScriptedOp::saveSelectors(std::ostream &os) const
{
    GZ_ResourceManager *manager = GZgetResourceManager();
    const std::vector<GZ_BindingSelectorInfo> *selectors =
        (manager && myOperator) ? manager->getBindingSelectors(myOperator) : nullptr;
    if (!selectors)
        return;
    bool first = true;
    for (const GZ_BindingSelectorInfo &s : *selectors)
    {
        if (!s.getOpParm().empty())
            continue;
        os << (first ? "\n" : "") << "    bindselector\t" << s.getName() << ' '
           << s.getDescription() << "\n\t" << s.getPrompt() << "\n\t" << s.getPrimMask() << ' '
           << s.getAllowDrag() << ' ' << s.getMenu() << ' ' << s.getAstSelAll() << '\n';
        first = false;
    }
    first = true;
    for (const GZ_BindingSelectorInfo &s : *selectors)
    {
        if (s.getOpParm().empty() || !myParms.checkReservedName(s.getOpParm()))
            continue;
        os << (first ? "\n" : "") << "    bindselectorreserved\t" << s.getOpParm() << ' '
           << s.getName() << ' ' << s.getDescription() << "\n\t" << s.getPrompt() << "\n\t"
           << s.getOpInput() << ' ' << s.getOpInputReq() << ' ' << s.getPrimMask() << ' '
           << s.getAllowDrag() << ' ' << s.getMenu() << ' ' << s.getAstSelAll() << '\n';
        first = false;
    }
}

void GZ_EditScriptedOp::saveInputsOutputs(std::ostream &os) const
{
    if (myVopFlag)
        return;
    std::ostringstream lines;
    for (size_t i = 0; i < myInputNames.size(); ++i)
        if (!myInputNames[i].empty())
            lines << "    inputname\t" << i + 1 << '\t' << myInputNames[i] << '\n';
    for (size_t i = 0; i < myInputLabels.size(); ++i)
        if (!myInputLabels[i].empty())
            lines << "    inputlabel\t" << i + 1 << '\t' << myInputLabels[i] << '\n';
    for (size_t i = 0; i < myInputIsRef.size(); ++i)
        if (myInputIsRef[i])
            lines << "    parmtag { inputisref" << i + 1 << " 1 }\n";
    for (size_t i = 0; i < myOutputLabels.size(); ++i)
        if (!myOutputLabels[i].empty())
            lines << "    outputlabel\t" << i + 1 << '\t' << myOutputLabels[i] << '\n';
    const std::string text = lines.str();
    if (!text.empty())
        os << text << '\n';
}

int GZ_EditScriptedOp::save(std::ostream &os, const std::string *specific_data)
{
    os << "# Dialog script for " << myName << " automatically generated\n\n";
    os << "{\n";
    os << "    name\t" << myName << '\n';
    os << "    script\t" << myScript << '\n';
    os << "    label\t" << myLabel << "\n\n";
    if (specific_data)
        os << *specific_data << '\n';
    else if (myOperator)
    {
        std::ostringstream own;
        if (myOperator->writeSpecificData(own))
            os << own.str() << '\n';
    }
    saveHelp(os);
    saveSelectors(os);
    for (const auto &handle : myHandles)
        handle->save(os);
    os << '\n';
    saveInputsOutputs(os);
    // The units use the stream's default double format; a NaN is not equal to 1.0 and is
    // written too.
    if (!(myUnitLength == 1.0))
        os << "    unitlength\t" << myUnitLength << '\n';
    if (!(myUnitMass == 1.0))
        os << "    unitmass\t" << myUnitMass << '\n';
    myParms.save(os, myWarning, true);
    os << "}\n";
    return 1;
}

std::string GZ_EditScriptedOp::getLibraryFile() const
{
    const HostAssetLibraryManager &libraries = HostAssetLibraryManager::get();
    if (myOperator && libraries.isLoaded(myOperator->getDefinitionPath()))
        return myOperator->getDefinitionPath();
    return std::string(theCustomLibrary) + HostAssetLibraryManager::getDefaultLibraryExtension();
}

bool GZ_EditScriptedOp::save(const std::string *specific_data)
{
    return saveToLibrary(HostAssetLibraryManager::expandPath(getLibraryFile()), specific_data);
}

bool GZ_EditScriptedOp::saveToLibrary(const std::string &path, const std::string *specific_data)
{
    if (!myOperator)
        return false;
    std::ostringstream script;
    save(script, specific_data);
    HostAssetLibraryManager &libraries = HostAssetLibraryManager::get();
    HostAssetDefinition def = HostAssetLibraryManager::createIndexFile(*myOperator);
    HostAssetLibraryManager::addSection(def, "DialogScript", script.str());
    if (!libraries.addDefinitionToFile(path, def))
        return false;
    if (!libraries.isLoaded(path))
        libraries.loadLibrary(path, HostAssetLibraryManager::getSaveSourceDescription());
    return true;
}
