#pragma once
#include <cstdarg>
#include <string>

// The pattern language of CBSTR::Format.
namespace text_format {

// Fills in a pattern (see CBSTR::Format) and appends the result to `text`, which must be empty. False when
// the argument numbers are invalid (text stays empty) or a specification is (text then ends with the rest of
// the pattern from its "!" on). Throws std::bad_alloc or std::length_error.
bool Fill(const char* pattern, va_list arguments, std::string& text);

}  // namespace text_format
