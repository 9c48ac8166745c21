#pragma once
#include <deque>
#include <string>

#include "host/frame/transcript.h"
#include "host/qxdlgsup/handlers.h"

namespace host {

class Platform;

// Answers message boxes and help in place of the user and records both. A box with a single button needs no
// answer; any other takes the next queued answer, and is cancelled when there is none or when it is not one
// of its buttons.
class Answers {
public:
    Answers(Transcript& transcript, Platform& platform) : transcript_(transcript), platform_(platform) {}

    // `medium`: the state in which the diskette is put before the answer; empty for no change.
    void queue(int button, std::string medium) { queued_.push_back({button, std::move(medium)}); }
    // For QXInstallHandlers; refers to this object.
    QXHandlers handlers();

private:
    struct Queued {
        int button;
        std::string medium;
    };
    static int WINAPI onMessageBox(void* self, HWND page, const char* text, const char* caption, UINT style);
    static void WINAPI onHelp(void* self, HWND page, DWORD topic, const char* text);
    int messageBox(const char* text, const char* caption, UINT style);
    int choose(UINT style);
    void help(DWORD topic, const char* text);

    Transcript& transcript_;
    Platform& platform_;
    std::deque<Queued> queued_;
};

}  // namespace host
