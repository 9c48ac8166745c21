#pragma once
#include <windows.h>

#include <string>
#include <utility>

#include "host/frame/failure.h"

namespace host {

// A library, loaded during the object's lifetime.
class LoadedModule {
public:
    // `path` as for LoadLibraryA. Throws Failure with the given code.
    LoadedModule(const std::string& path, ExitCode codeOfFailure);
    ~LoadedModule();
    LoadedModule(LoadedModule&& other) noexcept : module_(std::exchange(other.module_, nullptr)) {}
    LoadedModule& operator=(LoadedModule&&) = delete;

    // The exported function with that name; null when there is none.
    template <class Function>
    Function* find(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    }
    // The same; throws Failure when there is none.
    template <class Function>
    Function* require(const char* name) const {
        Function* const function = find<Function>(name);
        if (!function) throwMissing(name);
        return function;
    }

private:
    [[noreturn]] void throwMissing(const char* name) const;

    HMODULE module_;
};

// The folder of the program's file, with a trailing backslash; 8-bit.
std::string programFolder();

}  // namespace host
