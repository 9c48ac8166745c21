#pragma once
#include <filesystem>
#include <string>

namespace host {

// The suite's settings as text, for systems whose registry does not outlive the program: a line in brackets
// for each key below the suite's own, followed by its texts as name=value. Backslashes, line breaks, equals
// signs and opening brackets in names and values are written as \\, \n, \r, \e and \b. Texts are 8-bit, not
// converted.
std::string settingsText();
// Applies such a text; lines that cannot be parsed are skipped.
void setSettings(const std::string& text);

// The contents of a file; empty when there is none.
std::string readSettingsFile(const std::filesystem::path& file);
// Replaces the file atomically and creates its folder. Throws Failure.
void writeSettingsFile(const std::filesystem::path& file, const std::string& text);

}  // namespace host
