#include "wizard_fixture.h"

#include "component/entry_points.h"
#include "component/page_layout.h"
#include "component/resources/resource.h"

namespace {

constexpr char frameClass[] = "FakeWizardFrame";

}  // namespace

FakeFrame::FakeFrame(int width, int height) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = frameClass;
    RegisterClassA(&windowClass);
    window_ = CreateWindowExA(0, frameClass, "", WS_POPUP | WS_VISIBLE, 0, 0, width, height, nullptr, nullptr,
                              windowClass.hInstance, nullptr);
    SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

FakeFrame::~FakeFrame() {
    DestroyWindow(window_);
    UnregisterClassA(frameClass, GetModuleHandleA(nullptr));
}

void FakeFrame::resize(int width, int height) {
    MoveWindow(window_, 0, 0, width, height, FALSE);
    placePage();
}

void FakeFrame::placePage() const {
    RECT client{};
    GetClientRect(window_, &client);
    MoveWindow(page_, 0, 0, client.right, client.bottom, FALSE);
}

LRESULT CALLBACK FakeFrame::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto frame = reinterpret_cast<FakeFrame*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (frame != nullptr && message >= 0x8000) {
        return frame->receive(message, wParam, lParam);
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT FakeFrame::receive(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case wizard::leaveMessage:
            hostLog.add("leave");
            break;
        case wizard::currentPageMessage:
            page_ = reinterpret_cast<HWND>(lParam);
            placePage();
            hostLog.add("current " + std::to_string(wParam));
            break;
        case wizard::progressRangeMessage:
            hostLog.add("range " + std::to_string(LOWORD(static_cast<DWORD_PTR>(lParam))) + " " +
                        std::to_string(HIWORD(static_cast<DWORD_PTR>(lParam))));
            break;
        case wizard::progressPositionMessage:
            hostLog.add("position " + std::to_string(lParam));
            break;
        case wizard::statusTextMessage:
            hostLog.add("status " + utf8(reinterpret_cast<const char*>(lParam)));
            if (hostLog.duringStatus) {
                hostLog.duringStatus(utf8(reinterpret_cast<const char*>(lParam)));
            }
            break;
        case wizard::headingFontMessage:
            hostLog.add("heading font");
            return reinterpret_cast<LRESULT>(headingFont);
        default:
            break;
    }
    return 0;
}

WizardTest::WizardTest() {
    hostLog = {};
    AttachLibrary(GetModuleHandleA(nullptr));
    open();
}

WizardTest::~WizardTest() {
    close();
    DetachLibrary(false);
    pump();
}

void WizardTest::open() {
    ui = reinterpret_cast<ComponentUI*>(CreateComponentUI(frame.window(), 0));
}

void WizardTest::close() {
    EXPECT_EQ(DestroyComponentUI(ui, 0), 1);
    ui = nullptr;
}

void WizardTest::pump() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

std::string WizardTest::text(int control) const {
    char buffer[1024] = {};
    GetWindowTextA(this->control(control), buffer, sizeof buffer);
    return utf8(buffer);
}

std::string WizardTest::place(int control) const {
    const RECT place = page_layout::Place(frame.page(), control);
    return std::to_string(place.left) + "," + std::to_string(place.top) + " " +
           std::to_string(place.right - place.left) + "x" + std::to_string(place.bottom - place.top);
}

void WizardTest::goToOptions() {
    press(wizard::nextCommand);
}

void WizardTest::goToFloppy() {
    goToOptions();
    SendMessageA(control(IDC_START_PRODUCT), BM_SETCHECK, BST_UNCHECKED, 0);
    SendMessageA(control(IDC_MAKE_DISK), BM_SETCHECK, BST_CHECKED, 0);
    press(wizard::nextCommand);
    hostLog.take();
}
