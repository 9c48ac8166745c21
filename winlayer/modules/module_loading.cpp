// Loading and unloading of modules.

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/files/drives.h"
#include "winlayer/modules/elf_file.h"
#include "winlayer/modules/modules.h"
#include "winlayer/text/case_folding.h"

namespace winlayer {

namespace {

using EntryPoint = BOOL(WINAPI*)(HINSTANCE module, DWORD reason, LPVOID reserved);

bool isModuleName(const std::string& name) {
    return foldCase(name).ends_with(".DLL");
}

bool hasSoundResources(ElfFile& file) {
    try {
        parseResourceFile(file.section(".rsrc"));
        return true;
    } catch (const std::invalid_argument&) {
        return false;
    }
}

bool isFile(const Drives& drives, const std::string& path) {
    std::shared_ptr<FileSystem> files;
    std::string below;
    FileFacts facts;
    return drives.resolve(path, files, below) == 0 && files->facts(below, facts) == 0 &&
           (facts.attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::string folderOf(const std::string& path) {
    return path.substr(0, path.rfind('\\'));
}

// The program's own machine outlives the modules' static objects, which may still need it and each other: so
// modules are unloaded before any of these is destroyed.
void unloadAtExit() {
    Modules::current().unloadAll();
}

}  // namespace

DWORD Modules::load(const std::string& name, HMODULE& module) {
    const std::lock_guard lock(loading_);
    module = named(name, true);
    if (module != nullptr) {
        Module& there = require(module);
        there.uses += there.uses == stays ? 0 : 1;
        return NO_ERROR;
    }
    std::filesystem::path file;
    const DWORD error = searchFile(name, file);
    if (error != ERROR_MOD_NOT_FOUND) {
        return error == NO_ERROR ? loadFile(file, module) : error;
    }
    module = named(name, false);
    return module != nullptr ? attach(module) : error;
}

DWORD Modules::searchFile(const std::string& name, std::filesystem::path& file) const {
    std::string program;
    path(nullptr, program);
    std::vector<std::string> folders = {folderOf(program) + "\\", drives_.currentDirectory() + "\\",
                                        settings_.systemDirectory() + "\\",
                                        settings_.windowsDirectory() + "\\"};
    if (name.find_first_of("\\/:") != std::string::npos) {
        folders = {""};
    }
    for (const std::string& folder : folders) {
        const std::string candidate = folder + fileNameOf(name);
        if (isFile(drives_, candidate)) {
            try {
                file = drives_.toHost(candidate);
                return NO_ERROR;
            } catch (const std::invalid_argument&) {
                return ERROR_NOT_SUPPORTED;  // the host can only load files of the host
            }
        }
    }
    return ERROR_MOD_NOT_FOUND;
}

DWORD Modules::loadFile(const std::filesystem::path& file, HMODULE& module) {
    ElfFile image(file);
    if (!image.isLoadable() || !hasSoundResources(image)) {
        return ERROR_BAD_EXE_FORMAT;
    }
    std::string reason;
    std::unique_ptr<SharedObject> object = SharedObject::load(file, reason);
    if (object == nullptr) {
        const bool lacksFunction = reason.find("undefined symbol") != std::string::npos;
        return lacksFunction ? ERROR_PROC_NOT_FOUND : ERROR_MOD_NOT_FOUND;
    }
    std::atexit(unloadAtExit);
    // The module's static objects may have requested its handle already.
    module = at({object->base(), file});
    if (module == nullptr) {
        return ERROR_NO_UNICODE_TRANSLATION;
    }
    Module& loaded = require(module);
    if (loaded.kept != nullptr) {
        ++loaded.uses;
        return NO_ERROR;
    }
    loaded.kept = std::move(object);
    const DWORD error = orUnload(module, [&] { return loadNeeded(image.needed(), loaded); });
    return error != NO_ERROR ? error : attach(module);
}

// Returns the result of a loading step; if it fails, unloads the module.
template <class Step>
DWORD Modules::orUnload(HMODULE module, Step step) {
    DWORD error = ERROR_NOT_ENOUGH_MEMORY;
    try {
        error = step();
    } catch (const std::bad_alloc&) {
    }
    if (error != NO_ERROR) {
        unload(module, false);
    }
    return error;
}

DWORD Modules::loadNeeded(const std::vector<std::string>& names, Module& module) {
    module.needed.reserve(names.size());
    for (const std::string& name : names) {
        const std::optional<LoadedObject> object =
            isModuleName(name) ? objectNamed(name) : std::optional<LoadedObject>();
        if (object) {
            HMODULE needed = nullptr;
            if (const DWORD error = loadFile(object->file, needed); error != NO_ERROR) {
                return error;
            }
            module.needed.push_back(needed);
        }
    }
    return NO_ERROR;
}

DWORD Modules::attach(HMODULE module) {
    Module& attached = require(module);
    return orUnload(module, [&] {
        attached_.reserve(attached_.size() + 1);
        if (attached.attach) {
            attached.attach();
        }
        attached_.push_back(module);
        {
            const std::lock_guard lock(mutex_);
            attached.present = true;
            attached.uses = 1;
        }
        const bool taken = callEntryPoint(module, attached, DLL_PROCESS_ATTACH, nullptr);
        return taken ? NO_ERROR : ERROR_DLL_INIT_FAILED;
    });
}

bool Modules::callEntryPoint(HMODULE module, const Module& called, DWORD reason, LPVOID reserved) {
    if (called.entryPoint == 0) {
        return true;
    }
    const auto entry = reinterpret_cast<EntryPoint>(called.object.base + called.entryPoint);
    return entry(module, reason, reserved) != FALSE;
}

bool Modules::free(HMODULE module) {
    const std::lock_guard lock(loading_);
    if (!exists(module)) {
        return false;
    }
    Module& freed = require(module);
    if (freed.uses != stays && freed.uses > 0 && --freed.uses == 0) {
        unload(module, false);
    }
    return true;
}

void Modules::unloadAll() {
    const std::lock_guard lock(loading_);
    while (!attached_.empty()) {
        unload(attached_.back(), true);
    }
}

void Modules::unload(HMODULE module, bool processEnds) {
    Module& unloaded = require(module);
    unloaded.uses = 0;
    if (std::erase(attached_, module) != 0) {
        // As on Windows, a non-null address means only that the process is ending.
        callEntryPoint(module, unloaded, DLL_PROCESS_DETACH, processEnds ? this : nullptr);
        if (unloaded.detach) {
            unloaded.detach();
        }
    }
    const bool ofTheHost = unloaded.kept != nullptr;
    unloaded.kept.reset();  // destroys the module's static objects, which may still use its handle
    const std::vector<HMODULE> needed = std::move(unloaded.needed);
    {
        const std::lock_guard lock(mutex_);
        unloaded.present = false;
        if (ofTheHost) {
            modules_.erase(reinterpret_cast<ULONG_PTR>(module));
        }
    }
    for (const HMODULE each : needed) {
        free(each);
    }
}

}  // namespace winlayer
