#include "winlayer/modules.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

namespace winlayer {
namespace {

// Module handles are addresses of loaded images on Windows: multiples of 64 KiB.
constexpr ULONG_PTR handleStep = 0x10000;

HMODULE handleOf(std::size_t index) {
    return reinterpret_cast<HMODULE>((index + 1) * handleStep);
}

std::size_t indexOf(HMODULE module) {
    const auto value = reinterpret_cast<ULONG_PTR>(module);
    if (value == 0) {
        return 0;
    }
    return value % handleStep == 0 ? value / handleStep - 1 : static_cast<std::size_t>(-1);
}

std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
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

Modules::Modules() {
    modules_.emplace_back();
    const HMODULE kernel = add("kernel32.dll", "");
    addFunction(kernel, "GetLongPathNameA", asProcedure(&GetLongPathNameA));
}

HMODULE Modules::add(const std::string& name, const std::string& path) {
    const std::lock_guard lock(mutex_);
    modules_.push_back({name, path, {}, {}, {}});
    return handleOf(modules_.size() - 1);
}

void Modules::addString(HMODULE module, UINT id, const std::string& ansiText) {
    const std::lock_guard lock(mutex_);
    get(module).strings[id] = ansiText;
}

void Modules::addMessage(HMODULE module, DWORD id, const std::string& ansiText) {
    const std::lock_guard lock(mutex_);
    get(module).messages[id] = ansiText;
}

void Modules::addFunction(HMODULE module, const std::string& name, FARPROC procedure) {
    const std::lock_guard lock(mutex_);
    get(module).functions[name] = procedure;
}

void Modules::removeFunction(HMODULE module, const std::string& name) {
    const std::lock_guard lock(mutex_);
    get(module).functions.erase(name);
}

HMODULE Modules::find(const char* name) const {
    if (name == nullptr) {
        return handleOf(0);
    }
    std::string wanted = folded(name);
    if (wanted.find('.') == std::string::npos) {
        wanted += ".dll";
    }
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(modules_.begin() + 1, modules_.end(),
                                    [&](const Module& module) { return folded(module.name) == wanted; });
    return found == modules_.end() ? nullptr : handleOf(static_cast<std::size_t>(found - modules_.begin()));
}

bool Modules::path(HMODULE module, std::string& text) const {
    const std::lock_guard lock(mutex_);
    const Module* found = get(module);
    if (found != nullptr) {
        text = found->path;
    }
    return found != nullptr;
}

bool Modules::string(HMODULE module, UINT id, std::string& text) const {
    const std::lock_guard lock(mutex_);
    const Module* found = get(module);
    return found != nullptr && lookUp(found->strings, id, text);
}

DWORD Modules::message(HMODULE module, DWORD id, std::string& text) const {
    const std::lock_guard lock(mutex_);
    const Module* found = get(module);
    if (found == nullptr || found->messages.empty()) {
        return found == nullptr ? ERROR_RESOURCE_DATA_NOT_FOUND : ERROR_RESOURCE_TYPE_NOT_FOUND;
    }
    return lookUp(found->messages, id, text) ? NO_ERROR : ERROR_MR_MID_NOT_FOUND;
}

FARPROC Modules::function(HMODULE module, const std::string& name) const {
    const std::lock_guard lock(mutex_);
    const Module* found = get(module);
    FARPROC procedure = nullptr;
    return found != nullptr && lookUp(found->functions, name, procedure) ? procedure : nullptr;
}

const Modules::Module* Modules::get(HMODULE module) const {
    const std::size_t index = indexOf(module);
    return index < modules_.size() ? &modules_[index] : nullptr;
}

Modules::Module& Modules::get(HMODULE module) {
    const std::size_t index = indexOf(module);
    if (index >= modules_.size()) {
        throw std::invalid_argument("no such module");
    }
    return modules_[index];
}

}  // namespace winlayer
