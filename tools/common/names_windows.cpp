// Names on Windows itself.
#include <windows.h>

#include "tools/common/names.h"

namespace tools {

std::string upperCase(std::string_view text) {
    std::string upper = converted(text, CP_UTF8, CP_ACP);
    CharUpperA(upper.data());
    return utf8(upper);
}

}  // namespace tools
