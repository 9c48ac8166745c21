#pragma once
#include <cstring>

#include "minwindef.h"

struct GUID {
    DWORD Data1;
    WORD Data2;
    WORD Data3;
    BYTE Data4[8];
};
static_assert(sizeof(GUID) == 16);

using IID = GUID;
using CLSID = GUID;
using REFIID = const IID&;
using REFCLSID = const IID&;

inline bool IsEqualGUID(const GUID& a, const GUID& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}
inline bool IsEqualIID(REFIID a, REFIID b) {
    return IsEqualGUID(a, b);
}
inline bool IsEqualCLSID(REFCLSID a, REFCLSID b) {
    return IsEqualGUID(a, b);
}
inline bool operator==(const GUID& a, const GUID& b) {
    return IsEqualGUID(a, b);
}
