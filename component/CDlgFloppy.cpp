#include "CDlgFloppy.h"

#include <algorithm>
#include <utility>

#include "CBSTR.h"
#include "ComponentUI.h"
#include "PropertySection.h"
#include "boot_files.h"
#include "page_layout.h"
#include "qxdlgsup.h"
#include "resources/resource.h"
#include "wizard_protocol.h"

int CDlgFloppy::Create(ComponentUI* owner) {
    return CreatePage(owner, IDD_FLOPPY);
}

void CDlgFloppy::Destroy() {
    CloseWindow();
    delete this;
}

void CDlgFloppy::OnSetUp() {
    messageWindow_ = Window();
    textControl_ = Control(IDC_RUNNING_TEXT);
    const RECT text = page_layout::Place(Window(), IDC_RUNNING_TEXT);
    usualTextHeight_ = text.bottom - text.top;
    ShowText(IDS_INSERT_DISK);
    OfferButtons(wizard::buttonsAtRest);
    state_ = PageState::Ready;
    ReadInstallDirectory();
    ConfigureDiskMaker();
}

void CDlgFloppy::ReadInstallDirectory() {
    PropertySection section;
    section.Open("GlobalProperties", 1);
    section.GetValue("InstallDir", installDir_, 256);
}

void CDlgFloppy::ConfigureDiskMaker() {
    SetArchiveDirectory(installDir_);
    SetArchiveName("mwdisk1.dat");
    SetVolumeLabel("QUARVEL");
    SetProgressEnd(progressEnd);
    for (const BootFile& file : bootFiles) {
        AddDiskFile(file.name, static_cast<int>(file.attributes));
    }
}

void CDlgFloppy::OnActivate() {
    OfferButtons(wizard::buttonsAtRest);
    ShowText(IDS_INSERT_DISK);
    state_ = PageState::Ready;
    progressStep_ = 3;
    progressPos_ = 0;
}

void CDlgFloppy::OnLayOut(const RECT& client) {
    constexpr LONG margin = 8;
    const LONG width = client.right - client.left - margin;
    const LONG height = TextHeight(width);
    const LONG top = client.bottom - margin - height;
    page_layout::Move(Window(), IDC_RUNNING_TEXT, client.left + margin, top, width, height, true);
    page_layout::Move(Window(), IDC_PICTURE, client.left, client.top, client.right - client.left,
                      top - client.top, true);
    laidOut_ = true;
}

// A text that needs more space than the template reserves takes it from the picture.
LONG CDlgFloppy::TextHeight(LONG width) const {
    return std::max(usualTextHeight_, page_layout::TextHeight(Window(), IDC_RUNNING_TEXT, width));
}

void CDlgFloppy::OnClose() {
    const bool wasOpen = !std::exchange(closed_, true);
    if (!IsAttempting()) {
        ClearDiskFiles();
    } else if (wasOpen) {
        Stop(0);  // the attempt may be reading the list and clears it at its end
        // It reports nothing from now on, and the frame may continue with another page.
        ::SendMessageA(Frame(), wizard::statusTextMessage, 0, reinterpret_cast<LPARAM>(""));
        ::SendMessageA(Frame(), wizard::progressRangeMessage, 0, 0);
        ReturnButtons();
    }
    if (::IsWindow(textControl_)) {
        ::DestroyWindow(textControl_);
    }
    textControl_ = nullptr;
}

void CDlgFloppy::ShowText(UINT text) {
    CBSTR shown;
    shown.LoadString(Module(), text, 256);
    ::SetWindowTextA(textControl_, shown.Text());
    const RECT place = page_layout::Place(Window(), IDC_RUNNING_TEXT);
    if (laidOut_ && TextHeight(place.right - place.left) != place.bottom - place.top) {
        LayOut();
    }
}

void CDlgFloppy::TellFrame(UINT message, LPARAM parameter) const {
    if (!closed_) {
        ::SendMessageA(Frame(), message, 0, parameter);
    }
}

void CDlgFloppy::Press(WORD command) const {
    ::SendMessageA(messageWindow_, WM_COMMAND, command, 0);
}

bool CDlgFloppy::OnCommand(WORD id) {
    switch (id) {
        case wizard::nextCommand:
            Press(proceedCommand);
            return true;
        case proceedCommand:
            Proceed();
            return true;
        case wizard::backCommand:
        case wizard::finishCommand:
        case wizard::cancelCommand:
            if (IsAttempting()) {
                Stop(id);
            } else if (id == wizard::backCommand && state_ == PageState::Made) {
                TellFrame(wizard::progressRangeMessage, 0);
                state_ = PageState::Ready;
                Press(wizard::nextCommand);
            } else {
                Leave(id);
            }
            return true;
        case wizard::helpCommand:
            QXHelp(Window(), wizard::helpTopic);
            return true;
        default:
            return false;
    }
}

void CDlgFloppy::Proceed() {
    switch (state_) {
        case PageState::Ready:
            MakeAttempt();
            break;
        case PageState::Made:
            ShowResult();
            break;
        case PageState::Failed:
            Restart();
            break;
        case PageState::Making:
            break;
    }
}

void CDlgFloppy::ShowResult() {
    ShowText(IDS_DISK_MADE);
    QXSetWizButtons(Window(), wizard::buttonsWhenDone);
    QXEnableHomeButton(Window(), FALSE);
}

void CDlgFloppy::Restart() {
    if (!IsCurrent()) {
        state_ = PageState::Ready;
        return;
    }
    SwitchTo(ComponentUI::floppyPage);
    TellFrame(wizard::progressRangeMessage, 0);
    ActivatePage(ComponentUI::floppyPage);
}

void CDlgFloppy::Leave(WORD command) {
    if (command == wizard::cancelCommand) {
        TellFrame(wizard::progressRangeMessage, 0);
        LeaveComponent();
        return;
    }
    if (command == wizard::backCommand) {
        MoveSlider(1, 0);
    }
    SwitchTo(ComponentUI::optionsPage);
    TellFrame(wizard::progressRangeMessage, 0);
    ActivatePage(ComponentUI::optionsPage);
}
