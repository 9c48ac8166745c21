#pragma once
#include <string>
#include <string_view>

namespace winlayer {

// A key that is equal for names that differ only in case: UTF-8 in, UTF-8 out, each character in upper case.
// Bytes that are not UTF-8 stay as they are.
std::string foldCase(std::string_view utf8);

}  // namespace winlayer
