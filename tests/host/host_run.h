#pragma once
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

#include "support/temp_folder_machine.h"

struct Ended {
    int code;
    std::string text;  // both of its streams
};

inline Ended runProgram(const std::string& command) {
    std::FILE* const pipe = popen((BUILD_DIRECTORY "/" + command + " 2>&1").c_str(), "r");
    Ended ended{-1, {}};
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
        ended.text.append(buffer.data(), count);
    }
    const int status = pclose(pipe);
    if (WIFEXITED(status)) ended.code = WEXITSTATUS(status);
    return ended;
}

// The program `host` with settings of its own for each test case.
class HostRun : public testing::Test {
protected:
    Ended run(const std::string& arguments) const {
        return runProgram("host/host --state '" + hostFolder() + "' " + arguments);
    }
    std::string hostFolder() const { return hostPath(folder_).string(); }

private:
    TempFolder folder_;
};
