#include <windows.h>

#include <oleauto.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace {

std::u16string unitsOf(BSTR text) {
    return {text, text + SysStringLen(text)};
}

TEST(OleStrings, ALengthStandsBeforeTheTextAndAZeroBehindIt) {
    const OLECHAR source[] = {'a', 0xE4, 0x20AC, 0};
    BSTR const text = SysAllocString(source);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(unitsOf(text), u"a\u00E4\u20AC");
    DWORD length = 0;
    std::memcpy(&length, reinterpret_cast<const char*>(text) - 4, 4);
    EXPECT_EQ(length, 6u);
    EXPECT_EQ(text[3], 0);
    SysFreeString(text);
}

TEST(OleStrings, LengthsAreGivenAndNotLookedFor) {
    const OLECHAR source[] = {'a', 0, 'b', 'c'};
    BSTR const part = SysAllocStringByteLen(reinterpret_cast<LPCSTR>(source), 6);
    EXPECT_EQ(unitsOf(part), std::u16string(u"a\0b", 3));
    EXPECT_EQ(part[3], 0);
    SysFreeString(part);

    BSTR const room = SysAllocStringByteLen(nullptr, 200);
    EXPECT_EQ(SysStringLen(room), 100u);
    EXPECT_EQ(room[100], 0);
    std::fill(room, room + 100, OLECHAR{'x'});
    SysFreeString(room);

    BSTR const bytes = SysAllocStringByteLen("abc", 3);
    EXPECT_EQ(SysStringLen(bytes), 1u);
    EXPECT_EQ(std::memcmp(bytes, "abc\0", 4), 0);
    SysFreeString(bytes);
}

TEST(OleStrings, NothingIsNotTheEmptyText) {
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    SysFreeString(nullptr);
    const OLECHAR none[] = {0};
    BSTR const empty = SysAllocString(none);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(SysStringLen(empty), 0u);
    EXPECT_EQ(empty[0], 0);
    SysFreeString(empty);
}

TEST(ComObjects, AreNamedAndCountedAsWindowsDoes) {
    const GUID factory = {0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
    EXPECT_TRUE(IsEqualGUID(factory, IID_IClassFactory));
    EXPECT_TRUE(IsEqualIID(IID_IUnknown, IID_IUnknown));
    EXPECT_FALSE(factory == IID_IUnknown);
    EXPECT_TRUE(FAILED(E_NOINTERFACE) && SUCCEEDED(S_OK));
    EXPECT_EQ(static_cast<DWORD>(E_OUTOFMEMORY), 0x8007000Eu);
}

}  // namespace
