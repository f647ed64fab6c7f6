// HostScriptEvaluator: the process's evaluator of scripting-language expressions.
#include "host/HostScriptEvaluator.h"

namespace
{
HostScriptEvaluator *theEvaluator = nullptr;
}

void HostScriptEvaluator::install(HostScriptEvaluator *evaluator)
{
    theEvaluator = evaluator;
}

HostScriptEvaluator *HostScriptEvaluator::installed()
{
    return theEvaluator;
}
