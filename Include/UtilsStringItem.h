#pragma once
#include <windows.h>

#include "UtilsString.h"

namespace UTILS {

// Replaces every occurrence of `text` in a string of a list or map under a case that may differ from the
// string's own, which it keeps. The texts may point into the string itself. Result: 1 if any was replaced,
// else 0. Throws as UtilsString::ReplaceAll does; the string is then unchanged.
inline int ReplaceAllInItem(UtilsString& string, const TextArgument& text, const TextArgument& replacement,
                            int exact) {
    UtilsString changed = string;
    changed.SetCase(exact);
    const int replaced = changed.ReplaceAll(text, replacement);
    if (replaced != 0) {
        changed.SetCase(string.GetCase());
        string = std::move(changed);
    }
    return replaced;
}

}  // namespace UTILS
