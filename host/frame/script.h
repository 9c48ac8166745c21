#pragma once
#include <windows.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/protocol.h"

namespace host {

// A script for the frame: steps separated by semicolons, as in "next; select 1012; next; answer ok".
namespace step {

struct Press {  // next, back, finish, cancel, help, home
    Button button;
};
struct Select {  // select ID: clicks a control of the page
    int id;
};
// answer ok|cancel [STATE]: the answer to a later message box, which first sets the diskette's state.
struct Answer {
    int button;  // IDOK ...
    std::string medium;
};
struct Key {  // key NAME: Tab, Enter, Escape, Space, Up, Down, Left, Right, Alt+LETTER
    UINT message;
    WPARAM key;
    bool released;  // a release follows the press
};
struct Wait {};  // handles all waiting messages
struct Resize {  // resize W H: the frame's size in pixels
    int width;
    int height;
};
struct Medium {  // medium STATE: the state of the diskette
    std::string state;
};

}  // namespace step

struct Step {
    std::string text;  // as written, without surrounding blanks
    std::variant<step::Press, step::Select, step::Answer, step::Key, step::Wait, step::Resize, step::Medium>
        action;
};

// Parses a script; throws Failure (usage) that names the step that is invalid. Empty steps are skipped.
std::vector<Step> parseScript(const std::string& script);

// The answers in scripts and transcripts by name; null or empty for others.
const char* answerName(int button);
std::optional<int> answerButton(const std::string& name);
// For the program's help: one line per kind of step.
const char* scriptHelp();

}  // namespace host
