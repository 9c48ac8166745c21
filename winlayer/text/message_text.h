#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "winlayer/text/message_definition.h"

namespace winlayer {

struct SystemSettings;

// Maps inserts to arguments, which count from 0 in the order in which they were passed. The width and
// precision of an insert, if they are arguments, come right before it. Insert numbers count them too: in an
// array each of them, in an argument list all but the first of an insert.
class MessageArguments {
public:
    MessageArguments(const std::vector<MessagePiece>& pieces, bool inArray);

    // How to read each argument, in order; those that no insert names are addresses.
    const std::vector<ArgumentKind>& kinds() const { return kinds_; }
    std::size_t indexOf(const MessageInsert& insert) const;

private:
    bool inArray_;
    std::vector<unsigned> uncounted_;  // insert numbers before which an argument is not counted
    std::vector<ArgumentKind> kinds_;
};

// Formats the values and lays out the lines: 0 keeps line breaks as they are, 255 keeps only the hard ones,
// any other width breaks longer lines at blanks.
std::string messageText(const SystemSettings& settings, const std::vector<MessagePiece>& pieces,
                        const MessageArguments& arguments, const std::vector<std::uint64_t>& values,
                        unsigned lineWidth);

}  // namespace winlayer
