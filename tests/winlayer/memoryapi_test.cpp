#include <windows.h>

#include <gtest/gtest.h>

#include <memory>

namespace {

int ownFunction() {
    return 7;
}

MEMORY_BASIC_INFORMATION query(const void* address) {
    MEMORY_BASIC_INFORMATION information{};
    EXPECT_EQ(VirtualQuery(address, &information, sizeof information), sizeof information);
    const auto begin = reinterpret_cast<ULONG_PTR>(information.BaseAddress);
    EXPECT_LE(begin, reinterpret_cast<ULONG_PTR>(address));
    EXPECT_GT(begin + information.RegionSize, reinterpret_cast<ULONG_PTR>(address));
    EXPECT_EQ(begin % 0x1000, 0u);
    return information;
}

TEST(MemoryApi, CodeAndDataBelongToTheirModule) {
    static int data = 3;
    const MEMORY_BASIC_INFORMATION code = query(reinterpret_cast<const void*>(&ownFunction));
    EXPECT_EQ(code.AllocationBase, GetModuleHandleA(nullptr));
    EXPECT_EQ(code.State, DWORD{MEM_COMMIT});
    EXPECT_EQ(code.Type, DWORD{MEM_IMAGE});
    EXPECT_EQ(code.Protect, DWORD{PAGE_EXECUTE_READ});
    const MEMORY_BASIC_INFORMATION variable = query(&data);
    EXPECT_EQ(variable.AllocationBase, GetModuleHandleA(nullptr));
    EXPECT_EQ(ownFunction() + data, 10);

    char byHandle[MAX_PATH];
    char own[MAX_PATH];
    ASSERT_GT(GetModuleFileNameA(static_cast<HMODULE>(code.AllocationBase), byHandle, MAX_PATH), 0u);
    ASSERT_GT(GetModuleFileNameA(nullptr, own, MAX_PATH), 0u);
    EXPECT_STREQ(byHandle, own);
}

TEST(MemoryApi, OtherMemoryBelongsToNoModule) {
    const auto block = std::make_unique<char[]>(100);
    const MEMORY_BASIC_INFORMATION heap = query(block.get());
    EXPECT_EQ(heap.State, DWORD{MEM_COMMIT});
    EXPECT_EQ(heap.Type, DWORD{MEM_PRIVATE});
    EXPECT_EQ(heap.Protect, DWORD{PAGE_READWRITE});
    EXPECT_NE(heap.AllocationBase, nullptr);

    const MEMORY_BASIC_INFORMATION null = query(nullptr);
    EXPECT_EQ(null.State, DWORD{MEM_FREE});
    EXPECT_EQ(null.AllocationBase, nullptr);
    MEMORY_BASIC_INFORMATION information{};
    EXPECT_EQ(VirtualQuery(nullptr, &information, sizeof information - 1), 0u);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_LENGTH});
}

}  // namespace
