#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "winlayer/text/message_definition.h"

namespace winlayer {

struct SystemSettings;

// Which argument each insert takes its value from, counted from 0 in the order in which they were passed. The
// width and precision of an insert, if these are arguments, stand right before it. Insert numbers count them
// too: in an array each of them, in an argument list all but the first of an insert.
class MessageArguments {
public:
    MessageArguments(const std::vector<MessagePiece>& pieces, bool inArray);

    // What each argument is to be read as, in order; those that no insert names are addresses.
    const std::vector<ArgumentKind>& kinds() const { return kinds_; }
    std::size_t indexOf(const MessageInsert& insert) const;

private:
    bool inArray_;
    std::vector<unsigned> uncounted_;  // insert numbers in front of which an argument is not counted
    std::vector<ArgumentKind> kinds_;
};

// Puts the values in and lays out the lines: 0 keeps line breaks as they are, 255 leaves only the hard ones,
// any other width breaks lines of more characters at blanks.
std::string messageText(const SystemSettings& settings, const std::vector<MessagePiece>& pieces,
                        const MessageArguments& arguments, const std::vector<std::uint64_t>& values,
                        unsigned lineWidth);

}  // namespace winlayer
