// For Windows itself. Every wide function called here belongs to a Windows version after XP.
#include "newwindows/second_run.h"

#include <windows.h>

#include <memory>
#include <string>

#include "newwindows/known_version.h"

namespace newwindows {

namespace {

using Handle = std::unique_ptr<void, decltype(&CloseHandle)>;

// Set for the second run, which starts no other, whatever Windows version it sees.
constexpr const char* guard = "EMDISK_SECOND_RUN";

bool isSecondRun() {
    return GetEnvironmentVariableA(guard, nullptr, 0) != 0;
}

// Windows reads the compatibility mode from the environment of the starting process. It must not ask for an
// administrator, as it may for old programs: the second run has the rights of this one, whose console it
// shares.
bool prepareEnvironment() {
    return SetEnvironmentVariableA(guard, "1") &&
           SetEnvironmentVariableA("__COMPAT_LAYER", "RunAsInvoker WinXPSP3");
}

std::wstring ownFile() {
    constexpr DWORD longest = 32768;  // characters of a path, including the zero
    std::wstring file(longest, L'\0');
    file.resize(GetModuleFileNameW(nullptr, file.data(), longest));
    return file;
}

// With the full file name and the unchanged command line, no search and no quoting is needed.
Handle startAgain() {
    STARTUPINFOA own{};
    GetStartupInfoA(&own);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = own.dwFlags & STARTF_USESHOWWINDOW;
    start.wShowWindow = own.wShowWindow;
    std::wstring commandLine = GetCommandLineW();
    PROCESS_INFORMATION second{};
    if (!CreateProcessW(ownFile().c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &start, &second)) {
        return {nullptr, CloseHandle};
    }
    CloseHandle(second.hThread);
    return {second.hProcess, CloseHandle};
}

// Both runs receive Control-C; the second handles it. When the console is closed, Windows ends a process
// whose handler returns; this one has to end with the second.
BOOL WINAPI leaveToSecondRun(DWORD event) {
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
}

int exitCodeOf(HANDLE process) {
    WaitForSingleObject(process, INFINITE);
    DWORD code = 1;
    GetExitCodeProcess(process, &code);
    return static_cast<int>(code);
}

}  // namespace

std::optional<int> runAgainAsXp() {
    if (runsOnKnownWindows() || isSecondRun() || !prepareEnvironment()) return {};
    SetConsoleCtrlHandler(leaveToSecondRun, TRUE);
    if (const Handle second = startAgain()) return exitCodeOf(second.get());
    SetConsoleCtrlHandler(leaveToSecondRun, FALSE);
    return {};
}

}  // namespace newwindows
