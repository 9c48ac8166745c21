// Access tokens and security identifiers. Windows 95, 98 and Me have none.

#include "winlayer/include/securitybaseapi.h"
#include "winlayer/base/last_error.h"

#include <cstring>

#include "winlayer/base/gate.h"
#include "winlayer/base/handle_table.h"
#include "winlayer/base/local_memory.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/kernel/current_process.h"
#include "winlayer/registry/security.h"
#include "winlayer/registry/security_identifier.h"

namespace {

using winlayer::denied;
using winlayer::failed;
using GroupList = winlayer::TokenGroups;

struct Token final : winlayer::KernelObject {
    Token(GroupList held, DWORD granted) : groups(std::move(held)), access(granted) {}
    const GroupList groups;
    const DWORD access;
};

constexpr DWORD groupAttributes = 7;  // mandatory, enabled by default, enabled

bool hasSecurity() {
    return winlayer::isNt(winlayer::SystemSettings::current().version);
}

BOOL openToken(const GroupList& groups, DWORD access, PHANDLE token) {
    *token = winlayer::HandleTable::current().add(std::make_shared<Token>(groups, access));
    return *token != nullptr ? TRUE : failed(ERROR_TOO_MANY_OPEN_FILES);
}

// The size of the list and its identifiers in one block.
std::size_t groupListSize(const GroupList& list) {
    std::size_t size = offsetof(TOKEN_GROUPS, Groups) + list.groups.size() * sizeof(SID_AND_ATTRIBUTES);
    for (const std::vector<BYTE>& identifier : list.groups) {
        size += identifier.size();
    }
    return size;
}

void writeGroupList(const GroupList& list, void* buffer) {
    auto* const out = static_cast<TOKEN_GROUPS*>(buffer);
    SID_AND_ATTRIBUTES* entry = out->Groups;
    auto* identifiers = reinterpret_cast<BYTE*>(entry + list.groups.size());
    out->GroupCount = static_cast<DWORD>(list.groups.size());
    for (const std::vector<BYTE>& identifier : list.groups) {
        std::memcpy(identifiers, identifier.data(), identifier.size());
        *entry++ = {identifiers, groupAttributes};
        identifiers += identifier.size();
    }
}

}  // namespace

BOOL WINAPI OpenThreadToken(HANDLE thread, DWORD access, BOOL, PHANDLE token) try {
    if (denied(__func__)) {
        return FALSE;
    }
    if (!hasSecurity()) {
        return failed(ERROR_CALL_NOT_IMPLEMENTED);
    }
    if (thread != winlayer::currentThread()) {
        return failed(ERROR_INVALID_HANDLE);
    }
    const auto& impersonated = winlayer::Security::current().thread;
    return impersonated ? openToken(*impersonated, access, token) : failed(ERROR_NO_TOKEN);
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

BOOL WINAPI OpenProcessToken(HANDLE process, DWORD access, PHANDLE token) try {
    if (denied(__func__)) {
        return FALSE;
    }
    if (!hasSecurity()) {
        return failed(ERROR_CALL_NOT_IMPLEMENTED);
    }
    if (process != winlayer::currentProcess()) {
        return failed(ERROR_INVALID_HANDLE);
    }
    return openToken(winlayer::Security::current().process, access, token);
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

BOOL WINAPI GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID buffer, DWORD size,
                                PDWORD needed) try {
    if (denied(__func__)) {
        return FALSE;
    }
    const auto opened = winlayer::HandleTable::current().get<Token>(token);
    if (!opened) {
        return failed(ERROR_INVALID_HANDLE);
    }
    if ((opened->access & TOKEN_QUERY) == 0) {
        return failed(ERROR_ACCESS_DENIED);
    }
    if (kind != TokenGroups || needed == nullptr) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    *needed = static_cast<DWORD>(groupListSize(opened->groups));
    if (buffer == nullptr || size < *needed) {
        return failed(ERROR_INSUFFICIENT_BUFFER);
    }
    writeGroupList(opened->groups, buffer);
    return TRUE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

BOOL WINAPI AllocateAndInitializeSid(PSID_IDENTIFIER_AUTHORITY authority, BYTE count, DWORD sub0, DWORD sub1,
                                     DWORD sub2, DWORD sub3, DWORD sub4, DWORD sub5, DWORD sub6, DWORD sub7,
                                     PSID* sid) try {
    if (denied(__func__)) {
        return FALSE;
    }
    if (!hasSecurity()) {
        return failed(ERROR_CALL_NOT_IMPLEMENTED);
    }
    std::vector<DWORD> parts{sub0, sub1, sub2, sub3, sub4, sub5, sub6, sub7};
    if (count > parts.size()) {
        return failed(ERROR_INVALID_SID);
    }
    parts.resize(count);
    const std::vector<BYTE> identifier = winlayer::makeIdentifier(authority->Value, parts);
    *sid = winlayer::LocalMemory::current().allocate(identifier.size());
    std::memcpy(*sid, identifier.data(), identifier.size());
    return TRUE;
} catch (const std::bad_alloc&) {
    return winlayer::outOfMemory(FALSE);
}

BOOL WINAPI EqualSid(PSID first, PSID second) {
    if (denied(__func__)) {
        return FALSE;
    }
    if (!hasSecurity()) {
        return failed(ERROR_CALL_NOT_IMPLEMENTED);
    }
    const std::size_t size = winlayer::identifierSize(first);
    if (size == 0 || winlayer::identifierSize(second) == 0) {
        return failed(ERROR_INVALID_SID);
    }
    return winlayer::identifierSize(second) == size && std::memcmp(first, second, size) == 0 ? TRUE : FALSE;
}

// Null on success, otherwise the identifier itself.
PVOID WINAPI FreeSid(PSID sid) {
    winlayer::entered(__func__);
    return winlayer::LocalMemory::current().release(sid) ? nullptr : sid;
}
