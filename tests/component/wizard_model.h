#pragma once
#include <windows.h>

#include <string>

#include "component/CDlgFloppy.h"

// What can be seen of the wizard. Buttons outlast the component, which only sets them.
struct WizardFace {
    int page = -1;  // -1: there is no component
    DWORD offered = 0;
    DWORD enabled = ~DWORD{0};
    bool home = false;
    int option = 0;  // the checked one and the hint's number; 0 before the options page is made
    int hint = 0;
    int text = 0;  // of the emergency-disk page; 0 before it is made
    PageState state = PageState::Ready;

    bool operator==(const WizardFace&) const = default;
    std::string describe() const;
};

// A plain model of the wizard: what it is to show after each thing that happens to it. It knows nothing of
// diskettes; how an attempt goes it takes from what the attempt tells.
class WizardModel {
public:
    const WizardFace& face() const { return face_; }
    int leaves() const { return leaves_; }  // how often the host was asked to leave
    // The first thing that an attempt has told but never could; empty when all was in order.
    const std::string& fault() const { return fault_; }

    void create();
    void destroy();
    // A command reaches the window of a page.
    void command(int page, WORD command);
    void choose(int option);
    void activate(int page);
    // The end of the program was posted; or its loop has seen it.
    void quit(bool waits) { quitWaits_ = waits; }

    bool hasPage(int page) const;
    // Whether an attempt of this component runs, whether it was asked to end, and whether the last one made a
    // disk.
    bool attempting() const { return phase_ != Phase::none; }
    bool stopped() const { return stopped_; }
    bool lastMade() const { return lastMade_; }

    // What an attempt tells, in order; each is called as it begins.
    void statusLine(const std::string& text);
    void errorBox(const std::string& caption);
    void retryBox();
    void retryAnswered(int answer);
    // The handling of the command that began an attempt has returned.
    void attemptReturned();

private:
    enum class Phase { none, starting, begun, searching, found, working, checking, ending };
    enum class Last { quiet, status, generalError, driveError, retry };

    void offer(DWORD mask, bool home);
    void show(int page);
    void nextOnFloppy();
    void leaveFloppy(WORD command);
    void stop(WORD command);
    void settle();
    void conclude();

    WizardFace face_;
    int leaves_ = 0;
    std::string fault_;
    bool quitWaits_ = false;
    int attemptsOnStack_ = 0;
    Phase phase_ = Phase::none;
    Last last_ = Last::quiet;
    int answer_ = 0;
    bool stopped_ = false;
    bool declined_ = false;
    bool lastMade_ = false;
    WORD pending_ = 0;
};
