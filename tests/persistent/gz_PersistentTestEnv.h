// Shared helpers of the persistent handle tests: a scene, a handle type, the manager, and
// running pom* commands with captured output.
#pragma once

#include "host/HostCommandManager.h"
#include "host/HostUndoManager.h"
#include "persistent/GZ_Manager.h"
#include "persistent/GZ_OHLPersistent.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"
#include "tests/host/HostFixture.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace gztest
{

/// Every test shares the process-wide manager and interpreter; the fixture gives each a
/// fresh director with the object type "pxform" (parameter t: tx ty tz), the handle type
/// "ptest" (handle parameters tx ty tz), and an empty manager with an empty undo history.
class PersistentFixture : public ::HostFixture
{
protected:
    void SetUp() override
    {
        HostFixture::SetUp();
        addType("Object", "pxform", {HostParmTemplate(HOST_PARM_XYZ, "t", "Translate", 3)});
        GZ_ResourceManager *resources = GZcreateResourceManager(/*print_warnings=*/false);
        if (!resources->getOpHandleLinkTemplate("ptest"))
        {
            static const char *names[] = {"tx", "ty", "tz", nullptr};
            resources->registerOpHandleLink(
                new GZ_GZTemplate("ptest", "Persistent Test", "object", "", names, 0, ~0u, false));
        }
        myManager = GZgetManager();
        empty();
        undo().clear();
    }

    void TearDown() override
    {
        empty();
        HostFixture::TearDown();
    }

    void empty()
    {
        undo().disable();
        myManager->removeAllGZs();
        for (int i = myManager->getNumGroups() - 1; i >= 0; --i)
            myManager->removeGroup(myManager->getGroup(i));
        undo().enable();
    }

    HostUndoManager &undo() { return myDirector.getUndoManager(); }

    HostNode *make(const std::string &path) { return HostFixture::make("pxform", path); }

    GZ_OHLPersistent *handle(const char *name) const
    {
        return myManager->getGZ(myManager->getGZIndex(name));
    }

    /// The handles and groups as they are saved.
    std::string saved() const
    {
        std::ostringstream os;
        myManager->save(os);
        return os.str();
    }

    /// Runs command text; returns what it wrote to the output, and its errors in myErr.
    std::string run(const std::string &text)
    {
        std::ostringstream out, err;
        HostCommandManager *commands = HostCommandManager::getInstance();
        commands->setStreams(&out, &err);
        commands->execute(text);
        commands->setStreams(&std::cout, &std::cerr);
        myErr = err.str();
        return out.str();
    }

    GZ_Manager *myManager = nullptr;
    std::string myErr;
};

/// Records every notification of handles and groups as "NAME:CHANGE", and for handles
/// whether the manager found the handle by its name at that moment ('1') or not ('0').
struct ChangeLog
{
    static void onGZ(GZ_OHLPersistent *handle, GZ_ChangeType change, void *data)
    {
        auto *log = static_cast<ChangeLog *>(data);
        log->myEvents.push_back(handle->getName() + ":" + std::to_string(change));
        log->myFound += log->myManager->findGZ(handle->getName().c_str()) == handle ? '1' : '0';
    }
    static void onGroup(GZ_OHLGroup *group, GZ_ChangeType change, void *data)
    {
        static_cast<ChangeLog *>(data)->myEvents.push_back("group " + group->getName() + ":" +
                                                           std::to_string(change));
    }
    void attach(GZ_Manager *manager)
    {
        myManager = manager;
        manager->addGZCallback(&onGZ, this);
        manager->addGroupCallback(&onGroup, this);
    }
    void detach(GZ_Manager *manager)
    {
        manager->removeGZCallback(&onGZ, this);
        manager->removeGroupCallback(&onGroup, this);
    }
    std::vector<std::string> myEvents;
    std::string myFound;
    GZ_Manager *myManager = nullptr;
};

} // namespace gztest
