#pragma once
#include <compare>
#include <cstddef>
#include <list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "winlayer/include/minwindef.h"

namespace winlayer {

// The type or the name of a resource: a number, or a case-insensitive text.
class ResourceId {
public:
    ResourceId(WORD number) : number_(number) {}
    // UTF-16.
    explicit ResourceId(std::u16string_view text);
    // From an API parameter: a number in place of an address, "#" and a decimal number, or a text in the
    // machine's ANSI code page.
    explicit ResourceId(LPCSTR numberOrText);

    WORD number() const { return number_; }
    friend bool operator==(const ResourceId&, const ResourceId&) = default;

private:
    WORD number_ = 0;
    std::string text_;  // UTF-8, without case; empty for a number
};

struct Resource {
    ResourceId type;
    ResourceId name;
    WORD language;
    std::span<const BYTE> data;
};

// The resources in a compiled resource file (.res), in file order; `data` points into the bytes. Throws
// std::invalid_argument, with the file offset, for bytes that are not such a file.
std::vector<Resource> parseResourceFile(std::span<const BYTE> bytes);

// Text `id` of the string-table block that contains it (the block named id / 16 + 1). False if the block ends
// before the text does.
bool stringInBlock(std::span<const BYTE> block, UINT id, std::u16string& text);

// The resources of one module. The data stays at its address until this object is destroyed.
class Resources {
public:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    // Adds those of a compiled resource file. Throws as parseResourceFile does, and then adds nothing.
    void add(std::vector<BYTE> file);

    bool empty() const { return entries_.empty(); }
    bool hasType(const ResourceId& type) const;
    // The index of the first with this type and name, whatever its language; `none` if there is none.
    std::size_t find(const ResourceId& type, const ResourceId& name) const;
    // Null beyond the end.
    const Resource* at(std::size_t place) const;

private:
    std::list<std::vector<BYTE>> files_;
    std::vector<Resource> entries_;
};

}  // namespace winlayer
