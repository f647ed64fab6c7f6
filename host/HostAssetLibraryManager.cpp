// HostAssetLibraryManager: the host's operator-type library files and the loaded ones.
#include "host/HostAssetLibraryManager.h"

#include "host/HostAssetLibraryFile.h"
#include "host/HostCommandManager.h"
#include "host/HostDiagnostics.h"
#include "host/HostOperator.h"
#include "host/HostReader.h"

#include <filesystem>
#include <utility>

HostAssetLibraryManager &HostAssetLibraryManager::get()
{
    static HostAssetLibraryManager manager;
    return manager;
}

std::string HostAssetLibraryManager::expandPath(const std::string &path)
{
    return HostCommandManager::getInstance()->expandVariables(path);
}

bool HostAssetLibraryManager::readLibrary(const std::string &path,
                                          std::vector<HostAssetDefinition> &out,
                                          const std::string &shown_name)
{
    out.clear();
    const std::string &name = shown_name.empty() ? path : shown_name;
    std::string text, error;
    if (!HostReader::readFile(path, text))
    {
        HostDiagnostics::report(HostDiagSeverity::Error, name, 0,
                                "cannot read operator type library",
                                name + ": cannot read operator type library");
        return false;
    }
    int line = 0;
    if (HostAssetLibraryFile::parse(text, out, error, line))
        return true;
    HostDiagnostics::report(HostDiagSeverity::Error, name, line,
                            "damaged operator type library, nothing loaded: " + error);
    return false;
}

bool HostAssetLibraryManager::loadLibrary(const std::string &path, const std::string &source,
                                          const std::string &shown_name)
{
    std::vector<HostAssetDefinition> definitions;
    if (!readLibrary(path, definitions, shown_name))
        return false;
    Library *library = findMutable(path);
    if (!library)
    {
        myLibraries.push_back({path, source, {}});
        library = &myLibraries.back();
    }
    library->mySource = source;
    library->myDefinitions = std::move(definitions);
    reindex();
    return true;
}

const HostAssetLibraryManager::Library *
HostAssetLibraryManager::findLibrary(const std::string &path) const
{
    for (const Library &library : myLibraries)
        if (library.myPath == path)
            return &library;
    return nullptr;
}

HostAssetLibraryManager::Library *HostAssetLibraryManager::findMutable(const std::string &path)
{
    return const_cast<Library *>(std::as_const(*this).findLibrary(path));
}

void HostAssetLibraryManager::clear()
{
    myLibraries.clear();
    myIndex.clear();
}

void HostAssetLibraryManager::reindex()
{
    myIndex.clear();
    for (size_t i = 0; i < myLibraries.size(); ++i)
        for (const HostAssetDefinition &def : myLibraries[i].myDefinitions)
            myIndex.emplace(def.getName(), i);
}

std::string HostAssetLibraryManager::findDefinitionLibrary(const std::string &qualified_name) const
{
    auto it = myIndex.find(qualified_name);
    return it == myIndex.end() ? std::string() : myLibraries[it->second].myPath;
}

HostAssetDefinition HostAssetLibraryManager::createIndexFile(const HostOperator &op)
{
    return HostAssetDefinition(op.getQualifiedName(), op.getLabel(), op.getMinInputs(),
                               op.getMaxInputs());
}

void HostAssetLibraryManager::addSection(HostAssetDefinition &def, const std::string &name,
                                         const std::string &bytes)
{
    def.setSection(name, bytes);
}

bool HostAssetLibraryManager::addDefinitionToFile(const std::string &path,
                                                  const HostAssetDefinition &def)
{
    std::vector<HostAssetDefinition> definitions;
    std::error_code ec;
    if (std::filesystem::exists(path, ec) && !readLibrary(path, definitions))
        return false; // never overwrite what could not be read: it may still be recoverable
    bool replaced = false;
    for (HostAssetDefinition &existing : definitions)
        if (existing.getName() == def.getName())
        {
            existing = def;
            replaced = true;
        }
    if (!replaced)
        definitions.push_back(def);
    std::string error;
    if (!HostAssetLibraryFile::write(path, definitions, error))
    {
        HostDiagnostics::report(HostDiagSeverity::Error, path, 0,
                                "operator type library not saved: " + error,
                                path + ": operator type library not saved: " + error);
        return false;
    }
    if (Library *library = findMutable(path))
    {
        library->myDefinitions = std::move(definitions);
        reindex();
    }
    return true;
}
