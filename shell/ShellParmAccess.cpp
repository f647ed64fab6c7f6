// ShellParmAccess: parameter values from and to command words.
#include "shell/ShellParmAccess.h"

#include "host/HostChoiceList.h"
#include "host/HostNode.h"
#include "host/HostParm.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>

HostParm *ShellParmAccess::resolve(const HostNode &node, const std::string &name, int &first,
                                   int &count)
{
    if (HostParm *parm = node.getParm(name))
    {
        first = 0;
        count = parm->getVectorSize();
        return parm;
    }
    int k = -1;
    HostParm *parm = node.findChannel(name, k);
    if (!parm || k < 0)
        return nullptr;
    first = k;
    count = 1;
    return parm;
}

bool ShellParmAccess::parseNumber(const std::string &word, double &value)
{
    if (word.empty())
        return false;
    const char *start = word.c_str();
    char *end = nullptr;
    errno = 0;
    value = std::strtod(start, &end);
    if (end != start + word.size() || errno == ERANGE)
        return false;
    // The scene writer writes infinities and NaN as these words, so they must read back;
    // other spellings strtod takes ("INFINITY", "nan(1)") are not numbers here.
    if (std::isfinite(value))
        return true;
    const std::string bare = word[0] == '-' || word[0] == '+' ? word.substr(1) : word;
    return bare == "inf" || bare == "nan";
}

HostParm *ShellParmAccess::resolveForWrite(const HostNode &node, const std::string &name,
                                           size_t num_values, int &first, std::string &error)
{
    int count = 0;
    HostParm *parm = resolve(node, name, first, count);
    if (!parm)
    {
        error = node.getFullPath() + " has no parameter or channel " + name;
        return nullptr;
    }
    const HostParmType &type = parm->getType();
    if (!type.isNumeric() && !type.isString())
    {
        error = name + " does not hold values";
        return nullptr;
    }
    if (static_cast<int>(num_values) > count)
    {
        error =
            name + " takes at most " + std::to_string(count) + (count == 1 ? " value" : " values");
        return nullptr;
    }
    return parm;
}

bool ShellParmAccess::canModify(const HostNode &node, const HostParm &parm, int first,
                                size_t num_values, std::string &error)
{
    for (size_t i = 0; i < num_values; ++i)
    {
        const int k = first + static_cast<int>(i);
        if (!node.canModifyFromUI(parm, k))
        {
            error = "cannot change " + parm.getChannelName(k) + " of " + node.getFullPath() +
                    " (locked or not writable)";
            return false;
        }
    }
    return true;
}

bool ShellParmAccess::set(HostNode &node, const std::string &name,
                          const std::vector<std::string> &values, std::string &error)
{
    int first = 0;
    HostParm *parm = resolveForWrite(node, name, values.size(), first, error);
    if (!parm)
        return false;
    const HostParmType &type = parm->getType();

    // Check every value before changing anything.
    std::vector<double> numbers(values.size());
    if (type.isNumeric())
    {
        const HostChoiceList *menu = parm->getTemplate().getChoiceList();
        for (size_t i = 0; i < values.size(); ++i)
        {
            int item = menu ? menu->findToken(values[i]) : -1;
            if (item >= 0)
                numbers[i] = item;
            else if (!parseNumber(values[i], numbers[i]))
            {
                error = "not a number: " + values[i];
                return false;
            }
            else if (menu && parm->clampToMenu(std::round(numbers[i])) != std::round(numbers[i]))
            {
                // Typed indices are refused rather than clamped, like unknown tokens.
                error = "not an item of " + parm->getName() + ": " + values[i];
                return false;
            }
        }
    }

    if (!canModify(node, *parm, first, values.size(), error))
        return false;
    for (size_t i = 0; i < values.size(); ++i)
    {
        int k = first + static_cast<int>(i);
        bool done = type.isString() ? node.setParmString(*parm, k, values[i])
                                    : node.setParmValue(*parm, k, numbers[i]);
        if (!done)
        {
            error = "cannot change " + parm->getChannelName(k) + " of " + node.getFullPath() +
                    " (locked or not writable)";
            return false;
        }
    }
    return true;
}

bool ShellParmAccess::get(const HostNode &node, const std::string &name, double time,
                          std::string &text, std::string &error)
{
    int first = 0, count = 0;
    HostParm *parm = resolve(node, name, first, count);
    if (!parm || count < 1)
    {
        error = node.getFullPath() + " has no parameter or channel " + name;
        return false;
    }
    const HostParmType &type = parm->getType();
    if (type.isString())
    {
        text = parm->evalString(first, time);
        return true;
    }
    if (!type.isNumeric())
    {
        error = name + " does not hold values";
        return false;
    }
    char buffer[40];
    std::snprintf(buffer, sizeof(buffer), "%g", parm->evalFloat(first, time));
    text = buffer;
    return true;
}
