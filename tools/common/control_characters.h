#pragma once
#include <string>
#include <string_view>

namespace tools {

// Names from archives, diskettes and hosts may contain anything; a terminal would act on some of it.

// The text (UTF-8) with every control character (C0, DEL, C1) and every byte that is not UTF-8 replaced by
// its number in angle brackets, which no Windows name contains: ESC becomes "<1B>".
std::string withVisibleControls(std::string_view text);

// JSON text with those control characters escaped that JSON leaves as they are (DEL, C1).
std::string withEscapedControls(std::string_view json);

}  // namespace tools
