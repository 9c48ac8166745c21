#include <windows.h>

#include <gtest/gtest.h>

#include "support/expect_fails.h"
#include "support/frame_test.h"

namespace {

constexpr DWORD frameStyle = WS_OVERLAPPEDWINDOW;
constexpr DWORD childStyle = WS_CHILD | WS_VISIBLE;

class Windows : public FrameTest {
protected:
    Windows() : FrameTest(frameStyle, {10, 20, 310, 220}) {}
};

TEST_F(Windows, CreationShowingAndEndSendTheirMessagesInOrder) {
    const std::vector<UINT> wanted = {WM_NCCREATE,   WM_CREATE,  WM_SIZE,     WM_MOVE,
                                      WM_SHOWWINDOW, WM_DESTROY, WM_NCDESTROY};
    const HWND child = recorder_.create(WS_CHILD, {5, 6, 45, 26}, frame_, 7);
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(recorder_.take(wanted, child), "nccreate create size move");
    EXPECT_FALSE(ShowWindow(child, SW_SHOW));
    EXPECT_EQ(recorder_.take(wanted, child), "show");
    EXPECT_TRUE(ShowWindow(child, SW_SHOW));
    EXPECT_EQ(recorder_.take(wanted, child), "");
    // A window of its own is told its size when it is first shown.
    ShowWindow(frame_, SW_SHOW);
    EXPECT_EQ(recorder_.take(wanted, frame_), "show size move");
    ShowWindow(frame_, SW_HIDE);
    ShowWindow(frame_, SW_SHOW);
    EXPECT_EQ(recorder_.take(wanted, frame_), "show show");
    EXPECT_TRUE(DestroyWindow(child));
    EXPECT_EQ(recorder_.take(wanted, child), "show destroy ncdestroy");
    EXPECT_FALSE(IsWindow(child));
}

// Parents hear of their end first and are gone last.
TEST_F(Windows, AnEndGoesDownTheTreeAndComesBackUp) {
    const HWND outer = recorder_.create(childStyle, {0, 0, 50, 50}, frame_, 1);
    const HWND inner = recorder_.create(childStyle, {0, 0, 20, 20}, outer, 2);
    recorder_.clear();
    EXPECT_TRUE(DestroyWindow(outer));
    std::string ends;
    for (const auto& entry : recorder_.entries()) {
        const std::string window = entry.window == outer ? "outer" : "inner";
        ends += entry.message == WM_DESTROY ? window + " ends, " : "";
        ends += entry.message == WM_NCDESTROY ? window + " gone, " : "";
    }
    EXPECT_EQ(ends, "outer ends, inner ends, inner gone, outer gone, ");
    EXPECT_FALSE(IsWindow(inner));
    EXPECT_FALSE(DestroyWindow(outer));
}

TEST_F(Windows, AWindowThatCannotBeMadeTellsWhy) {
    SetLastError(0);
    EXPECT_EQ(CreateWindowExA(0, "NoSuchClass", "", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr),
              nullptr);
    EXPECT_NE(GetLastError(), 0u);
    EXPECT_FAILS(recorder_.create(WS_CHILD, {0, 0, 1, 1}), ERROR_TLW_WITH_WSCHILD);
    const HWND gone = recorder_.create(WS_CHILD, {0, 0, 1, 1}, frame_);
    DestroyWindow(gone);
    EXPECT_FAILS(recorder_.create(WS_CHILD, {0, 0, 1, 1}, gone), ERROR_INVALID_WINDOW_HANDLE);
}

TEST_F(Windows, ClassesAreFoundWithoutCaseAndEndOnlyUnused) {
    WNDCLASSA again{};
    again.lpfnWndProc = DefWindowProcA;
    again.hInstance = GetModuleHandleA(nullptr);
    again.lpszClassName = "RECORDER";
    EXPECT_FAILS(RegisterClassA(&again), ERROR_CLASS_ALREADY_EXISTS);
    EXPECT_FAILS(UnregisterClassA("Recorder", again.hInstance), ERROR_CLASS_HAS_WINDOWS);
    EXPECT_FAILS(UnregisterClassA("Another", again.hInstance), ERROR_CLASS_DOES_NOT_EXIST);
    char name[32] = "";
    EXPECT_EQ(GetClassNameA(frame_, name, sizeof name), 8);
    EXPECT_STREQ(name, "Recorder");
}

TEST_F(Windows, TheTreeKnowsParentsOwnersAndOrder) {
    const HWND first = recorder_.create(childStyle, {0, 0, 9, 9}, frame_, 11);
    const HWND second = recorder_.create(childStyle, {0, 0, 9, 9}, frame_, 12);
    const HWND inner = recorder_.create(childStyle, {0, 0, 5, 5}, second, 13);
    const HWND popup = recorder_.create(WS_POPUP, {0, 0, 9, 9}, second);
    EXPECT_EQ(GetParent(first), frame_);
    EXPECT_EQ(GetParent(popup), frame_);  // owned by the child's outermost parent
    EXPECT_EQ(GetParent(frame_), nullptr);
    EXPECT_EQ(GetWindow(frame_, GW_CHILD), first);
    EXPECT_EQ(GetWindow(first, GW_HWNDNEXT), second);
    EXPECT_EQ(GetWindow(second, GW_HWNDNEXT), nullptr);
    EXPECT_EQ(GetWindow(second, GW_HWNDPREV), first);
    EXPECT_EQ(GetWindow(popup, GW_OWNER), frame_);
    EXPECT_TRUE(IsChild(frame_, inner));
    EXPECT_FALSE(IsChild(first, inner));
    EXPECT_FALSE(IsChild(frame_, frame_));
    EXPECT_EQ(GetDlgItem(frame_, 12), second);
    EXPECT_EQ(GetDlgItem(frame_, 13), nullptr);
    EXPECT_EQ(GetDlgCtrlID(inner), 13);
    EXPECT_TRUE(SetWindowPos(second, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE));
    EXPECT_EQ(GetWindow(frame_, GW_CHILD), second);
    EXPECT_TRUE(SetWindowPos(second, first, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE));
    EXPECT_EQ(GetWindow(frame_, GW_CHILD), first);
    DestroyWindow(frame_);
    EXPECT_FALSE(IsWindow(popup));  // what a window owns goes with it
}

TEST_F(Windows, TextIsKeptAsItsBytes) {
    const std::string text = "W\xE4hlen & \x80\xFF";
    EXPECT_TRUE(SetWindowTextA(frame_, text.c_str()));
    EXPECT_EQ(GetWindowTextLengthA(frame_), static_cast<int>(text.size()));
    char buffer[32];
    EXPECT_EQ(GetWindowTextA(frame_, buffer, sizeof buffer), static_cast<int>(text.size()));
    EXPECT_EQ(text, buffer);
    EXPECT_EQ(GetWindowTextA(frame_, buffer, 4), 3);
    EXPECT_EQ(text.substr(0, 3), buffer);
    EXPECT_TRUE(SetWindowTextA(frame_, nullptr));
    EXPECT_EQ(GetWindowTextLengthA(frame_), 0);
}

TEST_F(Windows, PropertiesStayUntilTheyAreRemoved) {
    int object = 0;
    EXPECT_EQ(GetPropA(frame_, "QX_AWDC"), nullptr);
    EXPECT_TRUE(SetPropA(frame_, "QX_AWDC", &object));
    EXPECT_EQ(GetPropA(frame_, "qx_awdc"), &object);
    EXPECT_TRUE(SetPropA(frame_, "QX_AWDC", frame_));
    EXPECT_EQ(RemovePropA(frame_, "QX_AWDC"), frame_);
    EXPECT_EQ(RemovePropA(frame_, "QX_AWDC"), nullptr);
    EXPECT_EQ(GetPropA(frame_, "QX_AWDC"), nullptr);
}

WNDPROC originalProcedure;
LRESULT CALLBACK subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP) {
        return 17;
    }
    const LRESULT result = CallWindowProcA(originalProcedure, window, message, wParam, lParam);
    return message == WM_GETTEXTLENGTH ? result + 100 : result;
}

TEST_F(Windows, AProcedureCanBeReplacedAndCalled) {
    const LONG_PTR old = SetWindowLongPtrA(frame_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&subclass));
    originalProcedure = reinterpret_cast<WNDPROC>(old);
    EXPECT_EQ(SendMessageA(frame_, WM_APP, 0, 0), 17);
    SetWindowTextA(frame_, "abc");
    EXPECT_EQ(GetWindowTextLengthA(frame_), 103);
    EXPECT_EQ(SetWindowLongPtrA(frame_, GWLP_WNDPROC, old), reinterpret_cast<LONG_PTR>(&subclass));
    EXPECT_EQ(GetWindowTextLengthA(frame_), 3);
}

TEST_F(Windows, DataStandsAtItsOffsets) {
    EXPECT_EQ(SetWindowLongPtrA(frame_, GWLP_USERDATA, 5), 0);
    EXPECT_EQ(GetWindowLongPtrA(frame_, GWLP_USERDATA), 5);
    const HWND child = recorder_.create(WS_CHILD | WS_GROUP, {0, 0, 9, 9}, frame_, 11);
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(child, GWL_STYLE)) & (WS_CHILD | WS_GROUP | WS_VISIBLE),
              DWORD{WS_CHILD | WS_GROUP});
    EXPECT_EQ(SetWindowLongPtrA(child, GWLP_ID, 99), 11);
    EXPECT_EQ(GetDlgItem(frame_, 99), child);
    SetLastError(0);
    EXPECT_EQ(GetWindowLongPtrA(child, 0), 0);  // the class has no extra bytes
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_INDEX});
}

TEST_F(Windows, ThereIsNoFocusInWhatIsDisabledOrHidden) {
    ShowWindow(frame_, SW_SHOW);
    const HWND first = recorder_.create(childStyle, {0, 0, 9, 9}, frame_, 1);
    const HWND second = recorder_.create(childStyle, {0, 20, 9, 29}, frame_, 2);
    SetFocus(first);
    EXPECT_EQ(GetFocus(), first);
    recorder_.clear();
    EXPECT_EQ(SetFocus(second), first);
    EXPECT_EQ(recorder_.take({WM_SETFOCUS, WM_KILLFOCUS}), "nofocus focus");
    EXPECT_FALSE(EnableWindow(first, FALSE));
    EXPECT_EQ(recorder_.take({WM_ENABLE}, first), "enable");
    EXPECT_TRUE(EnableWindow(first, FALSE));  // was disabled
    EXPECT_FALSE(IsWindowEnabled(first));
    EXPECT_EQ(SetFocus(first), nullptr);
    EXPECT_EQ(GetFocus(), second);
    ShowWindow(second, SW_HIDE);
    EXPECT_EQ(GetFocus(), frame_);
    EXPECT_FALSE(IsWindowVisible(second));
    ShowWindow(second, SW_SHOW);
    SetFocus(second);
    EnableWindow(second, FALSE);
    EXPECT_NE(GetFocus(), second);
}

TEST_F(Windows, VisibilityIsThatOfAllParents) {
    const HWND child = recorder_.create(childStyle, {0, 0, 9, 9}, frame_, 1);
    EXPECT_FALSE(IsWindowVisible(child));
    ShowWindow(frame_, SW_SHOW);
    EXPECT_TRUE(IsWindowVisible(child));
    ShowWindow(frame_, SW_HIDE);
    EXPECT_FALSE(IsWindowVisible(child));
    EXPECT_NE(static_cast<DWORD>(GetWindowLongA(child, GWL_STYLE)) & WS_VISIBLE, 0u);
}

}  // namespace
