// HostCommandArgs: argument and option access for command handlers.
#include "host/HostCommandArgs.h"

#include <cstdlib>
#include <ostream>

namespace
{
const std::string theEmpty;
}

HostCommandArgs::HostCommandArgs(std::vector<std::string> args, std::ostream &out,
                                 std::ostream &err)
    : myArgs(std::move(args)), myOut(&out), myErr(&err)
{
}

const char *HostCommandArgs::argv(int i) const
{
    if (i < 0 || i >= argc())
        return nullptr;
    return myArgs[i].c_str();
}

const std::string &HostCommandArgs::arg(int i) const
{
    if (i < 0 || i >= argc())
        return theEmpty;
    return myArgs[i];
}

const std::vector<std::string> *HostCommandArgs::findOption(char letter) const
{
    for (const auto &option : myOptions)
        if (option.first == letter)
            return &option.second;
    return nullptr;
}

int HostCommandArgs::nargp(char letter) const
{
    const std::vector<std::string> *values = findOption(letter);
    return values ? static_cast<int>(values->size()) : 0;
}

const char *HostCommandArgs::argp(char letter, int i) const
{
    const std::vector<std::string> *values = findOption(letter);
    if (!values || i < 0 || i >= static_cast<int>(values->size()))
        return nullptr;
    return (*values)[i].c_str();
}

int HostCommandArgs::iargp(char letter, int i, int fallback) const
{
    const char *value = argp(letter, i);
    return value ? std::atoi(value) : fallback;
}

double HostCommandArgs::fargp(char letter, int i, double fallback) const
{
    const char *value = argp(letter, i);
    return value ? std::atof(value) : fallback;
}

std::string HostCommandArgs::optionLetters() const
{
    std::string letters;
    for (const auto &option : myOptions)
        letters += option.first;
    return letters;
}

void HostCommandArgs::setOption(char letter, std::vector<std::string> values)
{
    for (auto &option : myOptions)
    {
        if (option.first == letter)
        {
            option.second = std::move(values);
            return;
        }
    }
    myOptions.emplace_back(letter, std::move(values));
}

void HostCommandArgs::showUsage() const
{
    *myErr << "Usage: " << myUsage << "\n";
}
