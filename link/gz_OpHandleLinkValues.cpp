// GZ_OpHandleLink: reading and writing bound node parameters, and the distributed undo block.
#include "link/GZ_OpHandleLink.h"

#include "host/HostChannelManager.h"
#include "host/HostDiagnostics.h"
#include "host/HostDirector.h"
#include "host/HostExpression.h"
#include "host/HostNodeExprContext.h"
#include "host/HostParm.h"
#include "link/gz_Binding.h"
#include "link/gz_References.h"
#include "link/gz_Resolved.h"

#include <cmath>
#include <cstdio>
#include <limits>

int GZ_OpHandleLink::theUndoDebugFlag = -1;

namespace
{

/// The single-precision change tolerance the host uses for handle writes.
constexpr double theTolerance = static_cast<double>(1e-5f);

/// The host flag that marks a node while a handle reads one of its values; restores the
/// flag's previous state on exit.
class HandleReadScope
{
public:
    explicit HandleReadScope(HostNode *node)
        : myNode(node), myWasSet(node && node->getFlag(HostNode::FLAG_HANDLE_READ))
    {
        if (myNode && !myWasSet)
            myNode->setFlagWord(myNode->getFlags() | HostNode::FLAG_HANDLE_READ);
    }
    ~HandleReadScope()
    {
        if (myNode && !myWasSet)
            myNode->setFlagWord(myNode->getFlags() & ~unsigned(HostNode::FLAG_HANDLE_READ));
    }
    HandleReadScope(const HandleReadScope &) = delete;
    HandleReadScope &operator=(const HandleReadScope &) = delete;

private:
    HostNode *myNode;
    bool myWasSet;
};

double evaluateExpressionNumber(const std::string &text, const HostNode *node, double time)
{
    std::string error;
    return HostExpression(text).evaluateNumber(HostNodeExprContext(node, time), error);
}

std::string evaluateExpressionString(const std::string &text, const HostNode *node, double time)
{
    std::string error;
    return HostExpression(text).evaluateString(HostNodeExprContext(node, time), error);
}

/// Truncation toward zero that stays defined for values no int can hold.
bool truncateToInt(double value, int &out)
{
    if (!std::isfinite(value) || value >= 2147483648.0 || value <= -2147483649.0)
        return false;
    out = static_cast<int>(value);
    return true;
}

} // namespace

// ---------------------------------------------------------------------------------------
// Resolution

bool GZ_OpHandleLink::resolve(int index, int opnum, const int *instances, int nesting, bool project,
                              Resolved &out) const
{
    if (opnum < 0)
        opnum = (index >= 0 && index < static_cast<int>(myHandleParmOpnums.size()))
                    ? myHandleParmOpnums[index]
                    : 0;
    if (opnum >= getLinkedParmCount())
        return false;
    const StringArray &names = *myNodeParmNames[opnum];
    if (index < 0 || index >= static_cast<int>(names.size()) || names[index].empty())
        return false;

    out.myNode = getOpNode(opnum);
    const std::string *binding = &names[index];
    std::string expanded;
    if (instances)
    {
        expanded = HostParm::expandInstanceTokens(*binding, instances, nesting);
        binding = &expanded;
    }
    if (gz::isExpressionBinding(*binding))
    {
        out.myIsExpression = true;
        out.myExpression = binding->substr(1);
        return true;
    }
    if (!out.myNode)
        return false;

    // Every write of a drag resolves its binding, so the usual plain channel name of the
    // node itself is looked up without copies; projections and paths take the full road.
    const std::string *name = binding;
    std::string channel;
    if (project && (*binding)[0] == '{')
    {
        gz::parseBinding(*binding, channel, out.myProjection);
        name = &channel;
    }
    if (name->find('/') != std::string::npos)
        return out.myNode->resolveChannel(*name, out.myParmNode, out.myParm, out.myVectorIndex);
    out.myParm = out.myNode->findChannel(*name, out.myVectorIndex);
    if (!out.myParm || out.myVectorIndex < 0)
        return false;
    out.myParmNode = out.myNode;
    return true;
}

// ---------------------------------------------------------------------------------------
// Reading

int GZ_OpHandleLink::readNumber(int index, const int *instances, int nesting, bool as_int,
                                double &value) const
{
    Resolved r;
    if (!resolve(index, -1, instances, nesting, /*project=*/true, r))
        return 0;
    const double time = getTime();
    if (r.myIsExpression)
    {
        value = evaluateExpressionNumber(r.myExpression, r.myNode, time);
        return 1;
    }
    gz::followReferences(time, r.myParmNode, r.myParm, r.myVectorIndex);
    if (!r.myParmNode || !r.myParm)
        return 0;

    double p;
    {
        HandleReadScope reading(r.myParmNode);
        p = as_int ? r.myParm->evalInt(r.myVectorIndex, time)
                   : r.myParm->evalFloat(r.myVectorIndex, time);
    }
    const double h = r.myProjection.toHandle(p);
    if (!std::isfinite(h))
        return 0; // the mapping has a pole at this value
    value = h;
    return 1;
}

int GZ_OpHandleLink::readString(int index, const int *instances, int nesting,
                                std::string &value) const
{
    Resolved r;
    if (!resolve(index, -1, instances, nesting, /*project=*/false, r))
        return 0;
    const double time = getTime();
    if (r.myIsExpression)
    {
        value = evaluateExpressionString(r.myExpression, r.myNode, time);
        return 1;
    }
    gz::followReferences(time, r.myParmNode, r.myParm, r.myVectorIndex);
    if (!r.myParmNode || !r.myParm)
        return 0;
    HandleReadScope reading(r.myParmNode);
    value = r.myParm->evalString(r.myVectorIndex, time);
    return 1;
}

int GZ_OpHandleLink::getParmValue(int index, double &value, double dflt) const
{
    if (myLateBinding)
        return myLateBinding->getParmValue(const_cast<GZ_OpHandleLink *>(this), index, value);
    return getParmInstValue(index, nullptr, value, dflt, 0);
}

int GZ_OpHandleLink::getParmValue(int index, int &value, int dflt) const
{
    if (myLateBinding)
        return myLateBinding->getParmValue(const_cast<GZ_OpHandleLink *>(this), index, value, dflt);
    return getParmInstValue(index, nullptr, value, dflt, 0);
}

int GZ_OpHandleLink::getParmValue(int index, std::string &value, const std::string &dflt) const
{
    if (myLateBinding)
        return myLateBinding->getParmValue(const_cast<GZ_OpHandleLink *>(this), index, value, dflt);
    return getParmInstValue(index, nullptr, value, dflt, 0);
}

int GZ_OpHandleLink::getParmInstValue(int index, const int *instances, double &value, double dflt,
                                      int nesting) const
{
    double h = 0.0;
    if (!readNumber(index, instances, nesting, /*as_int=*/false, h))
    {
        value = dflt;
        return 0;
    }
    value = h;
    return 1;
}

int GZ_OpHandleLink::getParmInstValue(int index, const int *instances, int &value, int dflt,
                                      int nesting) const
{
    double h = 0.0;
    int truncated = 0;
    if (!readNumber(index, instances, nesting, /*as_int=*/true, h) || !truncateToInt(h, truncated))
    {
        value = dflt;
        return 0;
    }
    value = truncated;
    return 1;
}

int GZ_OpHandleLink::getParmInstValue(int index, const int *instances, std::string &value,
                                      const std::string &dflt, int nesting) const
{
    std::string text;
    if (!readString(index, instances, nesting, text))
    {
        value = dflt;
        return 0;
    }
    value = std::move(text);
    return 1;
}

void GZ_OpHandleLink::getParmVector3(int index, GZ_Vector3 &value, double dflt) const
{
    getParmValue(index, value.x, dflt);
    getParmValue(index + 1, value.y, dflt);
    getParmValue(index + 2, value.z, dflt);
}

void GZ_OpHandleLink::getParmInstVector3(int index, const int *instances, GZ_Vector3 &value,
                                         double dflt) const
{
    getParmInstValue(index, instances, value.x, dflt, 1);
    getParmInstValue(index + 1, instances, value.y, dflt, 1);
    getParmInstValue(index + 2, instances, value.z, dflt, 1);
}

bool GZ_OpHandleLink::readParm(int index,
                               const std::function<void(const HostParm &, int)> &fn) const
{
    Resolved r;
    if (!resolve(index, -1, nullptr, 0, /*project=*/true, r))
        return false;
    if (r.myIsExpression)
        return true;
    gz::followReferences(getTime(), r.myParmNode, r.myParm, r.myVectorIndex);
    if (!r.myParmNode || !r.myParm)
        return false;
    HandleReadScope reading(r.myParmNode);
    fn(*r.myParm, r.myVectorIndex);
    return true;
}

int GZ_OpHandleLink::iterateParms(int opnum,
                                  const std::function<void(const HostParm &, int)> &fn) const
{
    if (!getKeyframeOpNode(opnum))
        return 0;
    const int size = static_cast<int>(allParmNames(opnum).size());
    for (int i = size - 1; i >= 0; --i)
        readParm(i, fn);
    return size;
}

HostChannelState GZ_OpHandleLink::getParmState(int index, int opnum) const
{
    Resolved r;
    if (opnum < 0 || !resolve(index, opnum, nullptr, 0, /*project=*/true, r) || r.myIsExpression)
        return HOST_CHANNEL_STATE_NONE;
    const double time = HostChannelManager::get().getEvaluateTime();
    gz::followReferences(time, r.myParmNode, r.myParm, r.myVectorIndex);
    if (!r.myParm)
        return HOST_CHANNEL_STATE_NONE;
    return r.myParm->getChannelState(r.myVectorIndex, time);
}

bool GZ_OpHandleLink::isParmEnabled(int index, int opnum) const
{
    if (myLateBinding)
        return myLateBinding->isParmEnabled(const_cast<GZ_OpHandleLink *>(this), index);
    Resolved r;
    if (opnum < 0 || !resolve(index, opnum, nullptr, 0, /*project=*/true, r) || r.myIsExpression)
        return false;
    gz::followReferences(getTime(), r.myParmNode, r.myParm, r.myVectorIndex);
    return r.myParm && r.myParm->isEnabled();
}

std::string GZ_OpHandleLink::getOpParmLabel(int index) const
{
    if (myLateBinding)
        return std::string();
    Resolved r;
    if (!resolve(index, -1, nullptr, 0, /*project=*/true, r) || r.myIsExpression)
        return std::string();
    return r.myParm->getLabel();
}

int GZ_OpHandleLink::performParmCallback(int index, int data)
{
    Resolved r;
    if (!resolve(index, -1, nullptr, 0, /*project=*/true, r) || r.myIsExpression)
        return 0;
    if (r.myParmNode)
        return r.myParmNode->runParmCallback(*r.myParm, data, getTime());
    HostParmCallback callback = r.myParm->getTemplate().getCallback();
    if (!callback)
        return 0;
    return callback(nullptr, r.myParm->getIndex(), data, getTime(), &r.myParm->getTemplate());
}

// ---------------------------------------------------------------------------------------
// Writing

int GZ_OpHandleLink::writeNumber(int index, const int *instances, int nesting, double value,
                                 bool set_key, bool as_int)
{
    Resolved r;
    if (!resolve(index, -1, instances, nesting, /*project=*/true, r) || r.myIsExpression)
        return 0;
    const double p = r.myProjection.toParm(value);
    if (!as_int)
    {
        if (!std::isfinite(p))
            return 0;
        return setOpParmValue(r.myParmNode, r.myParm, r.myVectorIndex, p, set_key);
    }
    int truncated = 0;
    if (!truncateToInt(p, truncated))
        return 0;
    return setOpParmValue(r.myParmNode, r.myParm, r.myVectorIndex, truncated, set_key);
}

int GZ_OpHandleLink::writeString(int index, const int *instances, int nesting,
                                 const std::string &value, HostStringMeaning meaning)
{
    Resolved r;
    if (!resolve(index, -1, instances, nesting, /*project=*/false, r) || r.myIsExpression)
        return 0;
    return setOpParmValue(r.myParmNode, r.myParm, r.myVectorIndex, value, meaning);
}

int GZ_OpHandleLink::setParmValue(int index, double value, bool set_key)
{
    if (myLateBinding)
        return myLateBinding->setParmValue(this, index, value, set_key);
    return writeNumber(index, nullptr, 0, value, set_key, /*as_int=*/false);
}

int GZ_OpHandleLink::setParmValue(int index, int value, bool set_key)
{
    if (myLateBinding)
        return myLateBinding->setParmValue(this, index, value, set_key);
    return writeNumber(index, nullptr, 0, value, set_key, /*as_int=*/true);
}

int GZ_OpHandleLink::setParmValue(int index, const std::string &value, HostStringMeaning meaning)
{
    if (myLateBinding)
        return myLateBinding->setParmValue(this, index, value);
    return writeString(index, nullptr, 0, value, meaning);
}

int GZ_OpHandleLink::setParmInstValue(int index, const int *instances, double value, bool set_key,
                                      int nesting)
{
    return writeNumber(index, instances, nesting, value, set_key, /*as_int=*/false);
}

int GZ_OpHandleLink::setParmInstValue(int index, const int *instances, int value, bool set_key,
                                      int nesting)
{
    return writeNumber(index, instances, nesting, value, set_key, /*as_int=*/true);
}

int GZ_OpHandleLink::setParmInstValue(int index, const int *instances, const std::string &value,
                                      HostStringMeaning meaning, int nesting)
{
    return writeString(index, instances, nesting, value, meaning);
}

void GZ_OpHandleLink::setParmVector3(int index, const GZ_Vector3 &value)
{
    setParmValue(index, value.x, /*set_key=*/false);
    setParmValue(index + 1, value.y, /*set_key=*/false);
    setParmValue(index + 2, value.z, /*set_key=*/false);
}

void GZ_OpHandleLink::setParmInstVector3(int index, const int *instances, const GZ_Vector3 &value)
{
    setParmInstValue(index, instances, value.x, /*set_key=*/false, 1);
    setParmInstValue(index + 1, instances, value.y, /*set_key=*/false, 1);
    setParmInstValue(index + 2, instances, value.z, /*set_key=*/false, 1);
}

bool GZ_OpHandleLink::modifyParm(int index, const std::function<void(HostParm &, int)> &fn,
                                 bool access_check)
{
    Resolved r;
    if (!resolve(index, -1, nullptr, 0, /*project=*/true, r) || r.myIsExpression)
        return false;
    gz::followReferences(getTime(), r.myParmNode, r.myParm, r.myVectorIndex);
    HostNode *node = r.myParmNode;
    HostParm *parm = r.myParm;
    if (!node || !parm)
        return false;
    const bool allowed = access_check ? node->canAccess(HostNode::ACCESS_WRITE, *parm) &&
                                            parm->isEnabled(r.myVectorIndex)
                                      : node->canModifyFromUI(*parm, r.myVectorIndex);
    if (!allowed)
        return false;
    node->saveParmForUndo(*parm);
    node->parmChanging(*parm);
    fn(*parm, r.myVectorIndex);
    return true;
}

int GZ_OpHandleLink::iterateParms(int opnum, const std::function<void(HostParm &, int)> &fn,
                                  bool access_check)
{
    if (!getKeyframeOpNode(opnum))
        return 0;
    const int size = static_cast<int>(allParmNames(opnum).size());
    for (int i = size - 1; i >= 0; --i)
        modifyParm(i, fn, access_check);
    return size;
}

int GZ_OpHandleLink::setOpParmValue(HostNode *node, HostParm *parm, int vector_index, double value,
                                    bool set_key)
{
    if (!parm)
        return 0;
    const double time = getTime();
    value = HostChannelManager::get().applyLayerContribution(*parm, vector_index, time, value);

    gz::followReferences(time, node, parm, vector_index);
    if (!node || !node->canModifyFromUI(*parm, vector_index))
        return 0;

    const double current = parm->evalFloat(vector_index, time);
    if (std::fabs(value - current) <= theTolerance)
        return 1;
    if (std::fabs(value) <= theTolerance)
        value = 0.0;

    node->saveParmForUndo(*parm);
    node->parmChanging(*parm);
    parm->setValue(vector_index, time, value, /*setKey=*/false, /*propagate=*/true);
    if (set_key && parm->getType().isAnimatable())
        parm->setKey(vector_index, time);
    return 1;
}

int GZ_OpHandleLink::setOpParmValue(HostNode *node, HostParm *parm, int vector_index, int value,
                                    bool set_key)
{
    if (!parm)
        return 0;
    const double time = getTime();
    gz::followReferences(time, node, parm, vector_index);
    if (!node || !node->canModifyFromUI(*parm, vector_index))
        return 0;

    node->saveParmForUndo(*parm);
    node->parmChanging(*parm);
    parm->setValue(vector_index, time, static_cast<double>(value), /*setKey=*/false,
                   /*propagate=*/true);
    if (set_key && parm->getType().isAnimatable())
        parm->setKey(vector_index, time);
    return 1;
}

int GZ_OpHandleLink::setOpParmValue(HostNode *node, HostParm *parm, int vector_index,
                                    const std::string &value, HostStringMeaning meaning)
{
    if (!parm)
        return 0;
    const double time = getTime();
    gz::followReferences(time, node, parm, vector_index);
    if (!node || !node->canModifyFromUI(*parm, vector_index))
        return 0;

    node->saveParmForUndo(*parm);
    node->parmChanging(*parm);
    parm->setString(vector_index, time, value, meaning, /*propagate=*/true);
    return 1;
}

// ---------------------------------------------------------------------------------------
// Change bracket

void GZ_OpHandleLink::beginHandleChange(void *data)
{
    if (myLateBinding)
        myLateBinding->beginHandleChange(this, data);
}

void GZ_OpHandleLink::endHandleChange(void *data)
{
    if (myLateBinding)
        myLateBinding->endHandleChange(this, data);
}

void GZ_OpHandleLink::updateStateValues(void *data)
{
    if (myLateBinding)
        myLateBinding->updateStateValues(this, data);
}

void GZ_OpHandleLink::updateHandleValues()
{
    if (myLateBinding)
        myLateBinding->updateHandleValues(this);
}

// ---------------------------------------------------------------------------------------
// Distributed undo

namespace
{
/// A note about a distributed undo block used out of turn, naming the link by its address.
void reportUndoDebug(const char *format, const GZ_OpHandleLink *link)
{
    char text[128];
    std::snprintf(text, sizeof(text), format,
                  static_cast<void *>(const_cast<GZ_OpHandleLink *>(link)));
    HostDiagnostics::report(HostDiagSeverity::Note, "", 0, text);
}
} // namespace

bool GZ_OpHandleLink::undoDebugLogging()
{
    if (theUndoDebugFlag < 0)
        theUndoDebugFlag = HostDirector::instance()->getDebugFlag(20) ? 1 : 0;
    return theUndoDebugFlag == 1;
}

void GZ_OpHandleLink::beginDistributedUndoBlock(const char *name, HostUndoBlockType type)
{
    const bool debug = undoDebugLogging();
    HostUndoManager &undo = HostUndoManager::current();
    if (myDistributedUndoBlockId == -1)
    {
        myDistributedUndoBlockId = undo.beginUndoBlock(name, type);
        return;
    }
    if (myDistributedUndoBlockId >= 0)
    {
        if (debug)
            reportUndoDebug("nested beginDistributedUndoBlock in %p", this);
        myDistributedUndoBlockId = -2;
    }
    undo.beginUndoBlock(name, type);
}

void GZ_OpHandleLink::endDistributedUndoBlock()
{
    const bool debug = undoDebugLogging();
    HostUndoManager &undo = HostUndoManager::current();
    if (myDistributedUndoBlockId == -2)
    {
        undo.endUndoBlock();
        return;
    }
    if (myDistributedUndoBlockId >= 0)
    {
        undo.endUndoBlock(myDistributedUndoBlockId);
        myDistributedUndoBlockId = -1;
        return;
    }
    if (debug)
        reportUndoDebug("endDistributedUndoBlock without begin in %p", this);
}
