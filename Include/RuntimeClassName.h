#pragma once
#include <typeinfo>

namespace UTILS {

// The name of a class as reports write it, for example "class UTILS::UtilsString". The text lives as long as
// the program; any thread may call.
const char* RuntimeClassName(const std::type_info& type);

}  // namespace UTILS
