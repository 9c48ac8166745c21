#pragma once
#include <cstdarg>
#include <string>

// The pattern language of CBSTR::Format.
namespace text_format {

// Fills a pattern (see CBSTR::Format) and appends to `text`, which is empty before. False when the argument
// numbers make no sense (text stays empty) or a specification is invalid (text then ends with the rest of the
// pattern from its "!" on). Throws std::bad_alloc or std::length_error.
bool Fill(const char* pattern, va_list arguments, std::string& text);

}  // namespace text_format
