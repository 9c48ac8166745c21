#pragma once
#include <string>
#include <string_view>

namespace tools {

// What a program says while it runs. Results go to standard output; progress, prompts, warnings and errors to
// standard error. On a terminal the progress is one line drawn anew, on a pipe plain lines. Control
// characters of a text are shown and not sent (control_characters.h), so that a name cannot act on a
// terminal.
class Console {
public:
    // quiet: no status and no progress; errors and results stay. program: the name in front of errors.
    Console(std::string program, bool quiet);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // A status line (UTF-8, no line break); it stays beside the progress on a terminal.
    void status(std::string_view text);
    // Progress in per cent, 0 to 100.
    void progress(int percent);
    // Removes the progress line from a terminal; done by itself before anything else is written.
    void endProgress();

    // "name: error: text", and a hint on a line of its own.
    void error(std::string_view text, std::string_view hint = {});
    // "name: warning: text"; quiet or not.
    void warning(std::string_view text);
    // A line of standard output.
    void result(std::string_view text);

    // Asks on the terminal; true only for a clear yes. False without a terminal to ask on.
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
