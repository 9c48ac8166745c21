#include "wizard_model.h"

#include <cstdio>
#include <utility>

#include "component/ComponentUI.h"
#include "component/resources/resource.h"
#include "component/wizard_protocol.h"

namespace {

constexpr int product = ComponentUI::productPage;
constexpr int options = ComponentUI::optionsPage;
constexpr int floppy = ComponentUI::floppyPage;

constexpr WORD proceed = 32868;  // what the emergency-disk page sends itself on Next

constexpr DWORD atRest = 0x21A;
constexpr DWORD whileMaking = 0x1A;
constexpr DWORD whenDone = 0x282;

}  // namespace

std::string WizardFace::describe() const {
    char line[160];
    std::snprintf(line, sizeof line,
                  "page %d, offered %X, enabled %X, home %d, option %d, hint %d, text %d, state %d", page,
                  static_cast<unsigned>(offered), static_cast<unsigned>(enabled), home, option, hint, text,
                  static_cast<int>(state));
    return line;
}

bool WizardModel::hasPage(int page) const {
    return face_.page >= 0 && (page == product || (page == options ? face_.option : face_.text) != 0);
}

void WizardModel::offer(DWORD mask, bool home) {
    face_.offered = mask;
    face_.home = home;
}

void WizardModel::create() {
    face_.page = product;
    offer(0x212, true);
}

void WizardModel::destroy() {
    if (attempting()) {
        offer(whenDone, true);
        face_.enabled |= whenDone | atRest;
    }
    const WizardFace before = std::exchange(face_, {});
    face_.enabled = before.enabled;
    offer(before.offered, before.home);
    phase_ = Phase::none;
    lastMade_ = false;
}

void WizardModel::show(int page) {
    if (page == options && face_.option == 0) {
        face_.option = IDC_START_PRODUCT;
        face_.hint = IDS_HINT_START;
    }
    face_.page = page;
    activate(page);
}

void WizardModel::activate(int page) {
    offer(page == product ? 0x212 : atRest, true);
    if (page == floppy) {
        face_.text = IDS_INSERT_DISK;
        face_.state = PageState::Ready;
    }
}

void WizardModel::choose(int option) {
    face_.option = option;
    face_.hint = option == IDC_START_PRODUCT ? IDS_HINT_START
                 : option == IDC_MAKE_DISK   ? IDS_HINT_MAKE
                                             : IDS_HINT_BUY;
}

void WizardModel::command(int page, WORD command) {
    if (page == floppy) {
        const bool leaves = command == wizard::backCommand || command == wizard::finishCommand ||
                            command == wizard::cancelCommand;
        if (leaves && attempting()) {
            stop(command);
        } else if (command == wizard::nextCommand || command == proceed) {
            nextOnFloppy();
        } else if (command == wizard::backCommand && face_.state == PageState::Made) {
            face_.state = PageState::Ready;
            nextOnFloppy();
        } else if (leaves) {
            leaveFloppy(command);
        }
        return;
    }
    if (command == wizard::nextCommand) {
        show(page == product ? options : face_.option == IDC_MAKE_DISK ? floppy : options);
    } else if (command == wizard::backCommand && page == options) {
        show(product);
    } else if (command == wizard::backCommand || command == wizard::cancelCommand) {
        ++leaves_;
    }
}

void WizardModel::nextOnFloppy() {
    if (face_.state == PageState::Made) {
        face_.text = IDS_DISK_MADE;
        offer(whenDone, false);
    } else if (face_.state == PageState::Ready && attemptsOnStack_ == 0) {
        ++attemptsOnStack_;
        phase_ = Phase::starting;
        last_ = Last::quiet;
        stopped_ = false;
        declined_ = false;
        lastMade_ = false;
        pending_ = 0;
    }
}

void WizardModel::leaveFloppy(WORD command) {
    if (command == wizard::cancelCommand) {
        ++leaves_;
    } else {
        show(options);
    }
}

void WizardModel::stop(WORD command) {
    stopped_ = true;
    pending_ = command;
}

// Brings the page to where it is when the attempt next tells something: after the messages that came with
// the last status line or box were handled.
void WizardModel::settle() {
    const Last last = std::exchange(last_, Last::quiet);
    if ((last == Last::status && quitWaits_) || (last != Last::quiet && face_.page != floppy)) {
        stop(0);
    }
    if (last == Last::driveError || (last == Last::generalError && face_.page != floppy)) {
        face_.state = PageState::Ready;
    } else if (last == Last::generalError && face_.state != PageState::Ready) {
        activate(floppy);
    } else if (last == Last::retry) {
        declined_ = answer_ != IDOK;
        if (!declined_ && !stopped_) {
            phase_ = Phase::searching;
            face_.text = IDS_MAKING_DISK;
        }
    }
    if (phase_ == Phase::begun) {
        phase_ = Phase::searching;
        offer(whileMaking, false);
        face_.enabled &= ~whileMaking;
        face_.text = IDS_MAKING_DISK;
    } else if (phase_ == Phase::found && !stopped_) {
        phase_ = Phase::working;
        face_.state = PageState::Making;
    }
}

void WizardModel::statusLine(const std::string& text) {
    settle();
    if (!text.empty()) {
        last_ = Last::status;
        if (phase_ == Phase::starting || phase_ == Phase::ending) {
            fault_ = "a status line outside the attempt: " + text;
        } else if (text.ends_with(" gefunden")) {
            phase_ = Phase::found;
        } else if (text == "Die Diskette wird geprüft...") {
            phase_ = Phase::checking;
        }
    } else if (phase_ == Phase::starting) {
        phase_ = Phase::begun;
    } else {
        conclude();
        phase_ = Phase::ending;
    }
}

void WizardModel::conclude() {
    if (stopped_ || declined_) {
        face_.state = PageState::Ready;
        face_.text = IDS_STOPPED;
    } else if (phase_ == Phase::checking) {
        lastMade_ = true;
        face_.state = PageState::Made;
        face_.text = IDS_DISK_MADE;
        offer(whenDone, false);
        face_.enabled |= wizard::nextButton;
    } else if (phase_ != Phase::searching) {
        fault_ = "a disk failed and nobody was asked to try again";
    }
}

void WizardModel::errorBox(const std::string& caption) {
    settle();
    last_ = caption == "Systemfehler" ? Last::generalError : Last::driveError;
}

void WizardModel::retryBox() {
    settle();
    if ((phase_ != Phase::working && phase_ != Phase::checking) || stopped_) {
        fault_ = "a question to try again without a failed disk";
    }
    last_ = Last::retry;
}

void WizardModel::retryAnswered(int answer) {
    answer_ = answer;
}

void WizardModel::attemptReturned() {
    --attemptsOnStack_;
    if (!attempting()) {
        return;  // the component has ended meanwhile
    }
    if (phase_ != Phase::ending) {
        fault_ = "an attempt that did not clear the frame's status line";
    }
    phase_ = Phase::none;
    offer(whenDone, true);
    face_.enabled |= whenDone | atRest;
    if (face_.page != floppy) {
        activate(face_.page);
    } else if (pending_ != 0) {
        leaveFloppy(pending_);
    }
}
