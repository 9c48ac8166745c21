#include "UtilsReplace.h"
#include "UtilsString.h"

namespace UTILS {

int UtilsString::ReplaceFirst(const TextArgument& pattern, const TextArgument& replacement) {
    findCounter_ = 0;
    return ReplaceIn(Current(), Replacing::first, pattern.Text(), pattern.Length(), replacement.Text(),
                     replacement.Length(), case_, lastReplaced_);
}

int UtilsString::ReplaceNext(const TextArgument& pattern, const TextArgument& replacement) {
    return ReplaceIn(Current(), Replacing::next, pattern.Text(), pattern.Length(), replacement.Text(),
                     replacement.Length(), case_, lastReplaced_);
}

int UtilsString::ReplaceAll(const TextArgument& pattern, const TextArgument& replacement) {
    findCounter_ = 0;
    return ReplaceIn(Current(), Replacing::all, pattern.Text(), pattern.Length(), replacement.Text(),
                     replacement.Length(), case_, lastReplaced_);
}

const UtilsString& UtilsString::ReplaceReset() {
    findCounter_ = 0;
    lastReplaced_ = 0;
    return *this;
}

}  // namespace UTILS
