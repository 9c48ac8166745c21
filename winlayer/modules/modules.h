#pragma once
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "winlayer/include/windows.h"
#include "winlayer/modules/resource_file.h"
#include "winlayer/modules/shared_object.h"

namespace winlayer {

class Drives;
struct SystemSettings;

// The modules that the process sees: itself (GetModuleHandleA(nullptr)), those of the system, what it has
// loaded from shared objects of the host, and what a test adds, with their functions and resources. Handles
// are numbers that are never given twice. Thread rule: every operation may be called from any thread; modules
// are loaded and unloaded by one thread at a time.
class Modules {
public:
    // The current machine's.
    static Modules& current();

    using Hook = std::function<void()>;

    Modules(const SystemSettings& settings, const Drives& drives);

    // Adds a module that stays and gives its handle; `path` as GetModuleFileNameA reports it.
    HMODULE add(const std::string& name, const std::string& path);
    // A module of the system directory that is part of the layer. It is there once it is loaded; the hooks
    // run when it is loaded first and freed last. Gives the handle that it has then.
    HMODULE addSystemModule(const std::string& name, Hook attach, Hook detach);
    void addString(HMODULE module, UINT id, const std::string& ansiText);
    void addFunction(HMODULE module, const std::string& name, FARPROC procedure);
    // Takes a function away again, as on a Windows that lacks it.
    void removeFunction(HMODULE module, const std::string& name);
    // Adds the resources of a compiled resource file (.res). Throws std::invalid_argument for bytes that are
    // not such a file.
    void addResources(HMODULE module, std::vector<BYTE> file);

    // A null name asks for the process's own module; null when there is none of that name (without case, and
    // without ".dll" if need be) or path.
    HMODULE find(const char* name);
    // The module whose code or data lies at an address; null when it lies in none.
    HMODULE holding(const void* address);
    // A null module asks for the process's own in each of these; false, null, nothing or `none` when there is
    // no such module or entry.
    bool exists(HMODULE module) const;
    bool path(HMODULE module, std::string& text) const;
    bool string(HMODULE module, UINT id, std::string& text) const;
    FARPROC function(HMODULE module, const std::string& name) const;
    // The data stays at its address as long as the module.
    std::span<const BYTE> resource(HMODULE module, const ResourceId& type, const ResourceId& name) const;
    // A resource's place for resourceAt(), or the Windows error code that tells what is missing.
    DWORD findResource(HMODULE module, const ResourceId& type, const ResourceId& name,
                       std::size_t& place) const;
    const Resource* resourceAt(HMODULE module, std::size_t place) const;

    // Loads a module, or counts one more use of it when it is there, and gives the Windows error code. A name
    // without a folder is looked for in the program's folder, the current directory, the system and the
    // Windows directory; one without a point gets ".dll". The module's entry point (of the ELF header; none
    // when that is 0) is called as DllMain is. Modules that it needs are loaded with it.
    DWORD load(const std::string& name, HMODULE& module);
    // Takes back one load(); the last one unloads the module. False when there is no such module.
    bool free(HMODULE module);
    // Unloads all that were loaded, the last one first, as at the end of a process.
    void unloadAll();

private:
    // Of modules that nobody has to load and nobody can unload.
    static constexpr std::size_t stays = std::numeric_limits<std::size_t>::max();

    struct Module {
        std::string name;
        std::string path;     // empty for the program and the system's: theirs follow from the machine
        bool present = true;  // of the system's: whether it is loaded
        std::size_t uses = stays;
        std::map<UINT, std::string> strings;
        std::map<std::string, FARPROC> functions;
        Resources resources;
        LoadedObject object;                 // where it is; base 0 when the host knows nothing of it
        std::unique_ptr<SharedObject> kept;  // while it is loaded by load()
        ULONG_PTR entryPoint = 0;            // offset from the base
        std::vector<HMODULE> needed;
        Hook attach;
        Hook detach;
    };

    static std::string fileNameOf(std::string name);
    const Module* get(HMODULE module) const;
    Module& require(HMODULE module);
    HMODULE insert(Module module);
    // The handle of an object that the host has loaded, under which it is known from now on.
    HMODULE at(const LoadedObject& object);
    // A module that is there, or that could be, under a name or path.
    HMODULE named(const std::string& name, bool present) const;
    std::string pathOf(ULONG_PTR handle, const Module& module) const;
    DWORD searchFile(const std::string& name, std::filesystem::path& file) const;

    DWORD loadFile(const std::filesystem::path& file, HMODULE& module);
    DWORD loadNeeded(const std::vector<std::string>& names, Module& module);
    DWORD attach(HMODULE module);
    template <class Step>
    DWORD orUnload(HMODULE module, Step step);
    static bool callEntryPoint(HMODULE module, const Module& called, DWORD reason, LPVOID reserved);
    void unload(HMODULE module, bool processEnds);

    const SystemSettings& settings_;
    const Drives& drives_;
    mutable std::mutex mutex_;             // of the table; never held while a module's code runs
    std::recursive_mutex loading_;         // held while modules come and go
    std::map<ULONG_PTR, Module> modules_;  // by handle
    ULONG_PTR lastHandle_ = 0;
    std::vector<HMODULE> attached_;  // in the order of their entry points' calls
};

}  // namespace winlayer
