// HostTagManager: the process-wide maker of tag lists and tag expressions.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

class HostTagExpression;
class HostTagList;

/// Makes tag lists and expressions and shares equal ones (many classes carry the same tags).
/// One manager per process, created on first use under a lock; its own tables are guarded by
/// a lock as well, so readers on other threads may ask it too.
class HostTagManager
{
public:
    static HostTagManager &get();

    /// A shared tag list for `text`; `errors` gets the problems of the text.
    std::shared_ptr<const HostTagList> createTagList(const std::string &text, std::string &errors);
    /// A shared expression for `text`; null with `errors` set when it does not parse.
    std::shared_ptr<const HostTagExpression> createExpression(const std::string &text,
                                                              std::string &errors);

private:
    HostTagManager() = default;

    std::mutex myLock;
    std::map<std::string, std::pair<std::shared_ptr<const HostTagList>, std::string>> myLists;
    std::map<std::string, std::pair<std::shared_ptr<const HostTagExpression>, std::string>>
        myExpressions;
};
