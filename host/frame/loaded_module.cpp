#include "host/frame/loaded_module.h"

#include "host/frame/text.h"

namespace host {

namespace {

std::string pathOf(HMODULE module) {
    char path[MAX_PATH + 1]{};
    GetModuleFileNameA(module, path, MAX_PATH);
    return path;
}

}  // namespace

LoadedModule::LoadedModule(const std::string& path, ExitCode codeOfFailure)
    : module_(LoadLibraryA(path.c_str())) {
    if (!module_) {
        const DWORD error = GetLastError();
        throw Failure(codeOfFailure, "cannot load " + utf8(path) + " (error " + std::to_string(error) + ")");
    }
}

LoadedModule::~LoadedModule() {
    if (module_) FreeLibrary(module_);
}

void LoadedModule::throwMissing(const char* name) const {
    throw Failure(ExitCode::failure, utf8(pathOf(module_)) + " does not export " + name);
}

std::string programFolder() {
    const std::string path = pathOf(nullptr);
    return path.substr(0, path.rfind('\\') + 1);
}

}  // namespace host
