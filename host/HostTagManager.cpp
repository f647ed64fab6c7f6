// HostTagManager: creation under a lock and sharing of tag lists and expressions.
#include "host/HostTagManager.h"

#include "host/HostTagExpression.h"
#include "host/HostTagList.h"

namespace
{
std::mutex theCreateLock;
HostTagManager *theManager = nullptr;
} // namespace

HostTagManager &HostTagManager::get()
{
    std::lock_guard<std::mutex> guard(theCreateLock);
    if (!theManager)
        theManager = new HostTagManager(); // lives for the process
    return *theManager;
}

std::shared_ptr<const HostTagList> HostTagManager::createTagList(const std::string &text,
                                                                 std::string &errors)
{
    std::lock_guard<std::mutex> guard(myLock);
    auto it = myLists.find(text);
    if (it == myLists.end())
    {
        std::string problems;
        auto list = std::make_shared<const HostTagList>(text, problems);
        it = myLists.emplace(text, std::make_pair(list, problems)).first;
    }
    errors += it->second.second;
    return it->second.first;
}

std::shared_ptr<const HostTagExpression> HostTagManager::createExpression(const std::string &text,
                                                                          std::string &errors)
{
    std::lock_guard<std::mutex> guard(myLock);
    auto it = myExpressions.find(text);
    if (it == myExpressions.end())
    {
        std::string problems;
        auto expr = std::make_shared<const HostTagExpression>(text, problems);
        if (!expr->isValid())
            expr.reset();
        it = myExpressions.emplace(text, std::make_pair(expr, problems)).first;
    }
    errors += it->second.second;
    return it->second.first;
}
