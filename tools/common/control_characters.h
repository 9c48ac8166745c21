#pragma once
#include <string>
#include <string_view>

namespace tools {

// Names come from archives, diskettes and hosts and may hold anything; a terminal would act on some of it.

// A text (UTF-8) in which every control character (C0, DEL, C1) and every byte that is not UTF-8 shows as its
// number in angle brackets, which no name of Windows has: ESC as "<1B>".
std::string withVisibleControls(std::string_view text);

// JSON text in which the control characters that JSON leaves as they are (DEL, C1) are escaped as well.
std::string withEscapedControls(std::string_view json);

}  // namespace tools
