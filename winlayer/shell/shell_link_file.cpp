#include "winlayer/shell/shell_link_file.h"

#include <algorithm>

#include "winlayer/include/shobjidl.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {
namespace {

constexpr DWORD headerSize = 76;
constexpr BYTE linkClass[16] = {0x01, 0x14, 0x02, 0, 0, 0, 0, 0, 0xC0, 0, 0, 0, 0, 0, 0, 0x46};
constexpr std::size_t longest = 0xFFFF;  // text in units, item list in bytes
constexpr DWORD endOfBlocks = 4;         // a smaller size ends the blocks
constexpr DWORD blockHeader = 8;

// The link info, which holds the target's path: sizes and offsets in bytes from its start.
constexpr DWORD infoHeader = 28;
constexpr DWORD infoHeaderWithUnicode = 36;
constexpr DWORD infoHasDrive = 1;
constexpr DWORD infoHasNetwork = 2;
constexpr DWORD volumeSize = 17;  // with an empty label
constexpr DWORD volumeLabel = 16;
constexpr DWORD networkHeader = 20;
constexpr DWORD networkTypeValid = 2;
constexpr DWORD networkOfWindows = 0x00020000;

DWORD textFlag(std::size_t text) {
    return SLDF_HAS_NAME << text;
}

// Reads in sequence. A field that exceeds the data reads as empty and makes `sound` false.
class Reader {
public:
    explicit Reader(std::span<const BYTE> bytes) : rest_(bytes) {}

    bool sound() const { return sound_; }
    std::span<const BYTE> rest() const { return rest_; }

    std::span<const BYTE> take(std::uint64_t count) {
        if (count > rest_.size()) {
            sound_ = false;
            return {};
        }
        const auto taken = rest_.first(static_cast<std::size_t>(count));
        rest_ = rest_.subspan(taken.size());
        return taken;
    }
    std::uint64_t number(std::size_t size) {
        std::uint64_t value = 0;
        const auto bytes = take(size);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            value |= std::uint64_t{bytes[i]} << (8 * i);
        }
        return value;
    }
    WORD word() { return static_cast<WORD>(number(2)); }
    DWORD dword() { return static_cast<DWORD>(number(4)); }
    // A part that starts with its own size in four bytes, which count too.
    std::span<const BYTE> takeSized(DWORD smallest) {
        const auto start = rest_;
        const DWORD size = dword();
        take(size < smallest ? ~std::uint64_t{0} : size - sizeof size);
        return sound_ ? start.first(size) : std::span<const BYTE>();
    }

private:
    std::span<const BYTE> rest_;
    bool sound_ = true;
};

class Writer {
public:
    void number(std::uint64_t value, std::size_t size) {
        for (; size > 0; --size, value >>= 8) {
            bytes_.push_back(static_cast<BYTE>(value));
        }
    }
    void word(std::size_t value) { number(value, 2); }
    void dword(std::size_t value) { number(value, 4); }
    void append(std::span<const BYTE> bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
    // Including its zero.
    void text(const std::string& text) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        bytes_.push_back(0);
    }
    std::vector<BYTE> take() { return std::move(bytes_); }

private:
    std::vector<BYTE> bytes_;
};

std::u16string readUnits(std::span<const BYTE> bytes) {
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        text.push_back(static_cast<char16_t>(bytes[i] | (bytes[i + 1] << 8)));
    }
    return text;
}

std::u16string readBytes(std::span<const BYTE> bytes, UINT codePage) {
    bool valid = true;
    return widen(codePage, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, valid);
}

// A part of the file whose texts are found by offsets; prefers the Unicode ones.
class Part {
public:
    Part(std::span<const BYTE> bytes, UINT codePage) : bytes_(bytes), codePage_(codePage) {}

    bool sound() const { return sound_; }
    DWORD dword(std::size_t offset) {
        Reader reader(bytes_.subspan(std::min(offset, bytes_.size())));
        const DWORD value = reader.dword();
        sound_ = sound_ && reader.sound();
        return value;
    }
    // The zero-ended text whose offset is at `place`; `unicode` is the place for its Unicode form, or 0.
    std::u16string text(std::size_t place, std::size_t unicode) {
        const DWORD wide = unicode != 0 ? dword(unicode) : 0;
        return wide != 0 ? units(wide) : bytes(dword(place));
    }

private:
    std::u16string bytes(DWORD offset) {
        const auto from = bytes_.subspan(std::min<std::size_t>(offset, bytes_.size()));
        const auto end = std::find(from.begin(), from.end(), BYTE{0});
        sound_ = sound_ && end != from.end();
        return readBytes({from.begin(), end}, codePage_);
    }
    std::u16string units(DWORD offset) {
        std::u16string text = readUnits(bytes_.subspan(std::min<std::size_t>(offset, bytes_.size())));
        const std::size_t end = text.find(u'\0');
        sound_ = sound_ && end != std::u16string::npos;
        return text.substr(0, end);
    }

    std::span<const BYTE> bytes_;
    UINT codePage_;
    bool sound_ = true;
};

bool isNetworkPath(const std::u16string& path) {
    return path.starts_with(u"\\\\");
}

bool readNetworkName(std::span<const BYTE> bytes, UINT codePage, std::u16string& name) {
    Part network(Reader(bytes).takeSized(networkHeader), codePage);
    const bool hasUnicode = network.dword(8) > networkHeader;
    name = network.text(8, hasUnicode ? networkHeader : 0);
    return network.sound();
}

bool readPath(std::span<const BYTE> bytes, UINT codePage, std::u16string& path) {
    Part info(bytes, codePage);
    const bool hasUnicode = info.dword(4) >= infoHeaderWithUnicode;
    const DWORD has = info.dword(8);
    if ((has & infoHasDrive) != 0) {
        path = info.text(16, hasUnicode ? 28 : 0);
    } else if ((has & infoHasNetwork) != 0) {
        const std::size_t offset = std::min<std::size_t>(info.dword(20), bytes.size());
        if (!readNetworkName(bytes.subspan(offset), codePage, path)) {
            return false;
        }
    } else {
        return info.sound();
    }
    const std::u16string below = info.text(24, hasUnicode ? 32 : 0);
    path += (below.empty() || (has & infoHasDrive) != 0 ? u"" : u"\\") + below;
    return info.sound();
}

void readHeader(Reader& in, ShellLinkFile& link) {
    link.flags = in.dword();
    link.attributes = in.dword();
    link.created = in.number(8);
    link.accessed = in.number(8);
    link.written = in.number(8);
    link.size = in.dword();
    link.iconIndex = in.dword();
    link.showCommand = in.dword();
    link.hotKey = in.word();
    in.take(10);  // reserved
}

std::u16string readText(Reader& in, bool unicode, UINT codePage) {
    const std::size_t length = in.word();
    return unicode ? readUnits(in.take(2 * length)) : readBytes(in.take(length), codePage);
}

void readBlocks(Reader& in, std::vector<std::vector<BYTE>>& blocks) {
    while (in.sound() && Reader(in.rest()).dword() >= endOfBlocks) {
        const auto block = in.takeSized(blockHeader);
        blocks.emplace_back(block.begin(), block.end());
    }
    in.dword();
}

// The path in the code page, with a network share separate from the path below it.
std::optional<std::vector<BYTE>> pathInfo(const std::u16string& path, UINT codePage) {
    Narrowing how;
    const std::string whole = narrow(codePage, path, how);
    bool valid = true;
    if (widen(codePage, whole, valid) != path || path.find(u'\0') != std::u16string::npos) {
        return std::nullopt;
    }
    Writer out;
    if (!isNetworkPath(path)) {
        const std::size_t base = infoHeader + volumeSize;
        const std::size_t below = base + whole.size() + 1;
        for (const std::size_t field :
             {below + 1, std::size_t{infoHeader}, std::size_t{infoHasDrive}, std::size_t{infoHeader}, base,
              std::size_t{0}, below, std::size_t{volumeSize}, std::size_t{DRIVE_FIXED}, std::size_t{0},
              std::size_t{volumeLabel}}) {
            out.dword(field);
        }
        out.text("");
        out.text(whole);
        out.text("");
        return out.take();
    }
    const std::size_t server = whole.find('\\', 2);
    std::size_t share = server == std::string::npos ? server : whole.find('\\', server + 1);
    if (share == whole.size() - 1) {
        share = std::string::npos;  // nothing below the share, so the backslash belongs to its name
    }
    const std::string name = whole.substr(0, share);
    const std::string rest = share == std::string::npos ? "" : whole.substr(share + 1);
    const std::size_t network = networkHeader + name.size() + 1;
    const std::size_t below = infoHeader + network;
    for (const std::size_t field :
         {below + rest.size() + 1, std::size_t{infoHeader}, std::size_t{infoHasNetwork}, std::size_t{0},
          std::size_t{0}, std::size_t{infoHeader}, below, network, std::size_t{networkTypeValid},
          std::size_t{networkHeader}, std::size_t{0}, std::size_t{networkOfWindows}}) {
        out.dword(field);
    }
    out.text(name);
    out.text(rest);
    return out.take();
}

DWORD flagsOf(const ShellLinkFile& link) {
    DWORD flags = link.flags & ~(SLDF_HAS_ID_LIST | SLDF_HAS_LINK_INFO);
    flags |= SLDF_UNICODE;
    flags |= link.items.empty() ? 0 : SLDF_HAS_ID_LIST;
    if (!link.path.empty()) {
        flags = (flags | SLDF_HAS_LINK_INFO) & ~SLDF_FORCE_NO_LINKINFO;
    }
    for (std::size_t i = 0; i < link.texts.size(); ++i) {
        flags = link.texts[i] ? flags | textFlag(i) : flags & ~textFlag(i);
    }
    return flags;
}

void writeHeader(const ShellLinkFile& link, Writer& out) {
    out.dword(headerSize);
    out.append(linkClass);
    out.dword(flagsOf(link));
    out.dword(link.attributes);
    out.number(link.created, 8);
    out.number(link.accessed, 8);
    out.number(link.written, 8);
    out.dword(link.size);
    out.dword(link.iconIndex);
    out.dword(link.showCommand);
    out.word(link.hotKey);
    out.append(std::array<BYTE, 10>{});
}

bool fits(const ShellLinkFile& link) {
    return link.items.size() <= longest &&
           std::all_of(link.texts.begin(), link.texts.end(),
                       [](const auto& text) { return !text || text->size() <= longest; }) &&
           std::all_of(link.blocks.begin(), link.blocks.end(),
                       [](const auto& block) { return blockSignature(block).has_value(); });
}

}  // namespace

std::optional<ShellLinkFile> parseShellLink(std::span<const BYTE> bytes, UINT codePage) {
    Reader in(bytes);
    ShellLinkFile link;
    if (in.dword() != headerSize || !std::ranges::equal(in.take(sizeof linkClass), linkClass)) {
        return std::nullopt;
    }
    readHeader(in, link);
    if ((link.flags & SLDF_HAS_ID_LIST) != 0) {
        const auto items = in.take(in.word());
        link.items.assign(items.begin(), items.end());
    }
    if ((link.flags & SLDF_HAS_LINK_INFO) != 0) {
        const auto info = in.takeSized(infoHeader);
        const bool counts = (link.flags & SLDF_FORCE_NO_LINKINFO) == 0;
        if (!in.sound() || (counts && !readPath(info, codePage, link.path))) {
            return std::nullopt;
        }
    }
    for (std::size_t i = 0; i < link.texts.size(); ++i) {
        if ((link.flags & textFlag(i)) != 0) {
            link.texts[i] = readText(in, (link.flags & SLDF_UNICODE) != 0, codePage);
        }
    }
    readBlocks(in, link.blocks);
    return in.sound() ? std::optional(std::move(link)) : std::nullopt;
}

std::optional<std::vector<BYTE>> shellLinkBytes(const ShellLinkFile& link, UINT codePage) {
    if (!fits(link)) {
        return std::nullopt;
    }
    Writer out;
    writeHeader(link, out);
    if (!link.items.empty()) {
        out.word(link.items.size());
        out.append(link.items);
    }
    if (!link.path.empty()) {
        const auto info = pathInfo(link.path, codePage);
        if (!info) {
            return std::nullopt;
        }
        out.append(*info);
    }
    for (const auto& text : link.texts) {
        if (text) {
            out.word(text->size());
            for (const char16_t unit : *text) {
                out.word(unit);
            }
        }
    }
    for (const auto& block : link.blocks) {
        out.append(block);
    }
    out.dword(0);
    return out.take();
}

std::optional<DWORD> blockSignature(std::span<const BYTE> block) {
    Reader reader(block);
    const DWORD size = reader.dword();
    const DWORD signature = reader.dword();
    return reader.sound() && size == block.size() ? std::optional(signature) : std::nullopt;
}

}  // namespace winlayer
