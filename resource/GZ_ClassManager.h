// GZ_ClassManager: the constructors of the host's handle and selector classes.
#pragma once

#include <string>
#include <vector>

/// Collects the constructors that the host's viewer libraries contribute, before the
/// resource manager joins them to the templates of the same names. A process-wide
/// singleton from GZgetClassManager(); indices are not checked.
class GZ_ClassManager
{
public:
    GZ_ClassManager() = default;
    GZ_ClassManager(const GZ_ClassManager &) = default;
    GZ_ClassManager &operator=(const GZ_ClassManager &) = default;

    void addGZ(const char *name, void *constructor);
    void addSelector(const char *name, void *data, void *constructor);

    int getNumGZs() const { return static_cast<int>(myGZNames.size()); }
    const std::string &getGZName(int i) const { return myGZNames[i]; }
    void *getGZConstructor(int i) const { return myGZConstructors[i]; }

    int getNumSelectors() const { return static_cast<int>(mySelectorNames.size()); }
    const std::string &getSelectorName(int i) const { return mySelectorNames[i]; }
    void *getSelectorConstructor(int i) const { return mySelectorConstructors[i]; }
    void *getSelectorData(int i) const { return mySelectorData[i]; }

private:
    std::vector<std::string> myGZNames;
    std::vector<void *> myGZConstructors;
    std::vector<std::string> mySelectorNames;
    std::vector<void *> mySelectorConstructors;
    std::vector<void *> mySelectorData;
};

/// The class manager singleton: created empty on first call, never destroyed.
GZ_ClassManager *GZgetClassManager();
