#pragma once
#include <chrono>
#include <initializer_list>
#include <string>
#include <vector>

// Programs from outside that tests ask for a second opinion.

struct ToolRun {
    int status =
        -1;  // exit status; 128 + the signal's number when one ended it; -1 when it could not be started
    bool timedOut = false;  // it was ended because its time was over
    std::string output;     // standard output and standard error as they came
};

// Runs a program with arguments, nothing on its standard input, until it ends or its time is over.
ToolRun runTool(const std::vector<std::string>& command,
                std::chrono::seconds limit = std::chrono::seconds(60));

// The first of these programs that is not installed; empty when all are.
std::string missingTool(std::initializer_list<const char*> programs);
// Whether the environment says that nothing may be missing (CI is set).
bool toolsAreRequired();

// At the start of a test body: without the programs the test is skipped visibly; in CI it fails.
#define REQUIRE_TOOLS(...)                                                              \
    do {                                                                                \
        if (const std::string missing = missingTool({__VA_ARGS__}); !missing.empty()) { \
            if (toolsAreRequired()) {                                                   \
                FAIL() << missing << " is not installed";                               \
            }                                                                           \
            GTEST_SKIP() << missing << " is not installed";                             \
        }                                                                               \
    } while (false)
