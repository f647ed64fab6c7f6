// GZ_PythonHandle: the description and the templates of viewer handles written in Python.
#pragma once

#include "host/HostParmTemplate.h"
#include "link/GZ_PythonResourceRecords.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_HandleTemplate.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// Scripted viewer handles: the description the scripting layer fills in, and the two
/// templates made from it that the resource manager registers like any other handle.
namespace GZ_PythonHandle
{

/// The registration part of a handle description.
struct Register : public GZ_PythonResource::RegisterBase
{
    /// Blank-separated network tokens the handle supports ("sop object").
    std::string networkTypes;
};

/// One parameter of the handle: how many components it has and, once an op-handle-link
/// template has been made from the description, the handle parameter name of each.
struct ParmDefinition
{
    int components = 1;
    std::vector<std::string> componentNames;
};

/// The description of one scripted handle. Copied whole into each template made from it.
struct Info : public Register
{
    /// The handle's parameters, in the order in which they are numbered.
    std::vector<std::string> parmNames;
    /// The definition of each parameter, by name.
    std::map<std::string, ParmDefinition> parmDefinitions;
    /// The host parameter templates the handle declares; null when it declares none.
    GZ_PythonResource::ParmTemplates parmTemplates;
};

/// The handle template of a scripted handle. Its parameter templates are built from the
/// description: the declared parameters inside one collapsible folder. The use count
/// lets the scripting layer track live users of the template.
class Template : public GZ_HandleTemplate
{
public:
    Template(const Info &info, void *constructor);
    Template(const Template &other);
    Template &operator=(const Template &other);
    ~Template() override;

    HostParmTemplate *templates() override;
    const HostParmTemplate *templates() const override;

    const Info &info() const { return *myInfo; }
    Info &info() { return *myInfo; }
    const std::shared_ptr<Info> &infoPtr() const { return myInfo; }

    std::uint64_t addRefCount() { return ++myUseCount; }
    /// Decrements the use count unless it is already 0; returns the count afterwards.
    std::uint64_t releaseRefCount();
    std::uint64_t useCount() const { return myUseCount; }

private:
    void buildTemplates();

    std::shared_ptr<Info> myInfo;
    /// Folder, declared parameters and the terminator; empty when none are declared.
    HostParmTemplateList myTemplates;
    std::uint64_t myUseCount = 0;
};

/// The op-handle-link template of a scripted handle. Its handle parameters are numbered
/// from the description; a parameter of n >= 2 components gives n handle parameters.
class GZTemplate : public GZ_GZTemplate
{
public:
    /// Records the component names of each numbered parameter into the shared
    /// description's parameter definitions.
    explicit GZTemplate(std::shared_ptr<Info> &info);
    ~GZTemplate() override;

    const std::shared_ptr<Info> &infoPtr() const { return myInfo; }

    /// A parameter-name list holding only its terminating null.
    static const char *const *emptyParmNames();

private:
    void numberParms();

    std::shared_ptr<Info> myInfo;
};

/// Implemented by the host's viewer so that a scripted handle can reach it.
class HostAccessor
{
public:
    HostAccessor() = default;
    HostAccessor(const HostAccessor &) {}
    HostAccessor &operator=(const HostAccessor &) { return *this; }
    virtual ~HostAccessor() {}

    /// Asks the viewer that shows the handle to redraw it.
    virtual void requestRedraw() = 0;
};
} // namespace GZ_PythonHandle
