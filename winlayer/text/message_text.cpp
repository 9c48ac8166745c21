#include "winlayer/text/message_text.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "winlayer/base/system_settings.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {
namespace {

using Kind = MessagePiece::Kind;

constexpr unsigned onlyHardBreaks = 255;
constexpr int mostPadding = 9999;

template <class Address>
Address addressOf(std::uint64_t value) {
    return reinterpret_cast<Address>(static_cast<std::uintptr_t>(value));
}

// Width and precision after their arguments were read; -1 for none.
struct Measures {
    int width = -1;
    int precision = -1;
    bool left = false;
};

Measures measuresOf(const MessageInsert& insert, const std::uint64_t* stars) {
    const auto amount = [&](std::string_view text) {
        if (text.empty()) {
            return -1;
        }
        const int given = text == "*" ? static_cast<int>(*stars++) : std::stoi(std::string(text));
        return std::clamp(given, -mostPadding, mostPadding);
    };
    Measures measures;
    measures.left = insert.flags.find('-') != std::string::npos;
    measures.width = amount(insert.width);
    if (insert.width == "*" && measures.width < 0) {
        measures.left = true;
        measures.width = -measures.width;
    }
    if (!insert.precision.empty()) {
        measures.precision = insert.precision == "." ? 0 : amount(insert.precision.substr(1));
    }
    return measures;
}

std::string narrowText(const SystemSettings& settings, const WCHAR* text, std::size_t length) {
    Narrowing how;
    return narrow(settings.ansiCodePage, std::u16string(text, text + length), how);
}

// Reads at most `precision` characters, so that a text need not end in a zero.
template <class Unit>
std::size_t lengthOf(const Unit* text, int precision) {
    std::size_t length = 0;
    while ((precision < 0 || length < static_cast<std::size_t>(precision)) && text[length] != 0) {
        ++length;
    }
    return length;
}

std::string textValue(const SystemSettings& settings, const MessageInsert& insert, std::uint64_t value,
                      const Measures& measures) {
    if (insert.type == 'c') {
        const auto unit = static_cast<WCHAR>(value);
        return insert.wide ? narrowText(settings, &unit, 1) : std::string(1, static_cast<char>(value));
    }
    if (value == 0) {
        return "(null)";
    }
    if (insert.wide) {
        const auto* text = addressOf<const WCHAR*>(value);
        return narrowText(settings, text, lengthOf(text, measures.precision));
    }
    const auto* text = addressOf<const char*>(value);
    return std::string(text, lengthOf(text, measures.precision));
}

std::string padded(std::string text, const Measures& measures) {
    const auto width = static_cast<std::size_t>(std::max(measures.width, 0));
    if (text.size() < width) {
        text.insert(measures.left ? text.size() : 0, width - text.size(), ' ');
    }
    return text;
}

// In the widest type, so that one call formats numbers of any size.
long long signedValue(const MessageInsert& insert, std::uint64_t value) {
    if (insert.isShort) {
        return static_cast<std::int16_t>(value);
    }
    return insert.kind == ArgumentKind::Number ? static_cast<std::int32_t>(value)
                                               : static_cast<std::int64_t>(value);
}

unsigned long long unsignedValue(const MessageInsert& insert, std::uint64_t value) {
    if (insert.isShort) {
        return static_cast<std::uint16_t>(value);
    }
    return insert.kind == ArgumentKind::Number ? static_cast<std::uint32_t>(value) : value;
}

std::string numberValue(const MessageInsert& insert, std::uint64_t value, const Measures& measures) {
    std::string format = "%" + insert.flags + (measures.left ? "-" : "");
    if (measures.width >= 0) {
        format += std::to_string(measures.width);
    }
    if (measures.precision >= 0) {
        format += "." + std::to_string(measures.precision);
    }
    format += std::string("ll") + insert.type;
    constexpr std::size_t mostDigits = 64;
    const int padding = std::max(measures.width, 0) + std::max(measures.precision, 0);
    std::string text(mostDigits + static_cast<std::size_t>(padding), '\0');
    const int length =
        insert.type == 'd' || insert.type == 'i'
            ? std::snprintf(text.data(), text.size(), format.c_str(), signedValue(insert, value))
            : std::snprintf(text.data(), text.size(), format.c_str(), unsignedValue(insert, value));
    text.resize(static_cast<std::size_t>(std::max(length, 0)));
    return text;
}

std::string pointerValue(std::uint64_t value, const Measures& measures) {
    char digits[2 * sizeof(void*) + 1];
    std::snprintf(digits, sizeof digits, "%0*llX", static_cast<int>(2 * sizeof(void*)),
                  static_cast<unsigned long long>(value));
    return padded(digits, measures);
}

std::string insertText(const SystemSettings& settings, const MessageInsert& insert,
                       const std::uint64_t* value) {
    const Measures measures = measuresOf(insert, value - insert.stars());
    switch (insert.type) {
        case 's':
        case 'c':
            return padded(textValue(settings, insert, *value, measures), measures);
        case 'p':
            return pointerValue(*value, measures);
        default:
            return numberValue(insert, *value, measures);
    }
}

// Breaks a line at blanks so that no part exceeds the width, as far as there are blanks.
std::string wrapped(std::string line, std::size_t width) {
    std::string out;
    while (line.size() > width) {
        std::size_t blank = line.rfind(' ', width);
        if (blank == std::string::npos || blank == 0) {
            blank = line.find(' ', 1);
        }
        if (blank == std::string::npos) {
            break;
        }
        out += line.substr(0, blank) + "\r\n";
        line.erase(0, blank + 1);
    }
    return out + line;
}

}  // namespace

MessageArguments::MessageArguments(const std::vector<MessagePiece>& pieces, bool inArray)
    : inArray_(inArray) {
    for (const MessagePiece& piece : pieces) {
        const unsigned number = piece.insert.number;
        const bool counted = std::count(uncounted_.begin(), uncounted_.end(), number) != 0;
        if (!inArray && piece.kind == Kind::Insert && piece.insert.stars() > 0 && !counted) {
            uncounted_.push_back(number);
        }
    }
    std::vector<bool> known;
    const auto note = [&](std::size_t index, ArgumentKind kind) {
        if (index >= kinds_.size()) {
            kinds_.resize(index + 1, ArgumentKind::Address);
            known.resize(index + 1, false);
        }
        if (!known[index]) {
            kinds_[index] = kind;
            known[index] = true;
        }
    };
    for (const MessagePiece& piece : pieces) {
        if (piece.kind != Kind::Insert) {
            continue;
        }
        const std::size_t index = indexOf(piece.insert);
        for (unsigned star = piece.insert.stars(); star > 0; --star) {
            note(index - star, ArgumentKind::Number);
        }
        note(index, piece.insert.kind);
    }
}

std::size_t MessageArguments::indexOf(const MessageInsert& insert) const {
    const unsigned stars = insert.stars();
    if (inArray_) {
        return insert.number - 1 + stars;
    }
    const auto uncounted = std::count_if(uncounted_.begin(), uncounted_.end(),
                                         [&](unsigned number) { return number <= insert.number; });
    return insert.number - 1 + static_cast<std::size_t>(uncounted) + (stars == 2 ? 1 : 0);
}

std::string messageText(const SystemSettings& settings, const std::vector<MessagePiece>& pieces,
                        const MessageArguments& arguments, const std::vector<std::uint64_t>& values,
                        unsigned lineWidth) {
    const bool wraps = lineWidth != 0 && lineWidth != onlyHardBreaks;
    std::string text;
    std::string line;
    const auto endLine = [&] {
        text += wraps ? wrapped(line, lineWidth) : line;
        line.clear();
    };
    for (const MessagePiece& piece : pieces) {
        if (piece.kind == Kind::Insert) {
            line += insertText(settings, piece.insert, &values[arguments.indexOf(piece.insert)]);
        } else if (piece.kind == Kind::Text) {
            line += piece.text;
        } else if (piece.kind == Kind::LineBreak && lineWidth != 0) {
            line += ' ';
        } else {
            endLine();
            text += "\r\n";
        }
    }
    endLine();
    return text;
}

}  // namespace winlayer
