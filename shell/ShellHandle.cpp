// ShellHandle: finding a node's bound handle and building its live link.
#include "shell/ShellHandle.h"

#include "shell/ShellViewerClasses.h"

#include "host/HostNode.h"
#include "host/HostOperator.h"
#include "resource/GZ_BindingHandleInfo.h"
#include "resource/GZ_GZTemplate.h"
#include "resource/GZ_ResourceManager.h"

namespace
{
/// The first binding of `op` with that description: descriptions tell the instances of one
/// operator type apart, so the first is the only one a tool would offer.
const GZ_BindingHandleInfo *findBinding(HostOperator *op, const std::string &description)
{
    GZ_ResourceManager *manager = GZgetResourceManager();
    const std::vector<GZ_BindingHandleInfo> *bindings =
        manager ? manager->getBindingHandles(op) : nullptr;
    if (!bindings)
        return nullptr;
    for (const GZ_BindingHandleInfo &info : *bindings)
        if (info.getGZDescription() == description)
            return &info;
    return nullptr;
}
} // namespace

std::unique_ptr<ShellHandle> ShellHandle::create(HostNode &node, const std::string &description,
                                                 const std::string &command, std::ostream &err)
{
    const GZ_BindingHandleInfo *info = findBinding(node.getOperator(), description);
    if (!info)
    {
        err << command << ": no handle " << description << " is bound to ";
        if (node.getOperator())
            err << node.getOperatorName() << " (" << node.getFullPath() << ")\n";
        else
            err << node.getFullPath() << ", a network\n";
        return nullptr;
    }
    GZ_GZTemplate *gz_template =
        GZgetResourceManager()->getOpHandleLinkTemplate(info->getGZName().c_str());
    if (!gz_template)
    {
        err << command << ": no handle type " << info->getGZName() << "\n";
        return nullptr;
    }
    const ShellViewerClasses::HandleClass *handle_class =
        ShellViewerClasses::handleClass(*gz_template);
    if (!handle_class)
    {
        err << command << ": gzsh cannot show handles of type " << info->getGZName() << "\n";
        return nullptr;
    }
    std::unique_ptr<ShellHandle> handle(handle_class->make(*gz_template));
    handle->setRootDescription(description.c_str());
    handle->id(info->getId());
    const std::string type = node.getOperatorName();
    for (const GZ_BindingParmInfo &link : info->getBindings())
        handle->linkOpParmToHandleParm(type.c_str(), link.getGZParm().c_str(),
                                       link.getOpParm().c_str());
    handle->attach(node);
    handle->loadSettingsFromTables(/*use_last_table=*/true);
    return handle;
}
