#include "winlayer/host_files/host_attributes.h"

#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <optional>
#include <string_view>

#include "winlayer/base/host_errors.h"

namespace winlayer {

namespace {

constexpr const char* attributeName = "user.DOSATTRIB";
constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;

using Text = std::array<char, 32>;

ssize_t readText(const char* path, Text& text) {
    return ::getxattr(path, attributeName, text.data(), text.size());
}

ssize_t readText(int descriptor, Text& text) {
    return ::fgetxattr(descriptor, attributeName, text.data(), text.size());
}

template <class Place>
std::optional<DWORD> storedAttributes(Place place) {
    Text buffer;
    const ssize_t size = readText(place, buffer);
    if (size <= 0) {
        return std::nullopt;
    }
    const std::string_view text(buffer.data(), static_cast<std::size_t>(size));
    DWORD value = 0;
    if (text.substr(0, 2) != "0x" ||
        std::from_chars(text.data() + 2, text.data() + text.size(), value, 16).ec != std::errc()) {
        return std::nullopt;
    }
    return value & keptAttributes;
}

// The attributes of an entry without the extended attribute.
DWORD defaultAttributes(const struct stat& facts) {
    return S_ISDIR(facts.st_mode) ? 0 : FILE_ATTRIBUTE_ARCHIVE;
}

template <class Place>
DWORD attributesAt(Place place, const struct stat& facts) {
    DWORD attributes = storedAttributes(place).value_or(defaultAttributes(facts));
    if (S_ISDIR(facts.st_mode)) {
        attributes |= FILE_ATTRIBUTE_DIRECTORY;
    } else if ((facts.st_mode & anyWrite) == 0) {
        attributes |= FILE_ATTRIBUTE_READONLY;
    }
    return attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
}

DWORD storeText(const char* path, DWORD attributes) {
    std::array<char, 16> text = {'0', 'x'};
    const auto end = std::to_chars(text.data() + 2, text.data() + text.size(), attributes, 16).ptr;
    const auto size = static_cast<std::size_t>(end - text.data());
    return ::setxattr(path, attributeName, text.data(), size, 0) == 0 ? 0 : windowsError(errno);
}

DWORD removeText(const char* path) {
    const bool gone = ::removexattr(path, attributeName) == 0 || errno == ENODATA || errno == ENOTSUP;
    return gone ? 0 : windowsError(errno);
}

DWORD storeExtended(const char* path, const struct stat& facts, DWORD attributes) {
    // A file's read-only attribute is in its mode and needs no text; a text that is written contains it too,
    // so that all readers agree.
    const DWORD besides = S_ISDIR(facts.st_mode) ? attributes : attributes & ~FILE_ATTRIBUTE_READONLY;
    if (besides == defaultAttributes(facts)) {
        return removeText(path);
    }
    const DWORD error = storeText(path, attributes);
    const bool needsNone = besides == 0 && !S_ISDIR(facts.st_mode);
    return error == ERROR_NOT_SUPPORTED && needsNone ? 0 : error;
}

DWORD changeMode(const char* path, const struct stat& facts, DWORD attributes) {
    const bool readOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    const bool was = (facts.st_mode & anyWrite) == 0;
    if (S_ISDIR(facts.st_mode) || readOnly == was) {
        return 0;
    }
    const mode_t mode = facts.st_mode & 07777;
    // Only the owner may write again: who else could before is not known any more.
    return ::chmod(path, readOnly ? mode & ~anyWrite : mode | S_IWUSR) == 0 ? 0 : windowsError(errno);
}

}  // namespace

DWORD attributesOf(const char* path, const struct stat& facts) {
    return attributesAt(path, facts);
}

DWORD attributesOf(int descriptor, const struct stat& facts) {
    return attributesAt(descriptor, facts);
}

// The host forbids writing extended attributes of a file whose mode is read-only, so the mode changes first
// to allow writing and last to forbid it.
DWORD storeAttributes(const char* path, const struct stat& facts, DWORD attributes) {
    const DWORD kept = attributes & keptAttributes;
    if ((kept & FILE_ATTRIBUTE_READONLY) != 0) {
        const DWORD error = storeExtended(path, facts, kept);
        return error != 0 ? error : changeMode(path, facts, kept);
    }
    const DWORD error = changeMode(path, facts, kept);
    return error != 0 ? error : storeExtended(path, facts, kept);
}

}  // namespace winlayer
