// Every single call that can fail, of opening, paging through and closing the wizard, fails once: the user
// can still get to every page, and nothing is left when the wizard is closed.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "component/entry_points.h"
#include "component/resources/resource.h"
#include "wizard_fixture.h"
#include "wizard_machine.h"

namespace {

using winlayer::WindowsVersion;

class WizardFaults : private WizardMachine,
                     public WizardTest,
                     public testing::WithParamInterface<WindowsVersion> {
protected:
    WizardFaults() : WizardMachine(GetParam()) { close(); }
    ~WizardFaults() override { open(); }  // for the fixture

    using WizardMachine::pc;

    // What is open in the machine, by kind.
    std::map<std::string, std::size_t> inventory() {
        winlayer::Machine& machine = pc.machine();
        return {{"windows", machine.windows.count()},
                {"contexts of windows", machine.windows.contextCount()},
                {"drawing objects", machine.graphics.count()},
                {"handles", machine.handles.openCount()},
                {"rich-edit module", GetModuleHandleA("RICHED32.DLL") != nullptr},
                {"host module", GetModuleHandleA("QXPM.DLL") != nullptr},
                {"objects of the host", static_cast<std::size_t>(host->liveObjects)}};
    }

    // Opens the wizard, pages through it and back, and closes it. Gives the pages reached.
    std::set<int> pageThrough() {
        std::set<int> reached;
        const auto go = [&](int page, WORD command) {
            for (int presses = 0; presses < 2 && ui->CurrentPage() != page; ++presses) {
                if (const CWizardWindow* from = ui->Page(ui->CurrentPage())) {
                    SendMessageA(from->Window(), WM_COMMAND, command, 0);
                }
            }
            if (ui->CurrentPage() != page) return false;
            frame.resize(400, 300);
            UpdateWindow(frame.window());
            return reached.insert(page).second;
        };
        AttachLibrary(GetModuleHandleA(nullptr));
        open();
        if (ui->CurrentPage() < 0) {
            close();
            open();  // the host's user tries again
        }
        go(ComponentUI::productPage, 0);
        if (go(ComponentUI::optionsPage, wizard::nextCommand)) {
            const HWND options = ui->Page(ComponentUI::optionsPage)->Window();
            for (const int id : {IDC_START_PRODUCT, IDC_MAKE_DISK}) {
                while ((IsDlgButtonChecked(options, id) == BST_CHECKED) != (id == IDC_MAKE_DISK)) {
                    CheckDlgButton(options, id, id == IDC_MAKE_DISK ? BST_CHECKED : BST_UNCHECKED);
                }
            }
        }
        go(ComponentUI::floppyPage, wizard::nextCommand);
        go(ComponentUI::optionsPage, wizard::backCommand);
        go(ComponentUI::productPage, wizard::backCommand);
        close();
        DetachLibrary(false);
        pump();
        hostLog.take();
        host.log();
        return reached;
    }

    std::map<std::string, std::size_t> callsOfARun() {
        pc.machine().gate.startRecording();
        EXPECT_EQ(pageThrough(), everyPage);
        std::map<std::string, std::size_t> counts;
        for (const std::string& call : pc.machine().gate.calls()) {
            ++counts[call];
        }
        pc.machine().gate.reset();
        return counts;
    }

    // What a call that fails to release something leaves.
    const std::map<std::string, std::string> lost = {{"DeleteDC", "drawing objects"},
                                                     {"DeleteObject", "drawing objects"},
                                                     {"FreeLibrary", "rich-edit module"}};
    const std::set<int> everyPage = {ComponentUI::productPage, ComponentUI::optionsPage,
                                     ComponentUI::floppyPage};
};

INSTANTIATE_TEST_SUITE_P(Windows, WizardFaults,
                         testing::Values(WindowsVersion::Windows98, WindowsVersion::XP), familyName);

TEST_P(WizardFaults, OfEveryCallLeaveAWizardThatCanBeUsed) {
    std::set<std::string> fallible;
    for (const auto& [function, count] : callsOfARun()) {
        for (std::size_t call = 0; call < count; ++call) {
            const auto before = inventory();
            SCOPED_TRACE("call " + std::to_string(call) + " of " + function);
            pc.machine().gate.failFunction(function, ERROR_NOT_ENOUGH_MEMORY, call, 1);
            const auto reached = pageThrough();
            const bool met = pc.machine().gate.failedCalls() == 1;
            pc.machine().gate.reset();
            ASSERT_EQ(reached, everyPage);
            auto after = inventory();
            if (const auto kind = lost.find(function); kind != lost.end()) {
                after[kind->second] = before.at(kind->second);
            }
            ASSERT_EQ(after, before);
            if (!met) break;  // this function cannot fail
            fallible.insert(function);
        }
    }
    for (const char* function : {"CreateDialogParamA", "SetPropA", "LoadBitmapA", "LoadStringA",
                                 "LoadLibraryA", "GetProcAddress", "GetDlgItem", "BeginPaint"}) {
        EXPECT_EQ(fallible.count(function), 1U) << function;
    }
}

}  // namespace
