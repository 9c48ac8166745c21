// A random user before the wizard, and a host that does what no host should: presses, switches, closes and
// makes the component anew, at rest and from within the message loops of an attempt, with good and bad
// diskettes. After each step the wizard is compared with a plain model.
#include <gtest/gtest.h>

#include <deque>
#include <random>

#include "component/entry_points.h"
#include "component/resources/resource.h"
#include "support/files.h"
#include "wizard_fixture.h"
#include "wizard_machine.h"
#include "wizard_model.h"

namespace {

using winlayer::WindowsVersion;

constexpr int steps = 3000;
constexpr std::size_t oldStepsKept = 40;

constexpr WORD commands[] = {
    wizard::nextCommand,   wizard::nextCommand,   wizard::nextCommand, wizard::backCommand,
    wizard::finishCommand, wizard::cancelCommand, wizard::helpCommand, 32868};
constexpr int radioButtons[] = {IDC_START_PRODUCT, IDC_MAKE_DISK, IDC_MAKE_DISK, IDC_BUY_PRODUCT};

enum class Medium { good, unlucky, hopeless };

class RandomWalk : private WizardMachine,
                   public WizardTest,
                   public testing::WithParamInterface<WindowsVersion> {
protected:
    RandomWalk() : WizardMachine(GetParam()) {
        drive_ = pc.machine().drives.find('A')->files;
        pc.machine().shell.answerWith(33);
        model_.create();
        hostLog.duringStatus = [this](const std::string& text) { onStatus(text); };
        hostLog.duringBox = [this] { onBox(); };
        for (int id = IDS_PRODUCT_NAME; id <= IDS_STOPPED; ++id) {
            char text[1024] = {};
            LoadStringA(GetModuleHandleA(nullptr), static_cast<UINT>(id), text, sizeof text);
            texts_[utf8(text)] = id;
        }
    }
    ~RandomWalk() override {
        hostLog.duringStatus = nullptr;
        hostLog.duringBox = nullptr;
    }

    void step() {
        if (model_.face().page < 0 || oneIn(60)) {
            emptyQueue();  // what was posted would be lost with the windows
            destroyOrCreate();
        } else if (oneIn(25)) {
            changeMedium(true);
        } else {
            act(false);
        }
        if (!oneIn(4)) {
            emptyQueue();
            expectEqual(model_.leaves(), leaves_, "requests to leave");
        }
        compare("after the step");
    }

    // Takes the wizard away and looks for what it has left.
    void end() {
        if (ui != nullptr) {
            destroy();
        }
        emptyQueue();
        hostBroker.Stop();
        const auto& windows = pc.machine().windows;
        expectEqual(windows.count(), std::size_t{1}, "windows, the frame alone");
        expectEqual(windows.contextCount(), std::size_t{0}, "device contexts");
        expectEqual(pc.machine().graphics.count(), std::size_t{0}, "bitmaps and other drawing objects");
        expectEqual(pc.machine().handles.openCount(), std::size_t{1}, "handles, the ready event alone");
        expectEqual(pc.machine().errorMode, UINT{0}, "error mode");
        expectEqual(host->liveObjects, LONG{0}, "objects of the host");
        EXPECT_EQ(GetModuleHandleA("RICHED32.DLL"), nullptr);
    }

    std::string trail() const {
        std::string text;
        for (const std::string& step : trail_) text += step + "\n";
        return text;
    }
    void restart() {
        open();
        note("create");
        model_.create();
    }
    int madeDisks() const { return madeDisks_; }
    int stoppedAttempts() const { return stoppedAttempts_; }
    int endedWithin() const { return endedWithin_; }

private:
    unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
    bool oneIn(unsigned n) { return below(n) == 0; }

    void note(const std::string& step) {
        trail_.push_back(std::string(2 * static_cast<std::size_t>(depth_), ' ') + step);
        if (trail_.size() > oldStepsKept) trail_.pop_front();
    }
    template <class T>
    void expectEqual(const T& expected, const T& actual, const std::string& what) {
        if (expected != actual && !HasFailure()) {
            ADD_FAILURE() << what << ": expected " << testing::PrintToString(expected) << ", is "
                          << testing::PrintToString(actual) << "\n"
                          << trail();
        }
    }

    HWND window(int page) const { return ui->Page(page)->Window(); }
    int idOf(HWND control) const {
        char text[1024] = {};
        GetWindowTextA(control, text, sizeof text);
        const auto found = texts_.find(utf8(text));
        return found == texts_.end() ? -1 : found->second;
    }
    WizardFace face() const {
        WizardFace face;
        face.offered = hostLog.offered;
        face.enabled = hostLog.enabled;
        face.home = hostLog.home;
        if (ui == nullptr) return face;
        face.page = ui->CurrentPage();
        if (ui->Page(ComponentUI::optionsPage) != nullptr) {
            const HWND options = window(ComponentUI::optionsPage);
            for (const int id : {IDC_START_PRODUCT, IDC_MAKE_DISK, IDC_BUY_PRODUCT}) {
                if (IsDlgButtonChecked(options, id) == BST_CHECKED) face.option += id;
            }
            face.hint = idOf(GetDlgItem(options, IDC_HINT));
        }
        if (ui->Page(ComponentUI::floppyPage) != nullptr) {
            face.text = idOf(GetDlgItem(window(ComponentUI::floppyPage), IDC_RUNNING_TEXT));
            face.state = floppy().State();
        }
        return face;
    }
    void compare(const std::string& when) {
        expectEqual(std::string(), model_.fault(), when);
        expectEqual(model_.face().describe(), face().describe(), when);
        if (ui == nullptr || HasFailure()) return;
        expectEqual(window(ui->CurrentPage()), frame.page(), when + ", the frame's page");
        for (int page = 0; page < ComponentUI::pageCount; ++page) {
            if (ui->Page(page) != nullptr) {
                expectEqual(page == ui->CurrentPage(), IsWindowVisible(window(page)) != FALSE,
                            when + ", page " + std::to_string(page) + " visible");
            }
        }
    }

    // What waits in the thread's queue, as a loop of the host would handle it.
    void emptyQueue() {
        bool quit = false;
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                expectEqual(quitCode_, static_cast<int>(message.wParam), "exit code");
                expectEqual(false, std::exchange(quit, true), "a second end of the program");
            } else {
                DispatchMessageA(&message);
            }
        }
        expectEqual(quitPosted_, quit, "end of the program seen");
        quitPosted_ = false;
        model_.quit(false);
        countLeaves();
    }
    // The same as a message box does it, which leaves the end of the program to others.
    static void pumpWithinBox() {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            DispatchMessageA(&message);
        }
    }
    void countLeaves() {
        leaves_ += hostLog.count("leave");
        hostLog.take();
    }

    // One thing that a user or a host does. `queued`: through the queue rather than at once; the page that is
    // shown is then the one that will be, by all that waits there.
    void act(bool queued) {
        const int page = model_.face().page;
        if (ui->Page(page) == nullptr) return;
        switch (below(12)) {
            case 0:
            case 1:
                chooseOption(queued);
                break;
            case 2:
                note("activate");
                model_.activate(page);
                deliver(window(page), WM_ACTIVATE, WA_ACTIVE, queued);
                break;
            case 3:
                note("size");
                frame.resize(static_cast<int>(300 + below(300)), static_cast<int>(200 + below(300)));
                UpdateWindow(frame.page());
                break;
            case 4:
                note("time");
                pc.machine().clock.advance(std::int64_t{below(10)} * 1'000'000'000);
                break;
            case 5:
                if (oneIn(3)) quit();
                break;
            case 6:
                if (oneIn(3)) strayCommand(queued);
                break;
            default:
                command(page, commands[below(std::size(commands))], queued);
        }
    }
    static void deliver(HWND window, UINT message, WPARAM wParam, bool queued) {
        queued ? static_cast<void>(PostMessageA(window, message, wParam, 0))
               : static_cast<void>(SendMessageA(window, message, wParam, 0));
    }
    void chooseOption(bool queued) {
        if (model_.face().page != ComponentUI::optionsPage) return;
        const int option = radioButtons[below(std::size(radioButtons))];
        note("choose " + std::to_string(option));
        model_.choose(option);
        deliver(GetDlgItem(window(ComponentUI::optionsPage), option), BM_CLICK, 0, queued);
    }
    // To a page that is not shown. The product page does not go by itself, so it is spared the others'
    // orders.
    void strayCommand(bool queued) {
        const int page = static_cast<int>(below(ComponentUI::pageCount));
        if (model_.face().page == ComponentUI::productPage || !model_.hasPage(page)) return;
        command(page, commands[below(std::size(commands))], queued);
    }
    void quit() {
        note("quit");
        quitCode_ = static_cast<int>(below(100));
        quitPosted_ = true;
        model_.quit(true);
        PostQuitMessage(quitCode_);
    }
    void command(int page, WORD command, bool queued) {
        note("command " + std::to_string(command) + " to page " + std::to_string(page));
        const bool before = model_.attempting();
        model_.command(page, command);
        if (!before && model_.attempting()) {
            attempt(page, command);
        } else {
            deliver(window(page), WM_COMMAND, command, queued);
        }
    }
    void destroy() {
        note("destroy");
        const bool close = oneIn(4);
        const HWND page = frame.page();
        ComponentUI* const ended = std::exchange(ui, nullptr);
        model_.destroy();
        if (close) SendMessageA(page, WM_CLOSE, 0, 0);
        expectEqual(BOOL{1}, DestroyComponentUI(ended, 0), "result of DestroyComponentUI");
        expectEqual(FALSE, IsWindow(page), "the page's window is there");
    }
    void destroyOrCreate() {
        if (ui != nullptr) {
            destroy();
        } else {
            restart();
        }
    }

    void attempt(int page, WORD command) {
        const Medium atStart = medium_;
        mediumChanged_ = false;
        calm_ = oneIn(2);
        ComponentUI* const maker = ui;
        SendMessageA(window(page), WM_COMMAND, command, 0);
        model_.attemptReturned();
        countLeaves();
        if (ui != maker) {
            ++endedWithin_;
            return;
        }
        note(model_.lastMade() ? "made" : "not made");
        model_.stopped() ? ++stoppedAttempts_ : 0;
        const bool steady = !mediumChanged_ && !model_.stopped();
        if (model_.lastMade()) {
            ++madeDisks_;
            expectEqual(false, steady && atStart == Medium::hopeless, "made on a hopeless diskette");
            judgeDiskette();
        } else {
            expectEqual(false, steady && atStart == Medium::good, "failed on a good diskette");
        }
    }
    // A bad sector may hide what is not told of: a label, attributes.
    void judgeDiskette() {
        const auto state = pc.drive().state();
        mountDrive(true);
        pc.drive().setState({});
        const std::string fault = pc.faultOfDiskette();
        if (medium_ == Medium::good && !mediumChanged_) {
            expectEqual(std::string(), fault, "the diskette that was made");
        } else if (!fault.starts_with("label") && !fault.starts_with("attributes")) {
            expectEqual(std::string(), fault, "the diskette that was made in spite of faults");
        }
        pc.drive().setState(state);
    }

    void onStatus(const std::string& text) {
        if (ui == nullptr && text.empty()) return;  // a page that is closed clears it
        expectEqual(true, model_.attempting(), "an attempt to tell: " + text);
        model_.statusLine(text);
        note("status " + text);
        moment(!text.empty() && oneIn(2));
    }
    // A box says what it is with its caption and style: "box <caption> [<style>] <text>".
    void onBox() {
        const std::string line = hostLog.lines.back();
        const auto style = line.find(" [");
        note(line.substr(0, 60));
        const bool retry = line.compare(style, 4, " [1]") == 0;
        const bool byAttempt = retry || line.compare(style, 5, " [30]") == 0;
        if (!byAttempt) {
            moment(false);
            return;
        }
        retry ? model_.retryBox() : model_.errorBox(line.substr(4, style - 4));
        ComponentUI* const asker = ui;
        moment(oneIn(2));
        if (oneIn(4)) changeMedium(false);
        pumpWithinBox();
        if (retry) {
            const int answer = oneIn(2) ? IDOK : IDCANCEL;
            note(answer == IDOK ? "ok" : "cancel");
            hostLog.answers = {answer};
            if (ui == asker) model_.retryAnswered(answer);
        }
    }
    // Something may happen while the page is at work.
    void moment(bool queued) {
        compare("while it is at work");
        if (depth_ > 0 || calm_ || HasFailure() || !oneIn(8)) return;
        ++depth_;
        bool posted = false;  // it would be lost with the windows
        for (unsigned left = 1 + below(4); left > 0 && !HasFailure(); --left) {
            if (ui == nullptr || (!posted && oneIn(12))) {
                destroyOrCreate();
                queued = false;  // what is posted to a new component is for the time after the old one's work
            } else {
                act(queued);
                posted = queued;
            }
            if (!queued) compare("within its work");
        }
        --depth_;
    }

    void mountDrive(bool there) {
        there ? pc.machine().drives.mount('A', drive_, DRIVE_REMOVABLE) : pc.machine().drives.unmount('A');
    }
    // atRest: a fresh diskette. Otherwise it is the same one, whose FAT may have suffered.
    void changeMedium(bool atRest) {
        mediumChanged_ = true;
        mountDrive(true);
        pc.drive().setState({});
        pc.writeArchive(emergencyFiles());
        if (atRest) {
            pc.insertBlank();
            if (oneIn(2)) pc.putOldFiles();
        }
        winlayer::DisketteState state;
        medium_ = Medium::hopeless;
        const unsigned kind = below(12);
        note("medium " + std::to_string(kind));
        switch (kind) {
            case 0:
                state.noMedium = true;
                break;
            case 1:
                state.writeProtected = true;
                break;
            case 2:
                state.unformatted = true;
                break;
            case 3:
                state.lowDensityDrive = true;
                break;
            case 4:
                mountDrive(false);
                break;
            case 5:
                DeleteFileA((pc.archiveFolder() + "\\mwdisk1.dat").c_str());
                break;
            case 6:
            case 7: {
                winlayer::SectorFault bad;
                bad.sector = below(oneIn(2) ? 40 : winlayer::sectors1440);
                state.faults.push_back(bad);
                medium_ = Medium::unlucky;
                break;
            }
            default:
                medium_ = atRest ? Medium::good : Medium::unlucky;
        }
        pc.drive().setState(state);
    }

    std::mt19937 random_{test::randomSeed()};
    WizardModel model_;
    std::map<std::string, int> texts_;
    std::deque<std::string> trail_;
    std::shared_ptr<winlayer::FileSystem> drive_;
    Medium medium_ = Medium::good;
    bool mediumChanged_ = false;
    bool calm_ = false;  // nothing happens within this attempt
    int depth_ = 0;
    int leaves_ = 0;
    int quitCode_ = 0;
    bool quitPosted_ = false;
    int madeDisks_ = 0;
    int stoppedAttempts_ = 0;
    int endedWithin_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Windows, RandomWalk, testing::Values(WindowsVersion::Windows98, WindowsVersion::XP),
                         familyName);

TEST_P(RandomWalk, ShowsWhatTheModelShows) {
    for (int i = 0; i < steps && !HasFailure(); ++i) {
        step();
    }
    if (!HasFailure()) end();
    restart();  // for the fixture
    EXPECT_GT(madeDisks(), 5);
    EXPECT_GT(stoppedAttempts(), 3);
    EXPECT_GT(endedWithin(), 0);
}

}  // namespace
