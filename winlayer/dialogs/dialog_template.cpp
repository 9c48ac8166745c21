#include "winlayer/dialogs/dialog_template.h"

#include "winlayer/text/code_pages.h"

namespace winlayer {
namespace {

constexpr WORD extendedVersion = 1;
constexpr WORD extendedSignature = 0xFFFF;

// Reads little-endian fields in sequence. Fields beyond the end are 0.
class Fields {
public:
    Fields(std::span<const BYTE> bytes, UINT codePage) : bytes_(bytes), codePage_(codePage) {}

    bool complete() const { return complete_; }

    WORD word() {
        if (bytes_.size() - at_ < 2) {
            at_ = bytes_.size();
            complete_ = false;
            return 0;
        }
        const auto value = static_cast<WORD>(bytes_[at_] | bytes_[at_ + 1] << 8);
        at_ += 2;
        return value;
    }

    DWORD dword() {
        const DWORD low = word();
        return low | DWORD{word()} << 16;
    }

    int coordinate() { return static_cast<SHORT>(word()); }

    std::string text() {
        std::u16string wide;
        for (WORD unit = word(); unit != 0; unit = word()) {
            wide += static_cast<char16_t>(unit);
        }
        Narrowing how;
        return narrow(codePage_, wide, how);
    }

    TemplateName name() {
        if (bytes_.size() - at_ >= 2 && bytes_[at_] == 0xFF && bytes_[at_ + 1] == 0xFF) {
            static_cast<void>(word());
            return {word(), {}};
        }
        return {0, text()};
    }

    std::vector<BYTE> block(std::size_t size) {
        if (bytes_.size() - at_ < size) {
            complete_ = false;
            return {};
        }
        const auto part = bytes_.subspan(at_, size);
        at_ += size;
        return {part.begin(), part.end()};
    }

    void skip(std::size_t size) { at_ = std::min(at_ + size, bytes_.size()); }

    void alignToDword() { skip((4 - at_ % 4) % 4); }

private:
    std::span<const BYTE> bytes_;
    UINT codePage_;
    std::size_t at_ = 0;
    bool complete_ = true;
};

bool isExtended(std::span<const BYTE> bytes) {
    Fields fields(bytes, 0);
    return fields.word() == extendedVersion && fields.word() == extendedSignature;
}

template <class T>
void readPlace(Fields& fields, T& item) {
    item.x = fields.coordinate();
    item.y = fields.coordinate();
    item.width = fields.coordinate();
    item.height = fields.coordinate();
}

DialogFont readFont(Fields& fields, bool extended) {
    DialogFont font;
    font.points = fields.word();
    if (extended) {
        font.weight = fields.word();
        const WORD italicAndCharset = fields.word();
        font.italic = LOBYTE(italicAndCharset) != 0;
    }
    font.face = fields.text();
    return font;
}

DialogItem readItem(Fields& fields, bool extended) {
    fields.alignToDword();
    DialogItem item;
    if (extended) {
        static_cast<void>(fields.dword());  // help identifier
        item.exStyle = fields.dword();
        item.style = fields.dword();
    } else {
        item.style = fields.dword();
        item.exStyle = fields.dword();
    }
    readPlace(fields, item);
    item.id = extended ? fields.dword() : fields.word();
    item.windowClass = fields.name();
    item.title = fields.name();
    item.creationData = fields.block(fields.word());
    return item;
}

}  // namespace

std::optional<DialogTemplate> readDialogTemplate(std::span<const BYTE> bytes, UINT codePage) {
    const bool extended = isExtended(bytes);
    Fields fields(bytes, codePage);
    DialogTemplate result;
    if (extended) {
        static_cast<void>(fields.dword());  // version and signature
        static_cast<void>(fields.dword());  // help identifier
        result.exStyle = fields.dword();
        result.style = fields.dword();
    } else {
        result.style = fields.dword();
        result.exStyle = fields.dword();
    }
    const WORD count = fields.word();
    readPlace(fields, result);
    result.menu = fields.name();
    result.windowClass = fields.name();
    result.title = fields.text();
    if ((result.style & DS_SETFONT) != 0) {
        result.font = readFont(fields, extended);
    }
    for (WORD i = 0; i < count && fields.complete(); ++i) {
        result.items.push_back(readItem(fields, extended));
    }
    return fields.complete() ? std::optional(std::move(result)) : std::nullopt;
}

}  // namespace winlayer
