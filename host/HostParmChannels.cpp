// HostParm and HostNode: evaluation of expressions and channels, keys, channel references.
#include "host/HostChannelManager.h"
#include "host/HostDirector.h"
#include "host/HostExpression.h"
#include "host/HostNode.h"
#include "host/HostNodeExprContext.h"
#include "host/HostParm.h"
#include "host/HostScriptEvaluator.h"

#include <cmath>
#include <cstdlib>
#include <unordered_map>
#include <unordered_set>

namespace
{
const std::string theEmpty;

/// Depth of parameter evaluations on this thread: only the outermost one reports errors,
/// so that a failing channel read through ch() is reported once.
thread_local int theEvalDepth = 0;

class EvalDepthGuard
{
public:
    EvalDepthGuard() { ++theEvalDepth; }
    ~EvalDepthGuard() { --theEvalDepth; }
    bool isOutermost() const { return theEvalDepth == 1; }
};

bool holdsText(const HostParm &parm)
{
    return parm.getType().isString() || parm.getType().isData();
}

/// Parsed expressions by text, per thread: parsing on every evaluation would dominate a drag.
/// Shared pointers keep an expression alive while the cache is cleared under it (a nested
/// evaluation may clear it while an outer one still evaluates).
std::shared_ptr<const HostExpression> cachedExpression(const std::string &text)
{
    thread_local std::unordered_map<std::string, std::shared_ptr<const HostExpression>> cache;
    auto it = cache.find(text);
    if (it != cache.end())
        return it->second;
    if (cache.size() >= 4096)
        cache.clear();
    auto expr = std::make_shared<const HostExpression>(text);
    cache.emplace(text, expr);
    return expr;
}

bool evaluateText(const HostParm &parm, const std::string &text, HostStringMeaning language,
                  double time, HostExprValue &value, std::string &error)
{
    if (language == HOST_STRING_SCRIPT)
    {
        value = HostExprValue();
        if (HostScriptEvaluator *evaluator = HostScriptEvaluator::installed())
            return evaluator->evaluate(parm, text, time, value, error);
        error = HostScriptEvaluator::theNotEvaluated;
        return false;
    }
    HostNodeExprContext context(parm.getNode(), time);
    return cachedExpression(text)->evaluate(context, value, error);
}

/// The language of a number component's expression (older values may record none).
HostStringMeaning numberLanguage(const HostParmComponent &c)
{
    return c.myMeaning == HOST_STRING_SCRIPT ? HOST_STRING_SCRIPT : HOST_STRING_EXPRESSION;
}

bool channelDrives(const HostParmComponent &c, double time)
{
    return c.myChannel && (c.myChannel->getNumKeys() > 0 || c.myChannel->isPendingAt(time));
}
} // namespace

// ---------------------------------------------------------------------------------------
// Evaluation

double HostParm::evalFloat(int k, double time) const
{
    std::string error;
    return evalFloat(k, time, error);
}

std::string HostParm::evalString(int k, double time) const
{
    std::string error;
    return evalString(k, time, error);
}

int HostParm::evalInt(int k, double time) const
{
    return static_cast<int>(evalFloat(k, time));
}

double HostParm::evalFloat(int k, double time, std::string &error) const
{
    error.clear();
    if (k < 0 || k >= getVectorSize())
        return 0.0;
    EvalDepthGuard depth;
    const HostParmComponent &c = myComponents[k];
    double value = 0.0;
    if (channelDrives(c, time))
        value = c.myChannel->evaluate(time);
    else if (holdsText(*this))
    {
        HostExprValue v = HostExprValue::string(c.myString);
        if (c.myMeaning != HOST_STRING_LITERAL)
            evaluateText(*this, c.myString, c.myMeaning, time, v, error);
        value = v.toNumber();
    }
    else if (!c.myExpression.empty())
    {
        HostExprValue v;
        evaluateText(*this, c.myExpression, numberLanguage(c), time, v, error);
        value = v.toNumber();
    }
    else
        value = c.myValue;
    if (!holdsText(*this))
        value += HostChannelManager::get().getLayerSum(*this, k);
    noteEvalError(k, error, depth.isOutermost());
    return value;
}

std::string HostParm::evalString(int k, double time, std::string &error) const
{
    error.clear();
    if (k < 0 || k >= getVectorSize())
        return std::string();
    if (!holdsText(*this))
        return HostExpression::formatNumber(evalFloat(k, time, error));
    EvalDepthGuard depth;
    const HostParmComponent &c = myComponents[k];
    if (c.myMeaning == HOST_STRING_LITERAL)
        return c.myString;
    HostExprValue v;
    evaluateText(*this, c.myString, c.myMeaning, time, v, error);
    noteEvalError(k, error, depth.isOutermost());
    return error.empty() ? v.toString() : std::string();
}

void HostParm::noteEvalError(int k, const std::string &error, bool report) const
{
    if (error.empty())
    {
        if (myRare && k < static_cast<int>(myRare->myEvalErrors.size()))
            myRare->myEvalErrors[k].clear();
        return;
    }
    std::vector<std::string> &errors = rare().myEvalErrors;
    if (static_cast<int>(errors.size()) <= k)
        errors.resize(static_cast<size_t>(myNumComponents));
    errors[k] = error;
    if (!report)
        return;
    const HostNode *node = getNode();
    std::string where = node ? node->getFullPath() + "/" : std::string();
    HostChannelManager::get().reportEvalError(where + getChannelName(k) + ": " + error);
}

const std::string &HostParm::getEvalError(int k) const
{
    if (!myRare || k < 0 || k >= static_cast<int>(myRare->myEvalErrors.size()))
        return theEmpty;
    return myRare->myEvalErrors[k];
}

// ---------------------------------------------------------------------------------------
// Expressions

bool HostParm::hasExpression(int k) const
{
    return !getExpression(k).empty();
}

const std::string &HostParm::getExpression(int k) const
{
    if (k < 0 || k >= getVectorSize())
        return theEmpty;
    const HostParmComponent &c = myComponents[k];
    if (holdsText(*this))
        return c.myMeaning == HOST_STRING_LITERAL ? theEmpty : c.myString;
    return c.myExpression;
}

void HostParm::setExpression(int k, const std::string &text, HostStringMeaning language)
{
    if (k < 0 || k >= getVectorSize())
        return;
    if (language == HOST_STRING_LITERAL)
        language = HOST_STRING_EXPRESSION;
    HostParmComponent &c = myComponents[k];
    c.myChannel.reset();
    c.myMeaning = language;
    if (holdsText(*this))
        c.myString = text;
    else
        c.myExpression = text;
    referencesChanged(k);
}

// ---------------------------------------------------------------------------------------
// Channels and keys

const HostChannel *HostParm::getChannel(int k) const
{
    if (k < 0 || k >= getVectorSize())
        return nullptr;
    return myComponents[k].myChannel.get();
}

HostChannel *HostParm::editChannel(int k)
{
    if (k < 0 || k >= getVectorSize() || !getType().isNumeric())
        return nullptr;
    std::shared_ptr<HostChannel> &channel = myComponents[k].myChannel;
    if (!channel)
        channel = std::make_shared<HostChannel>();
    else if (channel.use_count() > 1) // shared with a saved state: copy before changing
        channel = std::make_shared<HostChannel>(*channel);
    return channel.get();
}

void HostParm::destroyChannel(int k, double time)
{
    if (!hasChannel(k))
        return;
    HostParmComponent &c = myComponents[k];
    if (channelDrives(c, time))
    {
        c.myValue = c.myChannel->evaluate(time);
        c.myExpression.clear();
        c.myMeaning = HOST_STRING_LITERAL;
        referencesChanged(k);
    }
    c.myChannel.reset();
}

void HostParm::bakeValue(int k, double time)
{
    if (getType().isString() || getType().isData())
        setString(k, evalString(k, time), HOST_STRING_LITERAL);
    else
    {
        const double value = evalFloat(k, time);
        destroyChannel(k, time);
        setValue(k, value);
    }
}

int HostParm::getNumSegments(int k) const
{
    const HostChannel *channel = getChannel(k);
    return channel ? channel->getNumSegments() : 0;
}

bool HostParm::isKeyAt(int k, double time) const
{
    const HostChannel *channel = getChannel(k);
    return channel && channel->isKeyAt(time);
}

void HostParm::setKey(int k, double time)
{
    if (k < 0 || k >= getVectorSize() || !getType().isNumeric())
        return;
    std::string error;
    const double value =
        evalFloat(k, time, error) - HostChannelManager::get().getLayerSum(*this, k);
    setKey(k, time, value);
}

void HostParm::setKey(int k, double time, double value)
{
    HostChannel *channel = editChannel(k);
    if (!channel)
        return;
    HostParmComponent &c = myComponents[k];
    c.myExpression.clear();
    c.myMeaning = HOST_STRING_LITERAL;
    referencesChanged(k);
    channel->setKey(time, value);
}

bool HostParm::removeKey(int k, double time)
{
    if (!isKeyAt(k, time))
        return false;
    return editChannel(k)->removeKey(time);
}

bool HostParm::getPrevKeyTime(int k, double time, double &keyTime) const
{
    const HostChannel *channel = getChannel(k);
    return channel && channel->getPrevKeyTime(time, keyTime);
}

bool HostParm::getNextKeyTime(int k, double time, double &keyTime) const
{
    const HostChannel *channel = getChannel(k);
    return channel && channel->getNextKeyTime(time, keyTime);
}

HostChannelState HostParm::getChannelState(int k, double time) const
{
    const HostChannel *channel = getChannel(k);
    if (channel && channel->isPendingAt(time))
        return HOST_CHANNEL_STATE_PENDING;
    if (channel && channel->isKeyAt(time))
        return HOST_CHANNEL_STATE_KEY;
    if (channel && channel->getNumKeys() > 0)
        return HOST_CHANNEL_STATE_ANIMATED;
    if (hasExpression(k))
        return HOST_CHANNEL_STATE_EXPRESSION;
    return HOST_CHANNEL_STATE_NONE;
}

void HostParm::copyChannel(int k, const HostParm &source, int sourceK)
{
    const HostChannel *from = source.getChannel(sourceK);
    if (!from)
        return;
    // Copy first: source and destination may be the same component.
    HostChannel copy;
    copy.copyContents(*from);
    HostChannel *to = editChannel(k);
    if (!to)
        return;
    myComponents[k].myExpression.clear();
    myComponents[k].myMeaning = HOST_STRING_LITERAL;
    referencesChanged(k);
    to->copyContents(copy);
}

// ---------------------------------------------------------------------------------------
// Writes at a time

double HostParm::limitValue(double value) const
{
    if (myTemplate->hasRange())
    {
        const HostParmRange &r = myTemplate->getRange();
        if (r.myMinStrict && value < r.myMin)
            value = r.myMin;
        if (r.myMaxStrict && value > r.myMax)
            value = r.myMax;
    }
    if (getType().isInteger() || getType().isOrdinal() || getType().isMultiparm())
        value = std::round(value);
    return value;
}

void HostParm::setValue(int k, double time, double value, bool setKeyToo, bool propagate)
{
    if (k < 0 || k >= getVectorSize())
        return;
    if (holdsText(*this))
    {
        setString(k, time, HostExpression::formatNumber(value), HOST_STRING_LITERAL, propagate);
        return;
    }
    HostParmComponent &c = myComponents[k];
    if (c.myChannel)
    {
        c.myExpression.clear();
        c.myMeaning = HOST_STRING_LITERAL;
        referencesChanged(k);
        editChannel(k)->setValue(time, limitValue(value));
    }
    else
    {
        setValue(k, value);
        c.myMeaning = HOST_STRING_LITERAL;
    }
    if (setKeyToo && getType().isAnimatable())
        setKey(k, time);
    if (propagate && getNode())
        getNode()->parmChanged(*this);
}

void HostParm::setString(int k, double time, const std::string &text, HostStringMeaning meaning,
                         bool propagate)
{
    if (k < 0 || k >= getVectorSize())
        return;
    if (holdsText(*this))
        setString(k, text, meaning);
    else if (meaning != HOST_STRING_LITERAL)
        setExpression(k, text, meaning);
    else
    {
        setValue(k, time, std::strtod(text.c_str(), nullptr), /*setKey=*/false,
                 /*propagate=*/false);
    }
    if (propagate && getNode())
        getNode()->parmChanged(*this);
}

void HostParm::overwriteDefault(int k, double time)
{
    if (k < 0 || k >= getVectorSize())
        return;
    if (holdsText(*this) || (!hasChannel(k) && hasExpression(k)))
    {
        overwriteDefault(k);
        return;
    }
    std::string error;
    setDefault(k, HostParmDefault(evalFloat(k, time, error) -
                                  HostChannelManager::get().getLayerSum(*this, k)));
}

const std::string &HostParm::getChannelOverride(int k) const
{
    if (k < 0 || k >= getVectorSize() || !myComponents[k].myOverride)
        return theEmpty;
    return *myComponents[k].myOverride;
}

void HostParm::setChannelOverride(int k, const std::string &path)
{
    if (k < 0 || k >= getVectorSize())
        return;
    std::shared_ptr<const std::string> &slot = myComponents[k].myOverride;
    if (path.empty())
        slot.reset();
    else
        slot = std::make_shared<const std::string>(path);
}

// ---------------------------------------------------------------------------------------
// Channel references

bool HostParm::getChannelReference(int k, HostNode *&node, HostParm *&parm, int &vectorIndex) const
{
    if (k < 0 || k >= getVectorSize() || hasChannel(k))
        return false;
    const HostParmComponent &c = myComponents[k];
    if (c.myMeaning == HOST_STRING_SCRIPT)
        return false;
    const std::string &text = getExpression(k);
    std::string path;
    if (text.empty() || !cachedExpression(text)->getChannelReference(path))
        return false;
    const HostNode *owner = getNode();
    return owner && owner->resolveChannel(path, node, parm, vectorIndex);
}

bool HostParm::followChannelReferences(double, HostNode *&node, HostParm *&parm, int &vectorIndex)
{
    if (!parm)
        return false;
    if (!node)
        node = parm->getNode();
    std::unordered_set<const HostParmComponent *> seen;
    for (;;)
    {
        if (vectorIndex < 0 || vectorIndex >= parm->getVectorSize())
            return true;
        seen.insert(&parm->component(vectorIndex));
        HostNode *nextNode = nullptr;
        HostParm *nextParm = nullptr;
        int nextIndex = -1;
        if (!parm->getChannelReference(vectorIndex, nextNode, nextParm, nextIndex))
            return true;
        if (seen.count(&nextParm->component(nextIndex)) != 0)
            return true; // a cycle: stop at the last component not seen before
        node = nextNode;
        parm = nextParm;
        vectorIndex = nextIndex;
    }
}

std::string HostParm::expandInstanceTokens(const std::string &text, const int *instances,
                                           int nesting)
{
    std::string result;
    result.reserve(text.size() + 8);
    int used = 0;
    for (char c : text)
    {
        if (c == '#' && instances && used < nesting)
            result += std::to_string(instances[used++]);
        else
            result += c;
    }
    return result;
}

// ---------------------------------------------------------------------------------------
// Channel names on nodes

bool HostNode::resolveChannel(const std::string &name, HostNode *&node, HostParm *&parm,
                              int &vectorIndex) const
{
    node = nullptr;
    parm = nullptr;
    vectorIndex = -1;
    if (name.empty())
        return false;
    const HostNode *target = this;
    std::string channel = name;
    const size_t slash = name.rfind('/');
    if (slash != std::string::npos)
    {
        const std::string nodePath = slash == 0 ? std::string("/") : name.substr(0, slash);
        channel = name.substr(slash + 1);
        target = findNode(nodePath);
    }
    if (!target || channel.empty())
        return false;
    int k = -1;
    HostParm *found = target->findChannel(channel, k);
    if (!found || k < 0)
        return false;
    node = const_cast<HostNode *>(target);
    parm = found;
    vectorIndex = k;
    return true;
}
