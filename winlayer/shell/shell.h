#pragma once
#include <optional>
#include <string>
#include <vector>

#include "winlayer/include/minwindef.h"

namespace winlayer {

// A ShellExecuteA request; texts in the ANSI code page, omitted ones empty.
struct ShellRequest {
    std::string operation;
    std::string file;
    std::string parameters;
    std::string directory;
    int show = 0;
};

// Opens what a program asks the shell for: starts a host program, which then runs on its own; passes
// documents and web addresses to the host's xdg-open. A test or a script can have requests answered instead.
class Shell {
public:
    // The current machine's.
    static Shell& current();

    // From now on records requests and answers them with this value; nothing is started.
    void answerWith(INT_PTR result) { answer_ = result; }
    const std::vector<ShellRequest>& requests() const { return requests_; }

    // A value above 32, or ShellExecuteA's error value.
    INT_PTR execute(const ShellRequest& request);

private:
    std::optional<INT_PTR> answer_;
    std::vector<ShellRequest> requests_;
};

}  // namespace winlayer
