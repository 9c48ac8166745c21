#pragma once
#include <optional>
#include <string>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// The groups of an access token, each a binary security identifier.
struct TokenGroups {
    std::vector<std::vector<BYTE>> groups;

    static TokenGroups administrators();
    static TokenGroups users();
};

// The groups that the process and the calling thread run with.
struct Security {
    // The current machine's.
    static Security& current();

    TokenGroups process = TokenGroups::administrators();
    // Set while the thread impersonates another user; then its token has these groups.
    std::optional<TokenGroups> thread;
};

}  // namespace winlayer
