#pragma once
#include <windows.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

// Stands where the host's dialog-support library stands: the functions of qxdlgsup.h write down how they are
// called into one log, which a test's frame window shares, so that the order of calls and messages can be
// seen.
struct HostLog {
    std::vector<std::string> lines;
    // The frame's buttons as the calls have left them: two masks of their own, and Home.
    DWORD offered = 0;
    DWORD enabled = ~DWORD{0};
    bool home = false;
    // What message boxes answer, the first box first; IDOK when there is none left.
    std::deque<int> answers;
    // Called while a message box is up, before it answers.
    std::function<void()> duringBox;
    // Called with each status text while the frame receives it.
    std::function<void(const std::string&)> duringStatus;

    void add(const std::string& line) { lines.push_back(line); }
    // The lines since the last call.
    std::vector<std::string> take();
    // How many lines begin so.
    int count(const std::string& beginning) const;
};

extern HostLog hostLog;

// For texts with umlauts in expectations and messages.
std::string utf8(const std::string& ansi);
