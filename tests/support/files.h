#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace test {

// Makes the folders of `name` below `folder`, writes the file and gives it the attributes; returns its path.
std::string makeFile(const TempFolder& folder, const std::string& name, const std::string& content,
                     DWORD attributes = FILE_ATTRIBUTE_NORMAL);

// Names below `folder` with their elements separated by backslashes, files only, sorted.
std::vector<std::string> filesBelow(const std::string& folder);

// A seed for random cases, printed so that TEST_SEED can repeat one.
std::uint32_t randomSeed();

}  // namespace test
