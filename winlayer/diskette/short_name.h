#pragma once
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace winlayer {

// Names of 8 and 3 characters: as text in code page 1252 ("README.TXT"), and as the eleven bytes in code page
// 850 that a directory entry holds. Each byte of one page stands for exactly one of the other, so that every
// name on a diskette can be written as text and found again.
using RawName = std::array<std::byte, 11>;

// The text of a name on a diskette. What no path could name (control characters, separators, wildcards, dots)
// reads as '_'.
std::string nameText(const RawName& raw);

// The bytes for a new entry, in upper case; false when the text is no 8.3 name.
bool parseName(std::string_view text, RawName& raw);

// Upper case, for comparing.
std::string foldName(std::string_view text);

// A volume label: eleven characters without a dot, blanks at the end dropped.
std::string labelText(const RawName& raw);
// The bytes for a label, in upper case; false for a character that no label may have, or that code page 850
// lacks. At most eleven characters.
bool parseLabel(std::string_view text, RawName& raw);

}  // namespace winlayer
