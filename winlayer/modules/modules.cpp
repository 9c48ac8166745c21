#include "winlayer/modules/modules.h"

#include <algorithm>
#include <stdexcept>

#include "winlayer/base/system_settings.h"
#include "winlayer/file_system/path_resolution.h"
#include "winlayer/files/drives.h"
#include "winlayer/modules/elf_file.h"
#include "winlayer/text/case_folding.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {
namespace {

// On Windows, module handles are addresses of loaded images: multiples of 64 KiB.
constexpr ULONG_PTR handleStep = 0x10000;
constexpr ULONG_PTR programHandle = handleStep;

HMODULE asModule(ULONG_PTR handle) {
    return reinterpret_cast<HMODULE>(handle);
}

ULONG_PTR handleOf(HMODULE module) {
    return module == nullptr ? programHandle : reinterpret_cast<ULONG_PTR>(module);
}

template <class Function>
FARPROC asProcedure(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
}

template <class Table, class Key, class Value>
bool lookUp(const Table& table, const Key& key, Value& value) {
    const auto found = table.find(key);
    if (found == table.end()) {
        return false;
    }
    value = found->second;
    return true;
}

}  // namespace

Modules::Modules(const SystemSettings& settings, const Drives& drives)
    : settings_(settings), drives_(drives) {
    static const std::vector<BYTE> ownResources = ElfFile("/proc/self/exe").section(".rsrc");
    Module program;
    program.resources.add(ownResources);
    insert(std::move(program));
    const HMODULE kernel = add("kernel32.dll", "");
    addFunction(kernel, "GetLongPathNameA", asProcedure(&GetLongPathNameA));
}

HMODULE Modules::insert(Module module) {
    const std::lock_guard lock(mutex_);
    lastHandle_ += handleStep;
    modules_.emplace(lastHandle_, std::move(module));
    return asModule(lastHandle_);
}

HMODULE Modules::add(const std::string& name, const std::string& path) {
    Module module;
    module.name = name;
    module.path = path;
    return insert(std::move(module));
}

HMODULE Modules::addSystemModule(const std::string& name, Hook attach, Hook detach) {
    Module module;
    module.name = name;
    module.present = false;
    module.uses = 0;
    module.attach = std::move(attach);
    module.detach = std::move(detach);
    return insert(std::move(module));
}

void Modules::addString(HMODULE module, UINT id, const std::string& ansiText) {
    const std::lock_guard lock(mutex_);
    require(module).strings[id] = ansiText;
}

void Modules::addFunction(HMODULE module, const std::string& name, FARPROC procedure) {
    const std::lock_guard lock(mutex_);
    require(module).functions[name] = procedure;
}

void Modules::removeFunction(HMODULE module, const std::string& name) {
    const std::lock_guard lock(mutex_);
    require(module).functions.erase(name);
}

void Modules::addResources(HMODULE module, std::vector<BYTE> file) {
    const std::lock_guard lock(mutex_);
    require(module).resources.add(std::move(file));
}

std::string Modules::fileNameOf(std::string name) {
    const std::size_t element = name.find_last_of("\\/:") + 1;
    if (name.find('.', element) == std::string::npos) {
        return name + ".dll";
    }
    if (name.back() == '.') {
        name.pop_back();
    }
    return name;
}

HMODULE Modules::find(const char* name) {
    if (name == nullptr) {
        return asModule(programHandle);
    }
    if (const HMODULE module = named(name, true); module != nullptr) {
        return module;
    }
    const std::optional<LoadedObject> object = objectNamed(fileNameOf(toUtf8(settings_, name)));
    return object ? at(*object) : nullptr;
}

HMODULE Modules::named(const std::string& name, bool present) const {
    const std::string file = fileNameOf(name);
    const bool isPath = file.find_first_of("\\/:") != std::string::npos;
    ResolvedPath resolved;
    if (isPath && resolvePath(file, drives_.currentDirectory(), resolved) != 0) {
        return nullptr;
    }
    const std::string wanted = isPath ? std::string(1, resolved.letter) + ":\\" + resolved.below : file;
    const std::string folded = foldCase(toUtf8(settings_, wanted));
    const std::lock_guard lock(mutex_);
    for (const auto& [handle, module] : modules_) {
        const std::string text = isPath ? pathOf(handle, module) : module.name;
        if (module.present == present && foldCase(toUtf8(settings_, text)) == folded) {
            return asModule(handle);
        }
    }
    return nullptr;
}

HMODULE Modules::holding(const void* address) {
    const std::optional<LoadedObject> object = objectAt(address);
    return object ? at(*object) : nullptr;
}

HMODULE Modules::at(const LoadedObject& object) {
    if (object.file.empty()) {
        return asModule(programHandle);
    }
    {
        const std::lock_guard lock(mutex_);
        const auto found = std::find_if(modules_.begin(), modules_.end(), [&](const auto& entry) {
            return entry.second.object.base == object.base && entry.second.object.file == object.file;
        });
        if (found != modules_.end()) {
            return asModule(found->first);
        }
    }
    Module module;
    module.object = object;
    ElfFile file(object.file);
    module.entryPoint = file.entry();
    try {
        module.path = drives_.fromHost(object.file);
        module.name = module.path.substr(module.path.rfind('\\') + 1);
        module.resources.add(file.section(".rsrc"));
    } catch (const std::invalid_argument&) {
        return nullptr;
    }
    return insert(std::move(module));
}

bool Modules::exists(HMODULE module) const {
    const std::lock_guard lock(mutex_);
    return get(module) != nullptr;
}

bool Modules::path(HMODULE module, std::string& text) const {
    const std::lock_guard lock(mutex_);
    const Module* found = get(module);
    if (found != nullptr) {
        text = pathOf(handleOf(module), *found);
    }
    return found != nullptr;
}

std::string Modules::pathOf(ULONG_PTR handle, const Module& module) const {
    if (handle == programHandle) {
        return drives_.fromHost(std::filesystem::read_symlink("/proc/self/exe"));
    }
    return module.path.empty() ? settings_.systemDirectory() + "\\" + module.name : module.path;
}

bool Modules::string(HMODULE module, UINT id, std::string& text) const {
    {
        const std::lock_guard lock(mutex_);
        const Module* found = get(module);
        if (found != nullptr && lookUp(found->strings, id, text)) {
            return true;
        }
    }
    const auto block = resource(module, ResourceId(RT_STRING), ResourceId(static_cast<WORD>(id / 16 + 1)));
    std::u16string wide;
    if (!stringInBlock(block, id, wide)) {
        return false;
    }
    Narrowing how;
    text = narrow(settings_.ansiCodePage, wide, how);
    return true;
}

std::span<const BYTE> Modules::resource(HMODULE module, const ResourceId& type,
                                        const ResourceId& name) const {
    std::size_t place = Resources::none;
    return findResource(module, type, name, place) == NO_ERROR ? resourceAt(module, place)->data
                                                               : std::span<const BYTE>();
}

DWORD Modules::findResource(HMODULE module, const ResourceId& type, const ResourceId& name,
                            std::size_t& place) const {
    const std::lock_guard lock(mutex_);
    const Module* found = get(module);
    if (found == nullptr || found->resources.empty()) {
        return ERROR_RESOURCE_DATA_NOT_FOUND;
    }
    if (!found->resources.hasType(type)) {
        return ERROR_RESOURCE_TYPE_NOT_FOUND;
    }
    place = found->resources.find(type, name);
    return place == Resources::none ? ERROR_RESOURCE_NAME_NOT_FOUND : NO_ERROR;
}

const Resource* Modules::resourceAt(HMODULE module, std::size_t place) const {
    const std::lock_guard lock(mutex_);
    const Module* found = get(module);
    return found != nullptr ? found->resources.at(place) : nullptr;
}

FARPROC Modules::function(HMODULE module, const std::string& name) const {
    const std::lock_guard lock(mutex_);
    const Module* found = get(module);
    FARPROC procedure = nullptr;
    if (found == nullptr || lookUp(found->functions, name, procedure)) {
        return procedure;
    }
    return found->object.base != 0 ? functionOf(found->object, name) : nullptr;
}

const Modules::Module* Modules::get(HMODULE module) const {
    const auto found = modules_.find(handleOf(module));
    return found != modules_.end() && found->second.present ? &found->second : nullptr;
}

Modules::Module& Modules::require(HMODULE module) {
    const auto found = modules_.find(handleOf(module));
    if (found == modules_.end()) {
        throw std::invalid_argument("no such module");
    }
    return found->second;
}

}  // namespace winlayer
