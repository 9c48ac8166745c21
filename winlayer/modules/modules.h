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

// The modules of the process: its own (GetModuleHandleA(nullptr)), the system's, those loaded from shared
// objects of the host, and those that a test adds, with their functions and resources. Handles are numbers
// that are never reused. Thread rule: any thread may call every operation; one thread at a time loads and
// unloads modules.
class Modules {
public:
    // The current machine's.
    static Modules& current();

    using Hook = std::function<void()>;

    Modules(const SystemSettings& settings, const Drives& drives);

    // Adds a module that cannot be unloaded and returns its handle; `path` as GetModuleFileNameA reports it.
    HMODULE add(const std::string& name, const std::string& path);
    // Adds a module of the system directory that is part of the layer. It is present while loaded; the hooks
    // run at the first load and the last free. Returns the handle that it has then.
    HMODULE addSystemModule(const std::string& name, Hook attach, Hook detach);
    void addString(HMODULE module, UINT id, const std::string& ansiText);
    void addFunction(HMODULE module, const std::string& name, FARPROC procedure);
    // Removes a function, as on a Windows that lacks it.
    void removeFunction(HMODULE module, const std::string& name);
    // Adds the resources of a compiled resource file (.res). Throws std::invalid_argument for bytes that are
    // not one.
    void addResources(HMODULE module, std::vector<BYTE> file);

    // The module with this name (case and a missing ".dll" do not matter) or path, the process's own for a
    // null name; null if there is none.
    HMODULE find(const char* name);
    // The module whose code or data contains an address; null if there is none.
    HMODULE holding(const void* address);
    // In all of these a null module means the process's own; they return false, null or an empty span if
    // there is no such module or entry.
    bool exists(HMODULE module) const;
    bool path(HMODULE module, std::string& text) const;
    bool string(HMODULE module, UINT id, std::string& text) const;
    FARPROC function(HMODULE module, const std::string& name) const;
    // The data stays at its address as long as the module is loaded.
    std::span<const BYTE> resource(HMODULE module, const ResourceId& type, const ResourceId& name) const;
    // A resource's index for resourceAt(), or a Windows error code that says what is missing.
    DWORD findResource(HMODULE module, const ResourceId& type, const ResourceId& name,
                       std::size_t& place) const;
    const Resource* resourceAt(HMODULE module, std::size_t place) const;

    // Loads a module, or adds a use if it is loaded already, and returns a Windows error code. Searches for a
    // name without a folder in the program's folder, the current directory, the system and the Windows
    // directory; one without a dot gets ".dll". The module's entry point (of the ELF header; none if 0) is
    // called like DllMain. Modules that it needs are loaded with it.
    DWORD load(const std::string& name, HMODULE& module);
    // Undoes one load(); the last one unloads the module. False if there is no such module.
    bool free(HMODULE module);
    // Unloads all loaded modules in reverse order, as at the end of a process.
    void unloadAll();

private:
    // Use count of modules that need no loading and cannot be unloaded.
    static constexpr std::size_t stays = std::numeric_limits<std::size_t>::max();

    struct Module {
        std::string name;
        std::string path;     // empty for the program and the system's: derived from the machine
        bool present = true;  // for the system's: whether it is loaded
        std::size_t uses = stays;
        std::map<UINT, std::string> strings;
        std::map<std::string, FARPROC> functions;
        Resources resources;
        LoadedObject object;                 // where it is loaded; base 0 if the host does not know it
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
    // The handle of an object that the host has loaded; adds the object if it is new.
    HMODULE at(const LoadedObject& object);
    // The module with this name or path whose `present` is as given; null if there is none.
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
    std::recursive_mutex loading_;         // held while modules are loaded and unloaded
    std::map<ULONG_PTR, Module> modules_;  // by handle
    ULONG_PTR lastHandle_ = 0;
    std::vector<HMODULE> attached_;  // in the order in which their entry points were called
};

}  // namespace winlayer
