#include <windows.h>

#include <shellapi.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "support/host_directory_machine.h"
#include "winlayer/machine.h"

namespace {

using namespace winlayer;
namespace fs = std::filesystem;

INT_PTR open(const char* file, const char* parameters = nullptr, const char* directory = nullptr,
             const char* operation = "open") {
    return reinterpret_cast<INT_PTR>(ShellExecuteA(nullptr, operation, file, parameters, directory, SW_SHOW));
}

// What a started program wrote; waits for its last line, which is "end".
std::string writtenTo(const fs::path& file) {
    std::string text;
    for (int tries = 0; tries < 500 && !text.ends_with("end\n"); ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        std::ifstream stream(file);
        text.assign(std::istreambuf_iterator<char>(stream), {});
    }
    return text;
}

class ShellMachine : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(folder / "suite");
        machine->drives.mountFolder('D', folder.path());
        const char* const path = std::getenv("PATH");
        hostPath = path != nullptr ? path : "";
    }
    void TearDown() override { ::setenv("PATH", hostPath.c_str(), 1); }

    // A program that writes its folder and its arguments into a file of its own name with ".out".
    fs::path script(const std::string& name) {
        const fs::path file = folder / name;
        std::ofstream(file) << "#!/bin/sh\n{ pwd; for a in \"$@\"; do echo \"<$a>\"; done; echo end; } > \""
                            << file.string() << ".out\"\n";
        fs::permissions(file, fs::perms::owner_all);
        return file.string() + ".out";
    }

    ScopedMachine machine;
    const HostDirectory folder;
    std::string hostPath;
};

TEST_F(ShellMachine, AProgramIsStartedInItsDirectory) {
    const fs::path output = script("suite/MwWin.exe");
    EXPECT_GT(open("mwwin.exe", " one \"two words\"  \"\" ", "D:\\suite"), 32);
    EXPECT_EQ(writtenTo(output), (folder / "suite").string() + "\n<one>\n<two words>\n<>\nend\n");
    fs::remove(output);
    ASSERT_EQ(machine->drives.setCurrentDirectory("D:\\"), 0u);
    EXPECT_GT(open("suite\\MwWin"), 32);
    EXPECT_EQ(writtenTo(output), folder.path().string() + "\nend\n");
}

TEST_F(ShellMachine, WhatCannotBeOpenedSaysWhy) {
    script("locked.exe");
    fs::permissions(folder / "locked.exe", fs::perms::owner_read);
    std::ofstream(folder / "text.exe") << "no program";
    fs::permissions(folder / "text.exe", fs::perms::owner_all);
    std::ofstream(folder / "letter.txt") << "Dear ...";
    ::setenv("PATH", "", 1);
    struct Row {
        const char* file;
        INT_PTR result;
        DWORD error;
    };
    const Row rows[] = {{"D:\\missing.exe", SE_ERR_FNF, ERROR_FILE_NOT_FOUND},
                        {"no such program.exe", SE_ERR_FNF, ERROR_FILE_NOT_FOUND},
                        {"no such program", SE_ERR_FNF, ERROR_FILE_NOT_FOUND},
                        {"D:\\nowhere\\missing.exe", SE_ERR_PNF, ERROR_PATH_NOT_FOUND},
                        {"X:\\missing.exe", SE_ERR_PNF, ERROR_PATH_NOT_FOUND},
                        {"D:\\locked.exe", SE_ERR_ACCESSDENIED, ERROR_ACCESS_DENIED},
                        {"D:\\text.exe", ERROR_BAD_FORMAT, ERROR_BAD_FORMAT},
                        {"D:\\letter.txt", SE_ERR_NOASSOC, ERROR_NO_ASSOCIATION},
                        {"http://www.quarvel.example/", SE_ERR_NOASSOC, ERROR_NO_ASSOCIATION},
                        {"", SE_ERR_FNF, ERROR_FILE_NOT_FOUND},
                        {nullptr, SE_ERR_FNF, ERROR_FILE_NOT_FOUND}};
    for (const Row& row : rows) {
        SetLastError(0);
        EXPECT_EQ(open(row.file), row.result) << (row.file != nullptr ? row.file : "null");
        EXPECT_EQ(GetLastError(), row.error);
    }
    EXPECT_EQ(open("no such program.exe", nullptr, "D:\\"), SE_ERR_FNF);
    EXPECT_EQ(open("D:\\text.exe", nullptr, nullptr, "print"), SE_ERR_NOASSOC);
    machine->gate.failFunction("ShellExecuteA", ERROR_ACCESS_DENIED);
    EXPECT_EQ(open("D:\\text.exe"), SE_ERR_ACCESSDENIED);
}

TEST_F(ShellMachine, TheHostOpensAddressesAndDocuments) {
    const fs::path output = script("xdg-open");
    std::ofstream(folder / "letter.txt") << "Dear ...";
    ::setenv("PATH", (folder.path().string() + ":/usr/bin:/bin").c_str(), 1);
    EXPECT_GT(open("http://www.quarvel.example/mendwell/"), 32);
    EXPECT_NE(writtenTo(output).find("<http://www.quarvel.example/mendwell/>\nend\n"), std::string::npos);
    fs::remove(output);
    EXPECT_GT(open("D:\\LETTER.TXT", nullptr, nullptr, nullptr), 32);
    EXPECT_NE(writtenTo(output).find("<" + (folder / "letter.txt").string() + ">\nend\n"), std::string::npos);
}

TEST_F(ShellMachine, RequestsAreKeptAndAnsweredInstead) {
    const fs::path output = script("MwWin.exe");
    EXPECT_TRUE(machine->shell.requests().empty());
    machine->shell.answerWith(SE_ERR_NOASSOC);
    EXPECT_EQ(open("MwWin.exe", nullptr, "D:\\"), SE_ERR_NOASSOC);
    machine->shell.answerWith(33);
    EXPECT_EQ(open("http://www.quarvel.example/"), 33);
    ASSERT_EQ(machine->shell.requests().size(), 2u);
    const ShellRequest& first = machine->shell.requests()[0];
    EXPECT_EQ(first.operation, "open");
    EXPECT_EQ(first.file, "MwWin.exe");
    EXPECT_EQ(first.parameters, "");
    EXPECT_EQ(first.directory, "D:\\");
    EXPECT_EQ(first.show, SW_SHOW);
    EXPECT_FALSE(fs::exists(output));
}

}  // namespace
