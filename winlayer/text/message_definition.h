#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace winlayer {

// What the value of an insert is read as: 32 bits, 64 bits, or as much as an address takes.
enum class ArgumentKind { Number, LongNumber, Address };

// "%3!-08ld!": the number and how its value is to be written.
struct MessageInsert {
    unsigned number = 0;    // 1 to 99
    std::string flags;      // of "-+ #0"
    std::string width;      // digits, "*" or nothing
    std::string precision;  // "." and digits or "*", or nothing
    char type = 's';        // one of "sScCdiuoxXp"
    bool wide = false;      // text is in 16-bit units
    bool isShort = false;   // only the low 16 bits count
    ArgumentKind kind = ArgumentKind::Address;

    // Values taken from the arguments for width and precision.
    unsigned stars() const { return (width == "*" ? 1u : 0u) + (precision == ".*" ? 1u : 0u); }
};

struct MessagePiece {
    enum class Kind { Text, LineBreak, HardLineBreak, Insert };
    Kind kind = Kind::Text;
    std::string text;
    MessageInsert insert;
};

// Takes a message definition apart, up to its end or a "%0". With `ignoreInserts` inserts stay text.
// False when an insert is malformed or of a type that does not exist for messages.
bool parseMessage(std::string_view definition, bool ignoreInserts, std::vector<MessagePiece>& pieces);

}  // namespace winlayer
