#pragma once
#include <filesystem>
#include <string>

namespace host {

// The suite's settings as a text, to be kept where the registry does not outlive the program: a line in
// brackets for each key below the suite's own, followed by its texts as name=value. Backslashes, line breaks,
// equals signs and opening brackets of names and values are written as \\, \n, \r, \e and \b. Texts are 8-bit
// as they stand.
std::string settingsText();
// Sets what such a text says; lines that it cannot read are passed over.
void setSettings(const std::string& text);

// The content of a file; empty when there is none.
std::string readSettingsFile(const std::filesystem::path& file);
// Replaces the file, all or nothing, and makes its folder. Throws Failure.
void writeSettingsFile(const std::filesystem::path& file, const std::string& text);

}  // namespace host
