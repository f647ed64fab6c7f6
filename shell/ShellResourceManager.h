// ShellResourceManager: gzsh's resource manager, which gives every operator type a viewer state
// and opens and closes parameter cache periods.
#pragma once

#include "resource/GZ_ResourceManager.h"

#include <string>
#include <vector>

class HostDirector;

/// The host's derived resource manager. It watches every standard operator table and gives
/// each operator type a state for the scene viewer, named after the type and bound to it.
/// Such a state follows renames of its type (through the manager's templates listener) and
/// goes away with it. The states it makes are handed to the base manager, which owns them; it
/// lives for the whole process,
/// like the plain manager that GZcreateResourceManager makes.
class ShellResourceManager : public GZ_ResourceManager
{
public:
    /// Makes the process's manager as GZcreateResourceManager does (warnings of the built-in
    /// tables governed by `print_warnings`), but of this class. When a manager exists already,
    /// returns it unchanged.
    static GZ_ResourceManager *create(bool print_warnings);

    ShellResourceManager();

    /// Handles written in Python are shown by gzsh's generic handle class, like built-in ones.
    int registerOpHandleLink(GZ_GZTemplate *gz) override;

    // Handles and states written in Python: the ones registered with this manager whose
    // templates are scripted ones. Names come in name order.
    const std::vector<std::string> &getViewerHandleTypeNames() const override;
    bool isRegisteredViewerHandle(const char *name) const override;
    const GZ_PythonHandle::Template *viewerHandleTemplate(const char *name) const override;
    bool isRegisteredViewerState(const char *name) const override;
    GZ_PythonState::Template *viewerStateTemplate(const char *name) override;
    const GZ_PythonState::Template *viewerStateTemplate(const char *name) const override;

    /// Opens a parameter cache period: until the matching close, handle links hand the
    /// components they would key or scope to the cache. Periods nest.
    static void beginParmsCache() { startParmsCache(); }
    /// Closes a period; false when none is open. Closing the outermost one first keys (at
    /// the director's time) and scopes every cached component, as the links asked, once for
    /// all of them. Components of nodes deleted meanwhile are dropped.
    static bool endParmsCache(HostDirector &director);

protected:
    /// Gives every operator type of the network's table that has no scene-viewer state one.
    void addAutomaticStates(GZ_NetworkType type) override;

private:
    /// Keys and scopes the cached components of the director's live nodes.
    static void applyParmsCache(HostDirector &director);

    mutable std::vector<std::string> myViewerHandleNames;
};
