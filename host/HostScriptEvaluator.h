// HostScriptEvaluator: the hook through which an embedded scripting layer evaluates
// scripting-language parameter expressions.
#pragma once

#include <string>

class HostParm;
struct HostExprValue;

/// Parameters hold expressions in two languages: the host's own, which the host evaluates,
/// and the scripting language, which only a scripting layer can evaluate. The layer installs
/// one evaluator for the process; without one, reading such an expression gives 0 or "" and
/// theNotEvaluated as its message, as any failed evaluation does. Keeps the host free of any
/// dependency on the scripting language's runtime.
class HostScriptEvaluator
{
public:
    /// The message of a scripting-language expression read with no evaluator installed.
    static constexpr const char *theNotEvaluated =
        "Scripting-language expressions are not evaluated here";

    virtual ~HostScriptEvaluator() = default;

    /// Evaluates `text`, the expression of `parm`, at `time`. On failure `value` is left
    /// empty and `error` says why. Never throws.
    virtual bool evaluate(const HostParm &parm, const std::string &text, double time,
                          HostExprValue &value, std::string &error) = 0;

    /// Installs the process's evaluator (null removes it); the caller keeps ownership and
    /// removes it before destroying it.
    static void install(HostScriptEvaluator *evaluator);
    static HostScriptEvaluator *installed();
};
