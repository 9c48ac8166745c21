// The dialog-support library qxdlgsup.dll: what its functions tell the frame, and its own windows.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "host/frame/loaded_module.h"
#include "host/frame/text.h"
#include "host/protocol.h"
#include "host/qxdlgsup/handlers.h"
#include "host/suite.h"

namespace {

using host::LoadedModule;
using Record = std::vector<std::string>;

// What frame and page see, in one record.
Record record;

LRESULT CALLBACK frameProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message >= WM_APP) {
        record.push_back("frame " + std::to_string(message - WM_APP) + " " + std::to_string(wParam));
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

constexpr UINT messageLook = WM_APP + 100;  // to the page: taken by the loop of the window that comes up

// Looks at the window that has come up and closes it by Escape.
void lookAndClose() {
    const HWND window = GetActiveWindow();
    record.push_back(host::windowText(window));
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const std::string text = host::windowText(child);
        if (!text.empty()) record.push_back(text.substr(0, 8));
    }
    PostMessageA(GetFocus() ? GetFocus() : window, WM_KEYDOWN, VK_ESCAPE, 1);
}

LRESULT CALLBACK pageProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == host::messagePageShowing) record.emplace_back("page showing");
    if (message == WM_DESTROY) record.emplace_back("page destroyed");
    if (message == messageLook) lookAndClose();
    return DefWindowProcA(window, message, wParam, lParam);
}

void registerClass(const char* name, WNDPROC procedure) {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.lpszClassName = name;
    RegisterClassA(&windowClass);
}

HWND makeWindow(const char* name, DWORD style, HWND parent) {
    return CreateWindowExA(0, name, "", style, 0, 0, 300, 200, parent, nullptr, GetModuleHandleA(nullptr),
                           nullptr);
}

class DialogSupport : public testing::Test {
protected:
    DialogSupport() {
        registerClass("SupportFrame", frameProcedure);
        registerClass("SupportPage", pageProcedure);
        frame = makeWindow("SupportFrame", WS_POPUP | WS_VISIBLE, nullptr);
        page = makeWindow("SupportPage", WS_CHILD | WS_VISIBLE, frame);
        record.clear();
    }
    ~DialogSupport() override {
        install(nullptr);
        DestroyWindow(frame);
        UnregisterClassA("SupportFrame", GetModuleHandleA(nullptr));
        UnregisterClassA("SupportPage", GetModuleHandleA(nullptr));
    }

    LoadedModule library{suiteFolder() + "qxdlgsup.dll", host::ExitCode::failure};
    void(WINAPI* install)(const QXHandlers*) =
        library.require<void WINAPI(const QXHandlers*)>("QXInstallHandlers");
    void(WINAPI* subclass)(HWND) = library.require<void WINAPI(HWND)>("QXSubclassDialog");
    int(WINAPI* box)(HWND, const char*, const char*, UINT) =
        library.require<int WINAPI(HWND, const char*, const char*, UINT)>("QXMessageBox");
    void(WINAPI* help)(HWND, DWORD) = library.require<void WINAPI(HWND, DWORD)>("QXHelp");
    HWND frame = nullptr;
    HWND page = nullptr;
};

TEST_F(DialogSupport, TellsTheFrameOfButtons) {
    library.require<void WINAPI(HWND, DWORD)>("QXSetWizButtons")(page, 0x212);
    library.require<void WINAPI(HWND, DWORD, DWORD)>("QXEnableWizButtons")(page, 0x10, 0x1A);
    library.require<void WINAPI(HWND, BOOL)>("QXEnableHomeButton")(page, 7);
    library.require<void WINAPI(HWND, DWORD)>("QXSetWizButtons")(nullptr, 0x212);
    EXPECT_EQ(record, (Record{"frame 2 530", "frame 3 16", "frame 4 1"}));
}

TEST_F(DialogSupport, SeesThePagesMessagesBeforeThePage) {
    subclass(page);
    subclass(page);
    subclass(nullptr);
    SendMessageA(page, host::messagePageShowing, 0, 0);
    DestroyWindow(page);
    EXPECT_EQ(record, (Record{"frame 1 0", "page showing", "frame 5 0", "page destroyed"}));
}

TEST_F(DialogSupport, HandlersTakeThePlaceOfItsWindows) {
    struct Handler {
        static int WINAPI onBox(void* context, HWND, const char* text, const char* caption, UINT style) {
            static_cast<Record*>(context)->push_back(std::string(caption) + ": " + text + " " +
                                                     std::to_string(style));
            return IDRETRY;
        }
        static void WINAPI onHelp(void* context, HWND, DWORD topic, const char* text) {
            static_cast<Record*>(context)->push_back(std::to_string(topic) + " " +
                                                     std::string(text).substr(0, 8));
        }
    };
    const QXHandlers handlers{&record, Handler::onBox, Handler::onHelp};
    install(&handlers);
    EXPECT_EQ(box(page, "text", "caption", MB_OKCANCEL), IDRETRY);
    EXPECT_EQ(box(page, nullptr, nullptr, 0), IDRETRY);
    help(page, 802);
    EXPECT_EQ(record, (Record{"caption: text 1", ":  0", "802 Mendwell"}));
}

TEST_F(DialogSupport, ShowsAHelpWindowThatTheFrameWaitsFor) {
    PostMessageA(page, messageLook, 0, 0);
    help(page, 802);
    EXPECT_EQ(record, (Record{"Hilfe", "Mendwell", "&Schlie\xDF"}));
    EXPECT_TRUE(IsWindowEnabled(frame));
}

TEST_F(DialogSupport, AsksWithAMessageBox) {
    PostMessageA(page, messageLook, 0, 0);
    EXPECT_EQ(box(page, "Sicher?", "Frage", MB_OKCANCEL), IDCANCEL);
    ASSERT_FALSE(record.empty());
    EXPECT_EQ(record.front(), "Frage");
    EXPECT_NE(std::find(record.begin(), record.end(), "Sicher?"), record.end());
    EXPECT_TRUE(IsWindowEnabled(frame));
}

}  // namespace
