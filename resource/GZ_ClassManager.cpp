// GZ_ClassManager: appending handle and selector classes.
#include "resource/GZ_ClassManager.h"

void GZ_ClassManager::addGZ(const char *name, void *constructor)
{
    myGZNames.emplace_back(name ? name : "");
    myGZConstructors.push_back(constructor);
}

void GZ_ClassManager::addSelector(const char *name, void *data, void *constructor)
{
    mySelectorNames.emplace_back(name ? name : "");
    mySelectorData.push_back(data);
    mySelectorConstructors.push_back(constructor);
}

GZ_ClassManager *GZgetClassManager()
{
    // Deliberately leaked: classes register from static initialisers of other
    // libraries, and the manager must outlive all of them.
    static GZ_ClassManager *theManager = new GZ_ClassManager;
    return theManager;
}
