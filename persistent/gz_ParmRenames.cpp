// gz_ParmRenames: persistent handles follow the renames and deletions of node parameters.
#include "persistent/gz_ParmRenames.h"

#include "link/gz_Binding.h"
#include "persistent/GZ_Manager.h"
#include "persistent/GZ_OHLPersistent.h"
#include "resource/GZ_GZTemplate.h"

#include "host/HostCommandManager.h"
#include "host/HostNode.h"

#include <algorithm>
#include <sstream>

namespace
{
// The binding with its channel name replaced (a projection keeps its numbers).
std::string rebind(const std::string &binding, const std::string &from, const std::string &to)
{
    if (binding == from)
        return to;
    const size_t close = binding.find('}');
    const size_t at = binding.rfind(from, close);
    return at == std::string::npos ? binding : binding.substr(0, at) + to +
                                                   binding.substr(at + from.size());
}

void runQuietly(const std::string &text)
{
    HostExecOptions options;
    options.output = false;
    options.errors = false;
    HostCommandManager::getInstance()->execute(text, options);
}
} // namespace

void gz_ParmRenames::follow(GZ_Manager &manager, HostNode &node,
                            const std::vector<std::pair<std::string, std::string>> &renamed,
                            const std::vector<std::string> &deleted,
                            std::vector<std::string> &warnings)
{
    const std::string path = node.getFullPath();
    std::vector<GZ_OHLPersistent *> handles;
    for (int i = 0; i < manager.getNumGZs(); ++i)
        if (manager.getGZ(i)->hasOpNode(node))
            handles.push_back(manager.getGZ(i));
    for (GZ_OHLPersistent *handle : handles)
        for (int k = 0; k < handle->getNumOps(); ++k)
        {
            if (handle->getOpNode(k) != &node)
                continue;
            const auto &names = handle->linkedParmNames(k);
            const auto &parms = handle->getTemplate().parmNameList();
            std::ostringstream attach;
            bool changed = false;
            for (int j = 0; j < static_cast<int>(names.size()) && j < handle->getNumHandleParms();
                 ++j)
            {
                if (names[j].empty() || handle->getOpnumForHandleParmIndex(j) != k)
                    continue;
                std::string binding = names[j];
                std::string channel;
                gz::Projection projection;
                if (!gz::isExpressionBinding(binding))
                    gz::parseBinding(binding, channel, projection);
                const auto to = std::find_if(renamed.begin(), renamed.end(),
                                             [&](const auto &r) { return r.first == channel; });
                if (!channel.empty() &&
                    std::find(deleted.begin(), deleted.end(), channel) != deleted.end())
                {
                    warnings.push_back("The handle '" + handle->getName() +
                                       "' loses its binding of '" + parms[j] + "' to '" + path +
                                       "/" + channel + "': the parameter has been deleted.");
                    changed = true;
                    continue;
                }
                if (!channel.empty() && to != renamed.end())
                {
                    binding = rebind(binding, channel, to->second);
                    changed = true;
                }
                attach << " ";
                HostCommandManager::protectString(attach, binding + ":" + parms[j]);
            }
            if (!changed)
                continue;
            std::ostringstream name, node_path;
            HostCommandManager::protectString(name, handle->getName());
            HostCommandManager::protectString(node_path, path);
            runQuietly("pomattach -i " + std::to_string(handle->id()) + " " + name.str() + " " +
                       node_path.str() + attach.str());
        }
}
