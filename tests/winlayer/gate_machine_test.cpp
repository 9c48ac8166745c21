#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "winlayer/machine.h"

namespace {

using Calls = std::vector<std::string>;

TEST(Gate, recordsEveryCallInOrder) {
    winlayer::ScopedMachine machine;
    GetLogicalDrives();
    machine->gate.startRecording();
    CRITICAL_SECTION section;
    InitializeCriticalSection(&section);
    EnterCriticalSection(&section);
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    GetLastError();
    SetErrorMode(0);
    LeaveCriticalSection(&section);
    CloseHandle(event);
    EXPECT_EQ(machine->gate.calls(),
              (Calls{"InitializeCriticalSection", "EnterCriticalSection", "CreateEventA", "SetErrorMode",
                     "LeaveCriticalSection", "CloseHandle"}));
    EXPECT_EQ(machine->gate.fallibleCalls(), 2u);
    machine->gate.reset();
    GetLogicalDrives();
    EXPECT_TRUE(machine->gate.calls().empty());
}

// Fails each call of a sequence in turn; the others of the sequence go through.
TEST(Gate, failsTheCallWhoseTurnItIs) {
    winlayer::ScopedMachine machine;
    const auto run = [&] {
        std::string failed;
        failed += GetLogicalDrives() == 0 ? "drives " : "";
        failed += GetFileAttributesA("C:\\") == INVALID_FILE_ATTRIBUTES ? "attributes " : "";
        SetErrorMode(0);
        failed += CreateDirectoryA("C:\\x", nullptr) == 0 ? "create " : "";
        failed += RemoveDirectoryA("C:\\x") == 0 ? "remove " : "";
        return failed;
    };
    machine->gate.startRecording();
    EXPECT_EQ(run(), "");
    EXPECT_EQ(machine->gate.fallibleCalls(), 4u);
    const Calls expected = {"drives ", "attributes ", "create remove ", "remove ", ""};
    for (std::size_t k = 0; k < expected.size(); ++k) {
        machine->gate.reset();
        machine->gate.failCall(k, ERROR_CRC);
        EXPECT_EQ(run(), expected[k]);
        EXPECT_EQ(machine->gate.failedCalls(), k < 4 ? 1u : 0u);
        machine->gate.reset();
        RemoveDirectoryA("C:\\x");
    }
}

TEST(Gate, failsTheNamedFunctionAndSetsTheError) {
    winlayer::ScopedMachine machine;
    machine->gate.failFunction("GetFileAttributesA", ERROR_CRC, 1, 2);
    machine->gate.failFunction("GetFileAttributesA", ERROR_NOT_READY, 4);
    const std::vector<DWORD> expected = {0, ERROR_CRC, ERROR_CRC, 0, ERROR_NOT_READY, ERROR_NOT_READY};
    for (const DWORD error : expected) {
        SetLastError(0);
        EXPECT_EQ(GetFileAttributesA("C:\\") == INVALID_FILE_ATTRIBUTES, error != 0);
        EXPECT_EQ(GetLastError(), error);
        EXPECT_NE(GetLogicalDrives(), DWORD{0});
    }
    EXPECT_EQ(machine->gate.failedCalls(), 4u);
}

// What a failed close leaves could never be closed.
TEST(Gate, takesAHandleAwayEvenIfItFailsTheClose) {
    winlayer::ScopedMachine machine;
    machine->gate.failFunction("CloseHandle", ERROR_INVALID_HANDLE);
    machine->gate.failFunction("FindClose", ERROR_INVALID_HANDLE);
    WIN32_FIND_DATAA data;
    const HANDLE search = FindFirstFileA("C:\\*", &data);
    const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    EXPECT_EQ(machine->handles.openCount(), 2u);
    EXPECT_FALSE(CloseHandle(event));
    EXPECT_FALSE(FindClose(search));
    EXPECT_EQ(machine->handles.openCount(), 0u);
}

TEST(Gate, belongsToItsMachine) {
    winlayer::ScopedMachine outer;
    outer->gate.failFunction("GetLogicalDrives", ERROR_CRC);
    {
        winlayer::ScopedMachine inner;
        EXPECT_NE(GetLogicalDrives(), DWORD{0});
        inner->gate.failFunction("GetLogicalDrives", ERROR_CRC);
    }
    EXPECT_EQ(GetLogicalDrives(), DWORD{0});
    EXPECT_EQ(outer->gate.failedCalls(), 1u);
    outer->gate.reset();
    EXPECT_EQ(winlayer::Gate::armed, 0) << "a machine that goes takes its plan along";
}

}  // namespace
