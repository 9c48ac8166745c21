#include "CDlgInit.h"

#include <shellapi.h>

#include <string>

#include "CBSTR.h"
#include "ComponentUI.h"
#include "PropertySection.h"
#include "page_layout.h"
#include "qxdlgsup.h"
#include "resources/resource.h"
#include "wizard_protocol.h"

namespace {

constexpr char productProgram[] = "MwWin.exe";
constexpr char webAddress[] = "http://www.quarvel.example/mendwell/";

// Opens a file or an address with the shell. Result: whether that succeeded.
bool open(HWND window, const char* what, const char* directory) {
    const HINSTANCE result = ::ShellExecuteA(window, "open", what, nullptr, directory, SW_SHOW);
    return reinterpret_cast<INT_PTR>(result) > 32;
}

}  // namespace

int CDlgInit::Create(ComponentUI* owner) {
    return CreatePage(owner, IDD_OPTIONS);
}

void CDlgInit::Destroy() {
    CloseWindow();
    delete this;
}

void CDlgInit::OnSetUp() {
    ::SendMessageA(Control(IDC_START_PRODUCT), BM_SETCHECK, BST_CHECKED, 0);
    ShowHint(IDS_HINT_START);
    const LRESULT font = ::SendMessageA(::GetParent(Window()), wizard::headingFontMessage, 0, 0);
    if (font != 0) {
        ::SendMessageA(Control(IDC_HEADING), WM_SETFONT, static_cast<WPARAM>(font), FALSE);
    }
    OnActivate();
}

void CDlgInit::OnActivate() {
    OfferButtons(wizard::buttonsAtRest);
}

void CDlgInit::ShowHint(UINT text) const {
    CBSTR hint;
    hint.LoadString(Module(), text, 256);
    ::SetWindowTextA(Control(IDC_HINT), hint.Text());
}

// Bottom up: the hint, the options, and the picture in the space left below the heading.
void CDlgInit::OnLayOut(const RECT& client) {
    constexpr LONG margin = 8;
    constexpr LONG betweenOptions = 4;
    struct Row {
        int control;
        LONG distance;  // from the control below
    };
    constexpr Row rows[] = {{IDC_HINT, margin},
                            {IDC_BUY_PRODUCT, margin},
                            {IDC_MAKE_DISK, betweenOptions},
                            {IDC_START_PRODUCT, betweenOptions}};
    LONG bottom = client.bottom;
    for (const Row& row : rows) {
        const RECT place = page_layout::Place(Window(), row.control);
        const LONG height = place.bottom - place.top;
        bottom -= row.distance + height;
        page_layout::Move(Window(), row.control, client.left + margin, bottom, place.right - place.left,
                          height, true);
    }
    const LONG top = page_layout::Place(Window(), IDC_HEADING).bottom;
    page_layout::Move(Window(), IDC_PICTURE, client.left, top, client.right - client.left, bottom - top,
                      true);
}

bool CDlgInit::OnCommand(WORD id) {
    switch (id) {
        case IDC_START_PRODUCT:
            ShowHint(IDS_HINT_START);
            return true;
        case IDC_MAKE_DISK:
            ShowHint(IDS_HINT_MAKE);
            return true;
        case IDC_BUY_PRODUCT:
            ShowHint(IDS_HINT_BUY);
            return true;
        case wizard::nextCommand:
            FollowChoice();
            return true;
        case wizard::backCommand:
            SwitchTo(ComponentUI::productPage);
            ActivatePage(ComponentUI::productPage);
            return true;
        case wizard::cancelCommand:
            LeaveComponent();
            return true;
        case wizard::helpCommand:
            QXHelp(Window(), wizard::helpTopic);
            return true;
        default:
            return false;
    }
}

bool CDlgInit::IsChosen(int option) const {
    return ::SendMessageA(Control(option), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void CDlgInit::FollowChoice() {
    int target = ComponentUI::optionsPage;
    if (IsChosen(IDC_START_PRODUCT)) {
        StartProduct();
    }
    if (IsChosen(IDC_MAKE_DISK)) {
        target = ComponentUI::floppyPage;
    } else if (IsChosen(IDC_BUY_PRODUCT)) {
        OpenWebPage();
    }
    SwitchTo(target);
    ActivatePage(target);
}

void CDlgInit::StartProduct() const {
    char directory[256];
    {
        PropertySection section;
        section.Open("GlobalProperties", 1);
        section.GetValue("InstallDir", directory, sizeof directory);
    }
    std::string path = directory;
    if (!path.empty() && path.back() != '\\') {
        path += '\\';
    }
    path += productProgram;
    if (!open(Window(), path.c_str(), directory[0] == '\0' ? nullptr : directory)) {
        TellFailure(IDS_START_FAILED);
    }
}

void CDlgInit::OpenWebPage() const {
    if (!open(Window(), webAddress, nullptr)) {
        TellFailure(IDS_BROWSER_FAILED);
    }
}

void CDlgInit::TellFailure(UINT text) const {
    CBSTR message;
    message.LoadString(Module(), text, 128);
    CBSTR caption;
    caption.Format("\\@");
    QXMessageBox(Window(), message.Text(), caption.Text(), MB_OK);
}
