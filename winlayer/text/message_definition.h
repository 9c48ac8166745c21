#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace winlayer {

// How an insert's argument is read: 32 bits, 64 bits, or the size of an address.
enum class ArgumentKind { Number, LongNumber, Address };

// "%3!-08ld!": the number and the format of the value.
struct MessageInsert {
    unsigned number = 0;    // 1 to 99
    std::string flags;      // of "-+ #0"
    std::string width;      // digits, "*" or nothing
    std::string precision;  // "." and digits or "*", or nothing
    char type = 's';        // one of "sScCdiuoxXp"
    bool wide = false;      // text is in 16-bit units
    bool isShort = false;   // only the low 16 bits are used
    ArgumentKind kind = ArgumentKind::Address;

    // Number of arguments that width and precision take.
    unsigned stars() const { return (width == "*" ? 1u : 0u) + (precision == ".*" ? 1u : 0u); }
};

struct MessagePiece {
    enum class Kind { Text, LineBreak, HardLineBreak, Insert };
    Kind kind = Kind::Text;
    std::string text;
    MessageInsert insert;
};

// Parses a message definition up to its end or a "%0". With `ignoreInserts`, inserts remain text. False when
// an insert is malformed or of a type that messages do not have.
bool parseMessage(std::string_view definition, bool ignoreInserts, std::vector<MessagePiece>& pieces);

}  // namespace winlayer
