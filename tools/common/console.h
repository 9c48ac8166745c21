#pragma once
#include <string>
#include <string_view>

namespace tools {

// The output of a running program. Results go to standard output; progress, prompts, warnings and errors to
// standard error. Progress is one line, redrawn, on a terminal and plain lines on a pipe. Control characters
// in texts are made visible (control_characters.h), so that a name cannot control the terminal.
class Console {
public:
    // quiet: no status and no progress, only errors and results. program: the name before errors.
    Console(std::string program, bool quiet);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // A status line (UTF-8, no line break); shown beside the progress on a terminal.
    void status(std::string_view text);
    // Progress in per cent, 0 to 100.
    void progress(int percent);
    // Removes the progress line from a terminal; done automatically before other output.
    void endProgress();

    // "name: error: text", with a hint on a line of its own.
    void error(std::string_view text, std::string_view hint = {});
    // "name: warning: text"; quiet or not.
    void warning(std::string_view text);
    // A line of standard output.
    void result(std::string_view text);

    // Asks on the terminal; true only for an explicit yes. False without a terminal.
    bool confirm(std::string_view question);

private:
    void draw();
    void report(std::string_view kind, std::string_view colour, std::string_view text);

    std::string program_;
    bool quiet_;
    bool terminal_;
    bool colour_;
    bool drawn_ = false;
    int percent_ = 0;
    std::string status_;
};

}  // namespace tools
