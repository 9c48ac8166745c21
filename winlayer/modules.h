#pragma once
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// The modules that the process sees: itself (GetModuleHandleA(nullptr)), kernel32.dll with the functions that
// the product looks up by name, and what a test adds, with their string and message tables.
// Thread rule: every operation may be called from any thread.
class Modules {
public:
    Modules();
    // Adds a module and gives its handle; `path` as GetModuleFileNameA reports it.
    HMODULE add(const std::string& name, const std::string& path);
    void addString(HMODULE module, UINT id, const std::string& ansiText);
    void addMessage(HMODULE module, DWORD id, const std::string& ansiText);
    void addFunction(HMODULE module, const std::string& name, FARPROC procedure);
    // Takes a function away again, as on a Windows that lacks it.
    void removeFunction(HMODULE module, const std::string& name);

    // A null name asks for the process's own module; null when there is none of that name (without case, and
    // without ".dll" if need be).
    HMODULE find(const char* name) const;
    // A null module asks for the process's own in each of these; false or null when there is no such module
    // or entry. The paths of the process and of kernel32.dll are empty here: they follow from the machine.
    bool path(HMODULE module, std::string& text) const;
    bool string(HMODULE module, UINT id, std::string& text) const;
    FARPROC function(HMODULE module, const std::string& name) const;
    // 0, or a Windows error code that tells whether the module, its messages or this one are missing.
    DWORD message(HMODULE module, DWORD id, std::string& text) const;

private:
    struct Module {
        std::string name;
        std::string path;
        std::map<UINT, std::string> strings;
        std::map<DWORD, std::string> messages;
        std::map<std::string, FARPROC> functions;
    };

    const Module* get(HMODULE module) const;
    Module& get(HMODULE module);

    mutable std::mutex mutex_;
    std::vector<Module> modules_;
};

}  // namespace winlayer
