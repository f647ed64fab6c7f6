// HostTemplatesSink: listener interface for template changes and deletion of operator types.
#pragma once

#include <vector>

class HostOperator;

/// Base of objects that want to hear when an operator type's parameter templates change (or
/// its name, label or icon) and when it is deleted. Keeps the operator types it listens to
/// and leaves them when destroyed.
class HostTemplatesSink
{
public:
    HostTemplatesSink() = default;
    HostTemplatesSink(const HostTemplatesSink &) = delete;
    HostTemplatesSink &operator=(const HostTemplatesSink &) = delete;
    virtual ~HostTemplatesSink();

    /// The operator type's templates, name, label or icon changed.
    virtual void templatesUpdated(HostOperator *op) = 0;
    /// The operator type is being deleted. Overrides must call this base version, which
    /// forgets the operator type.
    virtual void operatorDeleted(HostOperator *op);

    /// Starts listening to `op` (once).
    void addTemplatesInterest(HostOperator *op);
    void removeTemplatesInterest(HostOperator *op);
    bool hasTemplatesInterest(const HostOperator *op) const;
    const std::vector<HostOperator *> &getTemplatesInterests() const { return myOperators; }

private:
    friend class HostOperator;
    std::vector<HostOperator *> myOperators;
};
