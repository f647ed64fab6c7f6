// ShellResourceManager: gzsh's resource manager, which gives every operator type a viewer state.
#pragma once

#include "resource/GZ_ResourceManager.h"

#include <unordered_set>

/// The host's derived resource manager. It watches every standard operator table and gives
/// each operator type a state for the scene viewer, named after the type and bound to it.
/// Such a state follows renames of its type (through the manager's templates listener) and
/// goes away with it. The manager owns the states it makes; it lives for the whole process,
/// like the plain manager that GZcreateResourceManager makes.
class ShellResourceManager : public GZ_ResourceManager
{
public:
    /// Makes the process's manager as GZcreateResourceManager does (warnings of the built-in
    /// tables governed by `print_warnings`), but of this class. When a manager exists already,
    /// returns it unchanged.
    static GZ_ResourceManager *create(bool print_warnings);

    ShellResourceManager();
    ~ShellResourceManager() override;

    void operatorDeleted(HostOperator *op) override;

protected:
    /// Gives every operator type of the network's table that has no scene-viewer state one.
    void addAutomaticStates(GZ_NetworkType type) override;

private:
    std::unordered_set<GZ_StateTemplate *> myAutomaticStates;
};
