#pragma once
#include "minwindef.h"

union LARGE_INTEGER {
    struct {
        DWORD LowPart;
        LONG HighPart;
    } u;
    LONGLONG QuadPart;
};

inline constexpr DWORD GENERIC_READ = 0x80000000;
inline constexpr DWORD GENERIC_WRITE = 0x40000000;
inline constexpr DWORD FILE_SHARE_READ = 1;
inline constexpr DWORD FILE_SHARE_WRITE = 2;
inline constexpr DWORD FILE_SHARE_DELETE = 4;

inline constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x01;
inline constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x02;
inline constexpr DWORD FILE_ATTRIBUTE_SYSTEM = 0x04;
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD FILE_ATTRIBUTE_REPARSE_POINT = 0x400;

inline constexpr DWORD DUPLICATE_SAME_ACCESS = 2;

inline constexpr DWORD VER_PLATFORM_WIN32_WINDOWS = 1;
inline constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

struct OSVERSIONINFOA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    char szCSDVersion[128];
};
using LPOSVERSIONINFOA = OSVERSIONINFOA*;
static_assert(sizeof(OSVERSIONINFOA) == 148);

// Why a module's entry point is called.
inline constexpr DWORD DLL_PROCESS_DETACH = 0;
inline constexpr DWORD DLL_PROCESS_ATTACH = 1;

// Memory as VirtualQuery describes it.
inline constexpr DWORD PAGE_NOACCESS = 0x01;
inline constexpr DWORD PAGE_READONLY = 0x02;
inline constexpr DWORD PAGE_READWRITE = 0x04;
inline constexpr DWORD PAGE_EXECUTE = 0x10;
inline constexpr DWORD PAGE_EXECUTE_READ = 0x20;
inline constexpr DWORD PAGE_EXECUTE_READWRITE = 0x40;
inline constexpr DWORD MEM_COMMIT = 0x1000;
inline constexpr DWORD MEM_FREE = 0x10000;
inline constexpr DWORD MEM_PRIVATE = 0x20000;
inline constexpr DWORD MEM_IMAGE = 0x1000000;

struct MEMORY_BASIC_INFORMATION {
    PVOID BaseAddress;
    PVOID AllocationBase;
    DWORD AllocationProtect;
    SIZE_T RegionSize;
    DWORD State;
    DWORD Protect;
    DWORD Type;
};
using PMEMORY_BASIC_INFORMATION = MEMORY_BASIC_INFORMATION*;

// Access tokens and security identifiers.
inline constexpr DWORD TOKEN_QUERY = 0x0008;
inline constexpr DWORD SECURITY_BUILTIN_DOMAIN_RID = 0x20;
inline constexpr DWORD DOMAIN_ALIAS_RID_ADMINS = 0x220;
inline constexpr DWORD DOMAIN_ALIAS_RID_USERS = 0x221;

struct SID_IDENTIFIER_AUTHORITY {
    BYTE Value[6];
};
using PSID_IDENTIFIER_AUTHORITY = SID_IDENTIFIER_AUTHORITY*;
#define SECURITY_NT_AUTHORITY \
    { 0, 0, 0, 0, 0, 5 }

using PSID = void*;
struct SID_AND_ATTRIBUTES {
    PSID Sid;
    DWORD Attributes;
};
struct TOKEN_GROUPS {
    DWORD GroupCount;
    SID_AND_ATTRIBUTES Groups[1];
};
enum TOKEN_INFORMATION_CLASS { TokenGroups = 2 };

// Languages.
inline constexpr WORD LANG_NEUTRAL = 0x00;
inline constexpr WORD SUBLANG_DEFAULT = 0x01;
constexpr WORD MAKELANGID(WORD primary, WORD sub) {
    return static_cast<WORD>((sub << 10) | primary);
}

// Registry access and value types.
inline constexpr DWORD MAXIMUM_ALLOWED = 0x02000000;
inline constexpr DWORD KEY_QUERY_VALUE = 0x0001;
inline constexpr DWORD KEY_SET_VALUE = 0x0002;
inline constexpr DWORD KEY_ENUMERATE_SUB_KEYS = 0x0008;
inline constexpr DWORD KEY_READ = 0x20019;
inline constexpr DWORD KEY_WRITE = 0x20006;
inline constexpr DWORD REG_OPTION_NON_VOLATILE = 0;
inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;
inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
inline constexpr DWORD REG_DWORD_BIG_ENDIAN = 5;
inline constexpr DWORD REG_MULTI_SZ = 7;
