#pragma once
#include <typeinfo>

namespace UTILS {

// The name of a class as reports write it, for example "class UTILS::UtilsString". The text is valid for the
// life of the program. Thread rule: any thread.
const char* RuntimeClassName(const std::type_info& type);

}  // namespace UTILS
