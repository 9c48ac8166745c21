// Making the disk: one attempt with its retries, and the reports of the disk maker meanwhile.
#include <algorithm>
#include <string>
#include <utility>

#include "CBSTR.h"
#include "CDlgFloppy.h"
#include "ansi_literal.h"
#include "qxdlgsup.h"
#include "resources/resource.h"
#include "wizard_protocol.h"

using namespace UTILS::literals;

namespace {

constexpr DWORD settlingTime = 1000;  // ms between the drive's steps
constexpr DWORD readingTime = 500;    // ms to read a status line

constexpr const char* driveErrorText =
    "Fehler beim Zugriff auf das Diskettenlaufwerk.\n"
    "Vergewissern Sie sich, dass eine Diskette eingelegt ist und der Schreibschutz entfernt ist.";

bool tellsOfTheDrive(const std::string& text) {
    return text == "Fehler beim Öffnen des Laufwerks"_ansi || text == "Fehler beim Laufwerkzugriff";
}

// Runs one step of the disk maker, which reports failure as 0; an exception from its hooks is a failure, too.
template <class Step>
bool done(Step step) {
    try {
        return step() == 1;
    } catch (...) {
        return false;
    }
}

}  // namespace

void CDlgFloppy::MakeAttempt() {
    if (atWork_ != nullptr || closed_) {
        return;
    }
    atWork_ = this;
    BeginAttempt();
    try {
        while (TryDisk() == Outcome::again) {
        }
    } catch (...) {
        GiveUp();  // no memory for the prompt; the frame still gets its buttons back
    }
    EndAttempt();
    ForgetStop();
    atWork_ = nullptr;
    const WORD command = std::exchange(pendingCommand_, WORD{0});
    if (closed_) {
        ClearDiskFiles();
    } else if (!IsCurrent()) {
        ActivateCurrentPage();
    } else if (command != 0) {
        Leave(command);
    }
}

void CDlgFloppy::BeginAttempt() const {
    TellFrame(wizard::progressRangeMessage, MAKELPARAM(0, progressEnd));
    TellFrame(wizard::progressPositionMessage, 0);
    TellFrame(wizard::statusTextMessage, reinterpret_cast<LPARAM>(""));
    if (closed_) {
        return;
    }
    QXSetWizButtons(Window(), wizard::buttonsWhileMaking);
    QXEnableWizButtons(Window(), 0, wizard::buttonsWhileMaking);
    QXEnableHomeButton(Window(), FALSE);
}

void CDlgFloppy::EndAttempt() const {
    TellFrame(wizard::progressPositionMessage, 0);
    TellFrame(wizard::statusTextMessage, reinterpret_cast<LPARAM>(""));
    TellFrame(wizard::progressRangeMessage, 0);
    if (!closed_) {
        ReturnButtons();
    }
}

void CDlgFloppy::ReturnButtons() const {
    QXSetWizButtons(Window(), wizard::buttonsWhenDone);
    QXEnableWizButtons(Window(), wizard::buttonsWhenDone, 0);
    QXEnableWizButtons(Window(), wizard::buttonsAtRest, 0);
    QXEnableHomeButton(Window(), TRUE);
}

CDlgFloppy::Outcome CDlgFloppy::TryDisk() {
    progressPos_ = 0;
    TellFrame(wizard::progressPositionMessage, 0);
    ShowText(IDS_MAKING_DISK);
    if (stopped_) {
        return GiveUp();
    }
    const bool found = done([this] { return FindFloppyDrive(); });
    if (stopped_) {
        return GiveUp();
    }
    if (!found) {
        return Outcome::ended;
    }
    ::Sleep(settlingTime);
    state_ = PageState::Making;
    if (done([this] { return MakeDisk(); }) && !stopped_ && DiskIsSound()) {
        state_ = PageState::Made;
        Press(wizard::nextCommand);
        QXEnableWizButtons(Window(), wizard::nextButton, 0);
        return Outcome::ended;
    }
    if (stopped_) {
        return GiveUp();
    }
    ::Sleep(settlingTime);
    return AskForRetry() ? Outcome::again : GiveUp();
}

// The disk maker does not verify everything it writes, and a drive may lose data.
bool CDlgFloppy::DiskIsSound() {
    MoveSlider(1, 0);
    UPDATE_WINDOW("Die Diskette wird geprüft..."_ansi, 1);
    return done([this] { return VerifyDisk([this](int percent) { return GoOnVerifying(percent); }); }) &&
           !stopped_;
}

bool CDlgFloppy::GoOnVerifying(int percent) {
    if (percent != progressPos_) {
        MoveSlider(1, percent);
    }
    PumpMessages();
    return !stopped_;
}

CDlgFloppy::Outcome CDlgFloppy::GiveUp() {
    if (!closed_) {
        ShowText(IDS_STOPPED);
        state_ = PageState::Ready;
    }
    return Outcome::ended;
}

bool CDlgFloppy::AskForRetry() {
    std::string drive = GetDriveRoot().c_str();
    if (drive.size() == 3 && drive[2] == '\\') {
        drive.pop_back();
    }
    CBSTR pattern;
    pattern.LoadString(Module(), IDS_RETRY, 256);
    std::string text = pattern.Text();
    if (const auto place = text.find("%s"); place != std::string::npos) {
        text.replace(place, 2, drive);
    }
    constexpr std::size_t longest = 255;
    text.resize(std::min(text.size(), longest));
    CBSTR caption;
    caption.Format("\\@");
    const int answer = QXMessageBox(Window(), text.c_str(), caption.Text(), MB_OKCANCEL);
    StopIfNotShown();
    return answer == IDOK && !stopped_;
}

// The running step ends when it next checks the cancel event, the attempt when it next checks stopped_.
void CDlgFloppy::Stop(WORD command) {
    stopped_ = true;
    pendingCommand_ = command;
    SendCancelCommand();
}

// Called after messages were dispatched: one of them may have switched to another page.
void CDlgFloppy::StopIfNotShown() {
    if (IsAttempting() && !closed_ && !IsCurrent()) {
        Stop(0);
    }
}

// A cancel that came too late for this attempt must not end the next one.
void CDlgFloppy::ForgetStop() {
    CheckForCancelCommand();
    ResetCancelState();
    stopped_ = false;
}

void CDlgFloppy::GET_MESSAGE_WND(HWND& window) {
    window = messageWindow_;
}

void CDlgFloppy::UPDATE_WINDOW(const char* text, int pause) {
    if (closed_) {
        return;
    }
    CBSTR status(text);
    TellFrame(wizard::statusTextMessage, reinterpret_cast<LPARAM>(status.Text()));
    PumpMessages();
    if (pause != 0 && !stopped_) {
        ::Sleep(readingTime);
    }
}

void CDlgFloppy::PumpMessages() {
    MSG message;
    while (!closed_ && ::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            // Meant for the loop to which the attempt has to return.
            ::PostQuitMessage(static_cast<int>(message.wParam));
            Stop(0);
            return;
        }
        ::TranslateMessage(&message);
        ::DispatchMessageA(&message);
    }
    StopIfNotShown();
}

void CDlgFloppy::MoveSlider(int absolute, int value) {
    if (closed_) {
        return;
    }
    const LONG position = absolute != 0 ? value : progressPos_ + (value != 0 ? value : progressStep_);
    TellFrame(wizard::progressPositionMessage, position);
    progressPos_ = position;
}

void CDlgFloppy::SHOW_ERROR(int, int kind, const char* text) {
    if (closed_) {
        return;
    }
    const char* shown = text == nullptr ? "" : text;
    switch (kind) {
        case generalError:
            ShowErrorBox(shown, "Systemfehler");
            if (state_ != PageState::Ready) {
                state_ = PageState::Failed;
                Press(wizard::nextCommand);
            }
            break;
        case driveError:
            if (tellsOfTheDrive(shown)) {
                ShowErrorBox(driveErrorText, "Laufwerkfehler");
            } else {
                ShowErrorBox(shown, "Fehler");
            }
            state_ = PageState::Ready;
            break;
        case unexpectedError:
            ShowErrorBox("Ein unbekannter Systemfehler ist aufgetreten.", "Systemfehler");
            state_ = PageState::Failed;
            Press(wizard::nextCommand);
            break;
        default:
            break;
    }
}

void CDlgFloppy::ShowErrorBox(const char* text, const char* caption) {
    QXMessageBox(messageWindow_, text, caption, MB_ICONEXCLAMATION);
    StopIfNotShown();
}
