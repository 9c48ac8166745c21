#include "registry_values.h"

#include <algorithm>

#include "registry_key.h"

namespace UTILS {
namespace {

constexpr std::size_t usualDataSize = 255;
constexpr DWORD usualNameSize = 256;
constexpr DWORD largestNameSize = 4 * 16384;  // the longest name, at up to four bytes a character
constexpr std::size_t numberSize = 4;

std::vector<char> NameBuffer(DWORD size) {
    return std::vector<char>(std::clamp(size, usualNameSize, largestNameSize));
}

// The system does not report the length of a name that did not fit.
bool GrowName(std::vector<char>& buffer) {
    if (buffer.size() >= largestNameSize) {
        return false;
    }
    buffer.resize(buffer.size() * 2);
    return true;
}

// Grows the buffer to the `needed` bytes that were reported; false if they fitted.
bool GrowData(std::vector<BYTE>& data, DWORD needed) {
    if (needed <= data.size()) {
        return false;
    }
    data.resize(needed);
    return true;
}

LONG DeleteValues(HKEY key) {
    std::vector<char> name = NameBuffer(0);
    for (;;) {
        auto length = static_cast<DWORD>(name.size());
        LONG result = ::RegEnumValueA(key, 0, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_MORE_DATA && GrowName(name)) {
            continue;
        }
        if (result == ERROR_SUCCESS) {
            result = ::RegDeleteValueA(key, name.data());
        }
        if (result != ERROR_SUCCESS) {
            return result == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : result;
        }
    }
}

struct Level {
    RegistryKey key;
    std::string name;
};

}  // namespace

LONG ReadRegistryValue(HKEY key, const std::string& name, RegistryValue& value) {
    value.name = name;
    value.data.resize(usualDataSize);
    for (;;) {
        auto size = static_cast<DWORD>(value.data.size());
        const LONG result =
            ::RegQueryValueExA(key, name.c_str(), nullptr, &value.type, value.data.data(), &size);
        if (result != ERROR_MORE_DATA || !GrowData(value.data, size)) {
            value.data.resize(std::min<std::size_t>(size, value.data.size()));
            return result;
        }
    }
}

LONG EnumRegistryValue(HKEY key, DWORD index, DWORD size, RegistryValue& value) {
    std::vector<char> name = NameBuffer(size);
    value.data.resize(usualDataSize);
    for (;;) {
        auto length = static_cast<DWORD>(name.size());
        auto dataSize = static_cast<DWORD>(value.data.size());
        const LONG result = ::RegEnumValueA(key, index, name.data(), &length, nullptr, &value.type,
                                            value.data.data(), &dataSize);
        if (result == ERROR_MORE_DATA && (GrowData(value.data, dataSize) || GrowName(name))) {
            continue;
        }
        if (result == ERROR_SUCCESS) {
            value.name.assign(name.data(), length);
            value.data.resize(std::min<std::size_t>(dataSize, value.data.size()));
        }
        return result;
    }
}

LONG EnumRegistryKey(HKEY key, DWORD index, DWORD size, std::string& name) {
    std::vector<char> buffer = NameBuffer(size);
    for (;;) {
        auto length = static_cast<DWORD>(buffer.size());
        const LONG result =
            ::RegEnumKeyExA(key, index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_MORE_DATA && GrowName(buffer)) {
            continue;
        }
        if (result == ERROR_SUCCESS) {
            name.assign(buffer.data(), length);
        }
        return result;
    }
}

DWORD RegistryNumber(const RegistryValue& value) {
    const std::size_t count = std::min(value.data.size(), numberSize);
    DWORD number = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t place = value.type == REG_DWORD_BIG_ENDIAN ? count - 1 - i : i;
        number |= DWORD{value.data[i]} << (8 * place);
    }
    return number;
}

std::string RegistryText(const RegistryValue& value) {
    if (value.type == REG_DWORD || value.type == REG_DWORD_BIG_ENDIAN || value.type == REG_BINARY) {
        return std::to_string(RegistryNumber(value));
    }
    return std::string(value.data.begin(), std::find(value.data.begin(), value.data.end(), BYTE{0}));
}

// From the first key without subkeys upwards. The levels are on the heap: a tree may be too deep for
// recursion.
LONG DeleteRegistryContents(HKEY key) {
    std::vector<Level> levels;
    const auto deepest = [&] { return levels.empty() ? key : levels.back().key.get(); };
    for (;;) {
        Level next;
        LONG result = EnumRegistryKey(deepest(), 0, 0, next.name);
        if (result == ERROR_SUCCESS) {
            result = next.key.Open(deepest(), next.name);
            levels.push_back(std::move(next));
        } else if (result == ERROR_NO_MORE_ITEMS) {
            result = DeleteValues(deepest());
            if (result == ERROR_SUCCESS && levels.empty()) {
                return result;
            }
            if (result == ERROR_SUCCESS) {
                const std::string emptied = std::move(levels.back().name);
                levels.pop_back();
                result = ::RegDeleteKeyA(deepest(), emptied.c_str());
            }
        }
        if (result != ERROR_SUCCESS) {
            return result;
        }
    }
}

}  // namespace UTILS
