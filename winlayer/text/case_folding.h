#pragma once
#include <string>
#include <string_view>

namespace winlayer {

// A key under which names that differ only in case are equal: UTF-8 in, UTF-8 out, each character in upper
// case. Bytes that are no UTF-8 stay as they are.
std::string foldCase(std::string_view utf8);

}  // namespace winlayer
