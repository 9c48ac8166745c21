#pragma once
#include <functional>
#include <string>

#include "tools/common/host_path.h"

namespace tools {

using Warn = std::function<void(const std::string&)>;

// Walks an archive up to its first fault and returns the number of files that it unpacks to: names that are
// the same to Windows count as one, compared without their first elements when these are dropped. Warns of
// such names, of which the last wins, and of those that are invalid on Windows. Throws Problem(failure) when
// the archive cannot be opened.
std::size_t reviewNames(const Path& archive, bool stripFirst, const Warn& warn);

// "1 file", "2 files".
std::string fileCount(std::size_t files);

}  // namespace tools
