#pragma once
#include <windows.h>

#include <string>
#include <vector>

// A window class whose windows write down the messages they get. One at a time.
class WindowRecorder {
public:
    explicit WindowRecorder(const char* className = "Recorder");
    ~WindowRecorder();
    WindowRecorder(const WindowRecorder&) = delete;
    WindowRecorder& operator=(const WindowRecorder&) = delete;

    // Makes a window of the class; the caller destroys it (or its parent).
    HWND create(DWORD style, const RECT& place, HWND parent = nullptr, int id = 0, DWORD exStyle = 0);

    // The names of the messages in order, as in "create size move", of those that were asked for, for one
    // window or all; forgets them.
    std::string take(const std::vector<UINT>& wanted, HWND window = nullptr);

    struct Entry {
        HWND window;
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    };
    const std::vector<Entry>& entries() const { return entries_; }
    void clear() { entries_.clear(); }

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    std::string className_;
    std::vector<Entry> entries_;
    static WindowRecorder* current;
};

// Dispatches what waits in the thread's queue.
void pumpMessages();
