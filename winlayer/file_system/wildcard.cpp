#include "winlayer/file_system/wildcard.h"

#include "winlayer/text/case_folding.h"

namespace winlayer {

namespace {

std::size_t characterLength(std::string_view text, std::size_t at) {
    std::size_t end = at + 1;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
        ++end;
    }
    return end - at;
}

}  // namespace

bool hasWildcard(std::string_view name) {
    return name.find_first_of("*?") != std::string_view::npos;
}

Wildcard::Wildcard(std::string_view pattern) : pattern_(foldCase(pattern)) {
    if (pattern_ == "*.*") {
        pattern_ = "*";
    } else if (hasWildcard(pattern_) && pattern_.back() == '.') {
        pattern_.pop_back();
        withoutExtension_ = true;
    }
}

bool Wildcard::dotMayEnd(std::size_t at) const {
    return pattern_[at] == '.' && at + 1 < pattern_.size() &&
           (pattern_[at + 1] == '*' || pattern_[at + 1] == '?');
}

// Compares both texts; at a mismatch backtracks to the last "*" and lets it match one more character.
bool Wildcard::matches(std::string_view name) const {
    if (pattern_ == "*" && !withoutExtension_) {
        return true;
    }
    const std::string folded = foldCase(name);
    if (withoutExtension_ && folded.find('.') != std::string::npos) {
        return false;
    }
    constexpr std::size_t none = std::string::npos;
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t star = none;
    std::size_t starName = 0;
    while (p < pattern_.size() || n < folded.size()) {
        const bool atEnd = n == folded.size();
        const char wanted = p < pattern_.size() ? pattern_[p] : '\0';
        if (wanted == '*') {
            star = p++;
            starName = n;
        } else if (wanted == '?' ? atEnd || folded[n] == '.' : atEnd && wanted != '\0' && dotMayEnd(p)) {
            ++p;  // it matches no character here
        } else if (wanted == '?') {
            ++p;
            n += characterLength(folded, n);
        } else if (!atEnd && p < pattern_.size() && wanted == folded[n]) {
            ++p;
            ++n;
        } else if (star != none && starName < folded.size()) {
            p = star + 1;
            n = starName += characterLength(folded, starName);
        } else {
            return false;
        }
    }
    return true;
}

}  // namespace winlayer
