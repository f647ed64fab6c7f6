// HostTemplatesSink: bookkeeping of the operator types a listener watches.
#include "host/HostTemplatesSink.h"

#include "host/HostOperator.h"

#include <algorithm>

HostTemplatesSink::~HostTemplatesSink()
{
    while (!myOperators.empty())
        myOperators.back()->removeTemplatesSink(this);
}

void HostTemplatesSink::operatorDeleted(HostOperator *op)
{
    removeTemplatesInterest(op);
}

void HostTemplatesSink::addTemplatesInterest(HostOperator *op)
{
    if (op)
        op->addTemplatesSink(this);
}

void HostTemplatesSink::removeTemplatesInterest(HostOperator *op)
{
    if (op)
        op->removeTemplatesSink(this);
}

bool HostTemplatesSink::hasTemplatesInterest(const HostOperator *op) const
{
    return std::find(myOperators.begin(), myOperators.end(), op) != myOperators.end();
}
