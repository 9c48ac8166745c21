#pragma once
#include <string>
#include <string_view>

namespace winlayer {

bool hasWildcard(std::string_view name);

// A name pattern as FindFirstFileA takes it, case-insensitive. "*" matches any characters; "?" matches one
// that is not a dot or, before a dot and at the end of the name, none. A dot before a wildcard also matches
// the end of the name, so "*.*" matches every name; a dot at the end of a pattern with wildcards means "no
// extension". Texts are UTF-8.
class Wildcard {
public:
    explicit Wildcard(std::string_view pattern);
    bool matches(std::string_view name) const;

private:
    bool dotMayEnd(std::size_t at) const;

    std::string pattern_;  // folded
    bool withoutExtension_ = false;
};

}  // namespace winlayer
