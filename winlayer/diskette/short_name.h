#pragma once
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace winlayer {

// 8.3 names: as text in code page 1252 ("README.TXT"), and as the eleven bytes in code page 850 of a
// directory entry. The bytes of both pages map one to one, so that every name on a diskette can be written as
// text and found again.
using RawName = std::array<std::byte, 11>;

// The text of a name on a diskette. Characters that no path can contain (control characters, separators,
// wildcards, dots) become '_'.
std::string nameText(const RawName& raw);

// The bytes of a new entry, in upper case; false if the text is not an 8.3 name.
bool parseName(std::string_view text, RawName& raw);

// Upper case, for comparing.
std::string foldName(std::string_view text);

// A volume label: eleven characters without a dot; trailing blanks are dropped.
std::string labelText(const RawName& raw);
// The bytes of a label of at most eleven characters, in upper case; false for a character that labels cannot
// have or that code page 850 lacks.
bool parseLabel(std::string_view text, RawName& raw);

}  // namespace winlayer
