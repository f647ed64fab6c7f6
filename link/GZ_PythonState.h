// GZ_PythonState: the description and the template of viewer states written in Python.
#pragma once

#include "host/HostParmTemplate.h"
#include "link/GZ_PythonResourceRecords.h"
#include "resource/GZ_NetworkType.h"
#include "resource/GZ_StateTemplate.h"
#include "resource/GZ_ViewerType.h"

#include <cstdint>
#include <memory>
#include <string>

class HostNode;

/// Scripted viewer states: the description the scripting layer fills in, the state template
/// made from it, and the interface through which the host's viewer serves a running state.
namespace GZ_PythonState
{

/// The registration part of a state description.
struct Register : public GZ_PythonResource::RegisterBase
{
    /// The key description from which the state's volatile keys are computed.
    std::string volatileHotkey;
    /// The viewer enters the state even without a node of its operator type.
    bool opIndependent = false;
    bool supportsSelectionChange = false;
    bool supportsMoveTool = false;
};

/// The description of one scripted state. Copied whole into each template made from it.
struct Info : public Register
{
    /// The host parameter templates the state declares; null when it declares none.
    GZ_PythonResource::ParmTemplates parmTemplates;
    /// Through which the host calls the script.
    GZ_PythonResource::CallbackHandler callbacks;
};

/// The state template of a scripted state. Owned by whoever registers it, like every
/// state; the description is shared with the copies of the template.
class Template : public GZ_StateTemplate
{
public:
    Template(const Info &info, void *constructor, GZ_ViewerType viewerType,
             unsigned int networkMask);
    Template(const Template &other);
    Template &operator=(const Template &other);
    ~Template() override;

    HostParmTemplate *templates() override;
    const HostParmTemplate *templates() const override;
    /// A scripted state is entered only the ordinary way, whatever its op-independence.
    bool forceStateToEnter() const override { return false; }

    const Info &info() const { return *myInfo; }
    Info &info() { return *myInfo; }
    const GZ_PythonResource::CallbackHandler &callbacks() const { return myInfo->callbacks; }

    std::uint64_t addRefCount() { return ++myUseCount; }
    /// Decrements the use count unless it is already 0; returns the count afterwards.
    std::uint64_t releaseRefCount();
    std::uint64_t useCount() const { return myUseCount; }

private:
    void buildTemplates();

    std::shared_ptr<Info> myInfo;
    /// Declared parameters and the terminator.
    HostParmTemplateList myTemplates;
    std::uint64_t myUseCount = 0;
};

/// Implemented by the host's viewer so that a running scripted state can reach it.
class HostAccessor
{
public:
    HostAccessor() = default;
    HostAccessor(const HostAccessor &) {}
    HostAccessor &operator=(const HostAccessor &) { return *this; }
    virtual ~HostAccessor() {}

    virtual void requestRedraw() = 0;
    /// Shows the state's prompt in the viewer; clearPrompt removes it.
    virtual void setPrompt(const char *text) = 0;
    virtual void clearPrompt() = 0;
    /// Shows a transient message in the viewer.
    virtual void showMessage(const char *text) = 0;
    virtual void setCursor(const char *cursor_name) = 0;
    virtual double currentTime() const = 0;
    /// The node the state works on, or null.
    virtual HostNode *currentNode() const = 0;
    virtual std::string viewerName() const = 0;
    virtual GZ_ViewerType viewerType() const = 0;
    virtual GZ_NetworkType networkType() const = 0;
    /// Shows or hides a handle the state has bound, by handle instance name.
    virtual void showHandle(const char *handle_name, bool on) = 0;
    /// Runs one line of host commands on behalf of the state.
    virtual void runCommand(const char *command) = 0;
    /// Leaves the state and enters another one, by state name.
    virtual void enterState(const char *state_name) = 0;
    virtual void exitState() = 0;
};
} // namespace GZ_PythonState
