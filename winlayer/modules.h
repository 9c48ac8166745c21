#pragma once
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// The modules that the process sees: itself (GetModuleHandleA(nullptr)), kernel32.dll with the functions that
// the product looks up by name, and what a test adds, with their string tables.
class Modules {
public:
    Modules();
    // Adds a module and gives its handle; `path` as GetModuleFileNameA reports it.
    HMODULE add(const std::string& name, const std::string& path);
    void addString(HMODULE module, UINT id, const std::string& ansiText);
    void addFunction(HMODULE module, const std::string& name, FARPROC function);
    // Takes a function away again, as on a Windows that lacks it.
    void removeFunction(HMODULE module, const std::string& name);

    // A null name asks for the process's own module; null when there is none of that name (without case).
    HMODULE find(const char* name) const;
    bool path(HMODULE module, std::string& text) const;
    bool string(HMODULE module, UINT id, std::string& text) const;
    FARPROC function(HMODULE module, const std::string& name) const;

private:
    struct Module {
        std::string name;
        std::string path;
        std::map<UINT, std::string> strings;
        std::map<std::string, FARPROC> functions;
    };
    const Module* get(HMODULE module) const;
    mutable std::mutex mutex_;
    std::vector<Module> modules_;
};

}  // namespace winlayer
