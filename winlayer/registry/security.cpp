#include "winlayer/registry/security.h"

#include "winlayer/registry/security_identifier.h"

namespace winlayer {
namespace {

constexpr BYTE ntAuthority[] = {0, 0, 0, 0, 0, 5};
constexpr BYTE worldAuthority[] = {0, 0, 0, 0, 0, 1};
constexpr DWORD authenticatedUsers = 11;

std::vector<std::vector<BYTE>> groupsOfUser() {
    return {makeIdentifier(worldAuthority, {0}), makeIdentifier(ntAuthority, {authenticatedUsers}),
            makeIdentifier(ntAuthority, {SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_USERS})};
}

}  // namespace

TokenGroups TokenGroups::users() {
    return {groupsOfUser()};
}

TokenGroups TokenGroups::administrators() {
    TokenGroups token{groupsOfUser()};
    token.groups.push_back(
        makeIdentifier(ntAuthority, {SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS}));
    return token;
}

}  // namespace winlayer
