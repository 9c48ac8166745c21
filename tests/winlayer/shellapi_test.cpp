#include <windows.h>

#include <shellapi.h>

#include <gtest/gtest.h>

// Run against the layer and against Windows itself: nothing here is there to be opened.

namespace {

INT_PTR open(const char* file, const char* directory = nullptr) {
    return reinterpret_cast<INT_PTR>(ShellExecuteA(nullptr, "open", file, nullptr, directory, SW_SHOW));
}

TEST(ShellApi, WhatIsMissingIsNotFound) {
    EXPECT_EQ(open("no such program.exe"), SE_ERR_FNF);
    EXPECT_EQ(open("no such program.exe", "C:\\"), SE_ERR_FNF);
    EXPECT_EQ(open("C:\\no such program.exe"), SE_ERR_FNF);
    EXPECT_EQ(open("no such program"), SE_ERR_FNF);
}

}  // namespace
