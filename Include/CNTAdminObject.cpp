#include "CNTAdminObject.h"

#include <algorithm>

#include "UtilsAllocator.h"
#include "owned_handle.h"

namespace {

constexpr DWORD anyMinor = 0xFFFFFFFF;

struct KnownSystem {
    DWORD platform;
    DWORD major;  // 0: any
    DWORD minor;
    ostype system;
};

constexpr KnownSystem knownSystems[] = {
    {VER_PLATFORM_WIN32_WINDOWS, 0, 0, OS_WINDOWS_95},
    {VER_PLATFORM_WIN32_WINDOWS, 0, 10, OS_WINDOWS_98},
    {VER_PLATFORM_WIN32_WINDOWS, 0, 90, OS_WINDOWS_ME},
    {VER_PLATFORM_WIN32_NT, 3, anyMinor, OS_WINDOWS_NT3},
    {VER_PLATFORM_WIN32_NT, 4, anyMinor, OS_WINDOWS_NT4},
    {VER_PLATFORM_WIN32_NT, 5, 0, OS_WINDOWS_2000},
    {VER_PLATFORM_WIN32_NT, 5, 1, OS_WINDOWS_XP},
};

bool matches(const KnownSystem& known, const OSVERSIONINFOA& version) {
    return known.platform == version.dwPlatformId &&
           (known.major == 0 || known.major == version.dwMajorVersion) &&
           (known.minor == anyMinor || known.minor == version.dwMinorVersion);
}

// The token for access checks of the calling thread: its impersonation token, else the process token.
UTILS::OwnedHandle openEffectiveToken() {
    HANDLE token = nullptr;
    if (::OpenThreadToken(::GetCurrentThread(), TOKEN_QUERY, TRUE, &token)) {
        return UTILS::OwnedHandle(token);
    }
    if (::GetLastError() == ERROR_NO_TOKEN &&
        ::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token)) {
        return UTILS::OwnedHandle(token);
    }
    return {};
}

using GroupList = UTILS::UtilsAllocator<TOKEN_GROUPS>;

// Reads the token's groups into `groups`, which must not move: the entries point into it.
bool readGroups(HANDLE token, GroupList& groups) {
    DWORD size = 0;
    if (::GetTokenInformation(token, TokenGroups, nullptr, 0, &size) ||
        ::GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        return false;
    }
    groups.ReAllocateMemory(static_cast<DWORD>(size / sizeof(TOKEN_GROUPS) + 1));
    return ::GetTokenInformation(token, TokenGroups, groups.GetBuffer(), size, &size) != 0;
}

// Allocates the identifier of the local Administrators group into `place`; the destructor frees it.
class AdministratorsGroup {
public:
    explicit AdministratorsGroup(PSID& place) : place_(place) {
        SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
        if (!::AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS,
                                        0, 0, 0, 0, 0, 0, &place_)) {
            place_ = nullptr;
        }
    }
    AdministratorsGroup(const AdministratorsGroup&) = delete;
    AdministratorsGroup& operator=(const AdministratorsGroup&) = delete;
    ~AdministratorsGroup() {
        if (place_ != nullptr) {
            ::FreeSid(place_);
            place_ = nullptr;
        }
    }

    bool isAmong(const TOKEN_GROUPS& list) const {
        const SID_AND_ATTRIBUTES* const first = list.Groups;
        return place_ != nullptr &&
               std::any_of(first, first + list.GroupCount, [this](const SID_AND_ATTRIBUTES& group) {
                   return ::EqualSid(group.Sid, place_) != 0;
               });
    }

private:
    PSID& place_;
};

}  // namespace

CNTAdminObject::CNTAdminObject() {
    DetermineOS();
}

void CNTAdminObject::DetermineOS() {
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExA(&version)) {
        return;
    }
    for (const KnownSystem& known : knownSystems) {
        if (matches(known, version)) {
            system_ = known.system;
            return;
        }
    }
}

int CNTAdminObject::RunningAsAdministrator() {
    if (!IsNT()) {
        return 0;
    }
    const UTILS::OwnedHandle token = openEffectiveToken();
    if (!token) {
        return 0;
    }
    GroupList groups(1);
    if (!readGroups(token.get(), groups)) {
        return 0;
    }
    const AdministratorsGroup administrators(group_);
    return administrators.isAmong(*groups.GetBuffer()) ? 1 : 0;
}
