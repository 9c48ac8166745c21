#include "winlayer/modules/resource_file.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

#include "winlayer/base/system_settings.h"
#include "winlayer/text/case_folding.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {

namespace {

constexpr WORD numberFollows = 0xFFFF;
constexpr std::size_t sizesLength = 8;  // of the data and of the header, before the type
constexpr std::size_t tailLength = 16;  // data version, flags, language, version, characteristics
constexpr std::size_t unitLength = 2;
constexpr UINT stringsInBlock = 16;

std::size_t aligned(std::size_t offset) {
    return (offset + 3) & ~std::size_t{3};
}

[[noreturn]] void fail(const char* what, std::size_t offset) {
    throw std::invalid_argument("resource file: " + std::string(what) + " at byte " + std::to_string(offset));
}

WORD wordAt(std::span<const BYTE> bytes, std::size_t offset) {
    return static_cast<WORD>(bytes[offset] | (bytes[offset + 1] << 8));
}

DWORD dwordAt(std::span<const BYTE> bytes, std::size_t offset) {
    return wordAt(bytes, offset) | (DWORD{wordAt(bytes, offset + 2)} << 16);
}

// Reads one entry's header; offsets count from the start of the file.
class HeaderReader {
public:
    HeaderReader(std::span<const BYTE> file, std::size_t start, std::size_t end)
        : header_(file.first(end)), offset_(start) {}

    ResourceId readId() {
        const WORD first = readWord();
        if (first == numberFollows) {
            return {readWord()};
        }
        std::u16string text;
        for (WORD unit = first; unit != 0; unit = readWord()) {
            text.push_back(unit);
        }
        if (text.empty()) {
            fail("empty name", offset_);
        }
        return ResourceId(text);
    }

    WORD readLanguage() {
        const std::size_t tail = aligned(offset_);
        if (tail > header_.size() || header_.size() - tail < tailLength) {
            fail("header ends early", offset_);
        }
        return wordAt(header_, tail + 6);
    }

private:
    WORD readWord() {
        if (header_.size() - offset_ < unitLength) {
            fail("header ends early", offset_);
        }
        offset_ += unitLength;
        return wordAt(header_, offset_ - unitLength);
    }

    std::span<const BYTE> header_;
    std::size_t offset_;
};

// An empty entry of type 0 marks a file of 32-bit Windows; concatenated files contain several.
bool isMarker(const Resource& entry) {
    return entry.type == ResourceId(WORD{0}) && entry.data.empty();
}

Resource readEntry(std::span<const BYTE> bytes, std::size_t& offset) {
    if (bytes.size() - offset < sizesLength) {
        fail("entry ends early", offset);
    }
    const std::size_t dataSize = dwordAt(bytes, offset);
    const std::size_t headerSize = dwordAt(bytes, offset + 4);
    const std::size_t left = bytes.size() - offset;
    if (headerSize < sizesLength || headerSize > left) {
        fail("header does not fit", offset);
    }
    const std::size_t dataStart = aligned(offset + headerSize);
    if (dataStart > bytes.size() || dataSize > bytes.size() - dataStart) {
        fail("data does not fit", offset);
    }
    HeaderReader header(bytes, offset + sizesLength, offset + headerSize);
    const ResourceId type = header.readId();
    const ResourceId name = header.readId();
    offset = std::min(aligned(dataStart + dataSize), bytes.size());
    return {type, name, header.readLanguage(), bytes.subspan(dataStart, dataSize)};
}

// Resource names are case-insensitive.
std::string nameKey(std::u16string_view text) {
    Narrowing how;
    return foldCase(narrow(CP_UTF8, text, how));
}

}  // namespace

ResourceId::ResourceId(std::u16string_view text) : text_(nameKey(text)) {}

ResourceId::ResourceId(LPCSTR numberOrText) {
    if (reinterpret_cast<ULONG_PTR>(numberOrText) <= 0xFFFF) {
        number_ = static_cast<WORD>(reinterpret_cast<ULONG_PTR>(numberOrText));
        return;
    }
    const std::string_view text = numberOrText;
    if (text.starts_with('#')) {
        std::from_chars(text.data() + 1, text.data() + text.size(), number_);
        return;
    }
    text_ = foldCase(toUtf8(SystemSettings::current(), text));
}

std::vector<Resource> parseResourceFile(std::span<const BYTE> bytes) {
    std::vector<Resource> entries;
    for (std::size_t offset = 0; offset < bytes.size();) {
        Resource entry = readEntry(bytes, offset);
        if (!isMarker(entry)) {
            entries.push_back(std::move(entry));
        }
    }
    return entries;
}

bool stringInBlock(std::span<const BYTE> block, UINT id, std::u16string& text) {
    std::size_t offset = 0;
    for (UINT i = 0;; ++i) {
        if (block.size() - offset < unitLength) {
            return false;
        }
        const std::size_t length = wordAt(block, offset);
        offset += unitLength;
        if (length > (block.size() - offset) / unitLength) {
            return false;
        }
        if (i == id % stringsInBlock) {
            text.resize(length);
            for (char16_t& unit : text) {
                unit = wordAt(block, offset);
                offset += unitLength;
            }
            return true;
        }
        offset += length * unitLength;
    }
}

void Resources::add(std::vector<BYTE> file) {
    const std::vector<Resource> found = parseResourceFile(file);
    files_.push_back(std::move(file));  // a move keeps the bytes at their address
    entries_.insert(entries_.end(), found.begin(), found.end());
}

bool Resources::hasType(const ResourceId& type) const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [&](const Resource& entry) { return entry.type == type; });
}

std::size_t Resources::find(const ResourceId& type, const ResourceId& name) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Resource& entry) {
        return entry.type == type && entry.name == name;
    });
    return found == entries_.end() ? none : static_cast<std::size_t>(found - entries_.begin());
}

const Resource* Resources::at(std::size_t place) const {
    return place < entries_.size() ? &entries_[place] : nullptr;
}

}  // namespace winlayer
