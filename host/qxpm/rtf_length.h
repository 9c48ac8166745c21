#pragma once
#include <cstddef>

namespace qxpm {

// The length in bytes of a rich text up to the end of its outermost group, or up to a zero before that.
// Memory after the text is not read. 0 for a text that does not begin with a group.
std::size_t rtfLength(const char* text);

}  // namespace qxpm
