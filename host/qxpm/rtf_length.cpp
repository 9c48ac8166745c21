#include "host/qxpm/rtf_length.h"

namespace qxpm {

std::size_t rtfLength(const char* text) {
    if (*text != '{') return 0;
    std::size_t depth = 0;
    for (std::size_t at = 0;; ++at) {
        switch (text[at]) {
            case '\0':
                return at;
            case '\\':  // an escaped brace does not count
                if (text[at + 1] != '\0') ++at;
                break;
            case '{':
                ++depth;
                break;
            case '}':
                if (--depth == 0) return at + 1;
                break;
            default:
                break;
        }
    }
}

}  // namespace qxpm
