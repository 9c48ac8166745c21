#include "winlayer/registry/registry.h"

#include <algorithm>
#include <chrono>
#include <map>

#include "winlayer/base/system_settings.h"
#include "winlayer/text/case_folding.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {

struct Registry::Key {
    std::string name;
    std::weak_ptr<Key> parent;
    std::map<std::string, KeyPointer> subkeys;  // by folded name
    std::vector<Value> values;
    FILETIME written{};
    bool deleted = false;
};

struct Registry::Roots {
    std::map<HKEY, KeyPointer> keys;
};

namespace {

constexpr std::size_t longestKeyName = 255;
constexpr std::size_t longestValueName = 16383;

using KeyPointer = Registry::KeyPointer;

std::string folded(std::string_view name) {
    return foldCase(toUtf8(SystemSettings::current(), name));
}

FILETIME systemTime() {
    using Ticks = std::chrono::duration<std::uint64_t, std::ratio<1, 10'000'000>>;
    constexpr std::uint64_t unixEpoch = 116'444'736'000'000'000;  // from 1601 to 1970
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::uint64_t ticks = unixEpoch + std::chrono::duration_cast<Ticks>(now).count();
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

// Splits a path, which must not begin with a backslash and may end with one, into its names.
LONG split(std::string_view path, std::vector<std::string>& names) {
    if (!path.empty() && path.front() == '\\') {
        return ERROR_BAD_PATHNAME;
    }
    while (!path.empty()) {
        const std::size_t length = std::min(path.find('\\'), path.size());
        if (length > longestKeyName) {
            return ERROR_INVALID_PARAMETER;
        }
        if (length > 0) {
            names.emplace_back(path.substr(0, length));
        }
        path.remove_prefix(std::min(length + 1, path.size()));
    }
    return ERROR_SUCCESS;
}

// Descends as far as keys exist and removes their names from the front.
KeyPointer descend(KeyPointer key, std::vector<std::string>& names) {
    std::size_t known = 0;
    while (known < names.size()) {
        const auto next = key->subkeys.find(folded(names[known]));
        if (next == key->subkeys.end()) {
            break;
        }
        key = next->second;
        ++known;
    }
    names.erase(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(known));
    return key;
}

void markDeleted(Registry::Key& key) {
    key.deleted = true;
    for (const auto& [name, subkey] : key.subkeys) {
        markDeleted(*subkey);
    }
    key.subkeys.clear();
    key.values.clear();
}

template <class Values>
auto findValue(Values& values, const std::string& name) {
    return std::find_if(values.begin(), values.end(), [wanted = folded(name)](const Registry::Value& value) {
        return folded(value.name) == wanted;
    });
}

}  // namespace

Registry::Registry() : roots_(std::make_unique<Roots>()) {
    for (const HKEY root :
         {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE, HKEY_USERS, HKEY_CURRENT_CONFIG}) {
        roots_->keys[root] = std::make_shared<Key>();
    }
}

Registry::~Registry() = default;

KeyPointer Registry::root(HKEY key) const {
    const auto found = roots_->keys.find(key);
    return found == roots_->keys.end() ? nullptr : found->second;
}

LONG Registry::open(const KeyPointer& from, const std::string& path, KeyPointer& key) const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    if (from->deleted) {
        return ERROR_KEY_DELETED;
    }
    if (const LONG error = split(path, names); error != ERROR_SUCCESS) {
        return error;
    }
    const KeyPointer reached = descend(from, names);
    if (!names.empty()) {
        return ERROR_FILE_NOT_FOUND;
    }
    key = reached;
    return ERROR_SUCCESS;
}

LONG Registry::create(const KeyPointer& from, const std::string& path, KeyPointer& key, bool& existed) {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    if (from->deleted) {
        return ERROR_KEY_DELETED;
    }
    if (const LONG error = split(path, names); error != ERROR_SUCCESS) {
        return error;
    }
    KeyPointer reached = descend(from, names);
    existed = names.empty();
    for (const std::string& name : names) {
        auto made = std::make_shared<Key>();
        made->name = name;
        made->parent = reached;
        made->written = systemTime();
        reached->subkeys[folded(name)] = made;
        reached->written = made->written;
        reached = made;
    }
    key = reached;
    return ERROR_SUCCESS;
}

LONG Registry::remove(const KeyPointer& from, const std::string& path, bool withSubkeys) {
    KeyPointer key;
    if (const LONG error = open(from, path, key); error != ERROR_SUCCESS) {
        return error;
    }
    const std::lock_guard lock(mutex_);
    if (key->deleted) {
        return ERROR_KEY_DELETED;
    }
    const KeyPointer parent = key->parent.lock();
    if (!parent || (!withSubkeys && !key->subkeys.empty())) {
        return ERROR_ACCESS_DENIED;
    }
    markDeleted(*key);
    parent->subkeys.erase(folded(key->name));
    parent->written = systemTime();
    return ERROR_SUCCESS;
}

LONG Registry::subkey(const KeyPointer& key, DWORD index, std::string& name, FILETIME& written) const {
    const std::lock_guard lock(mutex_);
    if (key->deleted) {
        return ERROR_KEY_DELETED;
    }
    if (index >= key->subkeys.size()) {
        return ERROR_NO_MORE_ITEMS;
    }
    const Key& found = *std::next(key->subkeys.begin(), static_cast<std::ptrdiff_t>(index))->second;
    name = found.name;
    written = found.written;
    return ERROR_SUCCESS;
}

LONG Registry::value(const KeyPointer& key, const std::string& name, Value& value) const {
    const std::lock_guard lock(mutex_);
    if (key->deleted) {
        return ERROR_KEY_DELETED;
    }
    const auto found = findValue(key->values, name);
    if (found == key->values.end()) {
        return ERROR_FILE_NOT_FOUND;
    }
    value = *found;
    return ERROR_SUCCESS;
}

LONG Registry::value(const KeyPointer& key, DWORD index, Value& value) const {
    const std::lock_guard lock(mutex_);
    if (key->deleted) {
        return ERROR_KEY_DELETED;
    }
    if (index >= key->values.size()) {
        return ERROR_NO_MORE_ITEMS;
    }
    value = key->values[index];
    return ERROR_SUCCESS;
}

LONG Registry::setValue(const KeyPointer& key, Value value) {
    const std::lock_guard lock(mutex_);
    if (key->deleted) {
        return ERROR_KEY_DELETED;
    }
    if (value.name.size() > longestValueName) {
        return ERROR_INVALID_PARAMETER;
    }
    key->written = systemTime();
    if (const auto found = findValue(key->values, value.name); found != key->values.end()) {
        found->type = value.type;
        found->data = std::move(value.data);
    } else {
        key->values.push_back(std::move(value));
    }
    return ERROR_SUCCESS;
}

LONG Registry::removeValue(const KeyPointer& key, const std::string& name) {
    const std::lock_guard lock(mutex_);
    if (key->deleted) {
        return ERROR_KEY_DELETED;
    }
    const auto found = findValue(key->values, name);
    if (found == key->values.end()) {
        return ERROR_FILE_NOT_FOUND;
    }
    key->values.erase(found);
    key->written = systemTime();
    return ERROR_SUCCESS;
}

}  // namespace winlayer
