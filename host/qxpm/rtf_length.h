#pragma once
#include <cstddef>

namespace qxpm {

// The bytes of a rich text from its first character to the end of its outermost group, or to a zero before
// that. What follows the text in memory is not touched. 0 for a text that does not begin with a group.
std::size_t rtfLength(const char* text);

}  // namespace qxpm
