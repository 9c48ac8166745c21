#pragma once
#include <optional>
#include <string>
#include <vector>

#include "winlayer/include/minwindef.h"

namespace winlayer {

// What ShellExecuteA was asked for; texts in the ANSI code page, empty for those left out.
struct ShellRequest {
    std::string operation;
    std::string file;
    std::string parameters;
    std::string directory;
    int show = 0;
};

// Opens what a program asks the shell for: a file that the host can run is started and goes on by itself,
// documents and addresses of the web go to the host's xdg-open. A test or a script has requests answered
// instead.
class Shell {
public:
    // The current machine's.
    static Shell& current();

    // From now on requests are kept and answered with this value, and nothing is started.
    void answerWith(INT_PTR result) { answer_ = result; }
    const std::vector<ShellRequest>& requests() const { return requests_; }

    // A value above 32, or what ShellExecuteA gives for the failure.
    INT_PTR execute(const ShellRequest& request);

private:
    std::optional<INT_PTR> answer_;
    std::vector<ShellRequest> requests_;
};

}  // namespace winlayer
