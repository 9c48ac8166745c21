#include <windows.h>

#include <gtest/gtest.h>

#include <thread>

#include "support/window_recorder.h"
#include "winlayer/gdi/surface.h"
#include "winlayer/machine.h"
#include "winlayer/windows/input.h"

namespace {

using winlayer::ScopedMachine;

// Writes down what it is told, and does what a test asks while the program waits for messages.
class RecordingPeer : public winlayer::Peer {
public:
    void created(HWND) override { log += "created "; }
    void destroyed(HWND) override { log += "destroyed "; }
    void moved(HWND) override { log += "moved "; }
    void restacked(HWND) override { log += "restacked "; }
    void shown(HWND, bool visible) override { log += visible ? "shown " : "hidden "; }
    void enabled(HWND, bool enabled) override { log += enabled ? "enabled " : "disabled "; }
    void textChanged(HWND) override { log += "text "; }
    void stateChanged(HWND) override { log += "state "; }
    void focused(HWND window) override { log += window != nullptr ? "focused " : "unfocused "; }
    void painted(HWND) override { log += "painted "; }
    void wait() override {
        ++waits;
        if (onWait) {
            onWait();
        } else {
            Peer::wait();
        }
    }
    std::string take() { return std::exchange(log, {}); }

    std::string log;
    int waits = 0;
    std::function<void()> onWait;
};

HWND makeButton(HWND parent, const RECT& place, DWORD style = BS_PUSHBUTTON) {
    return CreateWindowExA(0, "BUTTON", "", style | WS_CHILD | WS_VISIBLE, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent,
                           reinterpret_cast<HMENU>(1), nullptr, nullptr);
}

class WindowsMachine : public testing::Test {
protected:
    HWND makeFrame(DWORD style = WS_POPUP | WS_VISIBLE) {
        return recorder.create(style, {100, 50, 400, 250});
    }

    ScopedMachine machine;
    WindowRecorder recorder;
};

TEST_F(WindowsMachine, ThePeerHearsOfEveryChange) {
    RecordingPeer peer;
    machine->windows.setPeer(&peer);
    const HWND frame = makeFrame();
    makeButton(frame, {10, 40, 60, 60});
    const HWND button = makeButton(frame, {10, 10, 60, 30}, BS_AUTOCHECKBOX);
    peer.take();
    for (int times = 0; times < 2; ++times) {
        SetWindowPos(button, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    SetWindowTextA(button, "a");
    MoveWindow(button, 11, 10, 50, 20, TRUE);
    MoveWindow(button, 11, 10, 50, 20, TRUE);
    SendMessageA(button, BM_SETCHECK, BST_CHECKED, 0);
    SendMessageA(button, BM_SETCHECK, BST_CHECKED, 0);
    EnableWindow(button, FALSE);
    ShowWindow(button, SW_HIDE);
    EXPECT_EQ(peer.take(), "restacked text moved state disabled hidden ");
    const HDC context = GetDC(frame);
    EXPECT_EQ(machine->windows.contextCount(), 1u);
    ReleaseDC(frame, context);
    DestroyWindow(frame);
    EXPECT_NE(peer.take().find("painted hidden destroyed "), std::string::npos);
    EXPECT_EQ(machine->windows.contextCount(), 0u);
}

TEST_F(WindowsMachine, TheMouseReachesTheDeepestEnabledWindow) {
    const HWND frame = makeFrame();
    const HWND button = makeButton(frame, {10, 10, 60, 30});
    CreateWindowExA(0, "STATIC", "", WS_CHILD | WS_VISIBLE, 100, 10, 50, 20, frame, nullptr, nullptr,
                    nullptr);
    const auto clickAt = [&](POINT point) {
        winlayer::mousePress(frame, point);
        winlayer::mouseRelease(frame, point);
        pumpMessages();
        return recorder.take({WM_COMMAND});
    };
    EXPECT_EQ(clickAt({15, 15}), "command");
    EXPECT_EQ(GetFocus(), button);
    // Pressed inside and let go outside: the press was captured, and counts for nothing.
    winlayer::mousePress(frame, {15, 15});
    pumpMessages();
    winlayer::mouseRelease(frame, {200, 100});
    pumpMessages();
    EXPECT_EQ(recorder.take({WM_COMMAND}), "");
    EnableWindow(button, FALSE);
    EXPECT_EQ(clickAt({15, 15}), "");
    recorder.clear();
    winlayer::mousePress(frame, {110, 15});  // through the static text
    pumpMessages();
    ASSERT_FALSE(recorder.entries().empty());
    EXPECT_EQ(recorder.entries().back().message, UINT{WM_LBUTTONDOWN});
    EXPECT_EQ(recorder.entries().back().lParam, MAKELPARAM(110, 15));
    EnableWindow(frame, FALSE);
    recorder.clear();
    winlayer::mousePress(frame, {200, 100});
    winlayer::requestClose(frame);
    pumpMessages();
    EXPECT_TRUE(recorder.entries().empty());
}

TEST_F(WindowsMachine, KeysGoToTheFocusAndKeepTheirState) {
    const HWND frame = makeFrame();
    SetFocus(frame);
    recorder.clear();
    winlayer::keyDown(VK_SHIFT);
    winlayer::keyDown('A');
    winlayer::keyUp('A');
    winlayer::keyUp(VK_SHIFT);
    winlayer::keyDown('A', true);
    EXPECT_FALSE(machine->windows.keysDown[VK_SHIFT]);  // not before the message is taken
    MSG message{};
    ASSERT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_TRUE(machine->windows.keysDown[VK_SHIFT]);
    TranslateMessage(&message);
    pumpMessages();
    std::string characters;
    for (const auto& entry : recorder.entries()) {
        if (entry.message == WM_CHAR || entry.message == WM_SYSCHAR) {
            characters += static_cast<char>(entry.wParam);
        }
    }
    EXPECT_EQ(characters, "Aa");
    EXPECT_FALSE(machine->windows.keysDown[VK_SHIFT]);
}

TEST_F(WindowsMachine, AWaitingThreadIsWokenFromAnother) {
    const HWND frame = makeFrame(WS_POPUP);
    pumpMessages();
    std::thread poster([&] { PostMessageA(frame, WM_APP, 3, 4); });
    MSG message{};
    EXPECT_GT(GetMessageA(&message, frame, 0, 0), 0);
    poster.join();
    EXPECT_EQ(message.wParam, WPARAM{3});
    LRESULT sent = 1;
    DWORD error = 0;
    std::thread([&] {
        sent = SendMessageA(frame, WM_GETTEXTLENGTH, 0, 0);
        error = GetLastError();
    }).join();
    EXPECT_EQ(sent, 0);
    EXPECT_EQ(error, ERROR_ACCESS_DENIED);
}

TEST_F(WindowsMachine, AnotherThreadsWindowDoesNotKeepAnOwnersOthersAlive) {
    const HWND frame = makeFrame();
    const HWND mine = recorder.create(WS_POPUP, {0, 0, 10, 10}, frame);
    HWND theirs = nullptr;
    std::thread([&] { theirs = recorder.create(WS_POPUP, {0, 0, 10, 10}, frame); }).join();
    EXPECT_TRUE(DestroyWindow(frame));
    EXPECT_FALSE(IsWindow(mine));
    EXPECT_TRUE(IsWindow(theirs));
}

TEST_F(WindowsMachine, AHandleOfADestroyedWindowIsNotReused) {
    const HWND first = makeFrame(WS_POPUP);
    DestroyWindow(first);
    for (int i = 0; i < 1000; ++i) {
        const HWND next = makeFrame(WS_POPUP);
        ASSERT_NE(next, first);
        ASSERT_FALSE(IsWindow(first));
        DestroyWindow(next);
    }
    EXPECT_EQ(machine->windows.count(), 0u);
    for (const std::uintptr_t foreign :
         {std::uintptr_t{1}, std::uintptr_t{2}, std::uintptr_t{0x7FFFFFFF}, ~std::uintptr_t{0}}) {
        EXPECT_FALSE(IsWindow(reinterpret_cast<HWND>(foreign)));
    }
}

TEST_F(WindowsMachine, TheSurfaceIsErasedAndAsLargeAsTheClientArea) {
    WNDCLASSA wanted{};
    wanted.lpfnWndProc = DefWindowProcA;
    wanted.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<ULONG_PTR>(COLOR_WINDOW + 1));
    wanted.lpszClassName = "White";
    RegisterClassA(&wanted);
    const HWND window = CreateWindowExA(0, "White", "", WS_POPUP | WS_VISIBLE, 0, 0, 30, 20, nullptr, nullptr,
                                        nullptr, nullptr);
    UpdateWindow(window);
    const auto surface = machine->windows.find(window)->surface;
    ASSERT_NE(surface, nullptr);
    EXPECT_EQ(surface->pixels, std::vector<std::uint32_t>(30 * 20, 0xFFFFFFFF));
    MoveWindow(window, 0, 0, 7, 5, TRUE);
    UpdateWindow(window);
    EXPECT_EQ(machine->windows.find(window)->surface->pixels.size(), 35u);
    DestroyWindow(window);
    UnregisterClassA("White", nullptr);
}

// Every refused call says why and leaves no window behind.
TEST_F(WindowsMachine, TheGateFailsCallsOfWindows) {
    const HWND frame = makeFrame(WS_POPUP);
    MSG message{};
    RECT rectangle{};
    PAINTSTRUCT paint{};
    const std::vector<std::pair<const char*, std::function<bool()>>> calls = {
        {"CreateWindowExA",
         [&] {
             return makeButton(frame, {0, 0, 1, 1}) == nullptr;
         }},
        {"SetPropA", [&] { return SetPropA(frame, "p", frame) == FALSE; }},
        {"SetWindowTextA", [&] { return SetWindowTextA(frame, "x") == FALSE; }},
        {"PostMessageA", [&] { return PostMessageA(frame, WM_APP, 0, 0) == FALSE; }},
        {"GetMessageA", [&] { return GetMessageA(&message, nullptr, 0, 0) == -1; }},
        {"GetClientRect", [&] { return GetClientRect(frame, &rectangle) == FALSE; }},
        {"SetWindowPos", [&] { return SetWindowPos(frame, nullptr, 1, 1, 1, 1, 0) == FALSE; }},
        {"BeginPaint", [&] { return BeginPaint(frame, &paint) == nullptr; }},
        {"MessageBoxA", [&] { return MessageBoxA(frame, "t", "c", MB_OK) == 0; }},
        {"DestroyWindow", [&] { return DestroyWindow(frame) == FALSE; }},
    };
    for (const auto& [name, refused] : calls) {
        SCOPED_TRACE(name);
        machine->gate.failFunction(name, ERROR_NOT_ENOUGH_MEMORY);
        SetLastError(0);
        EXPECT_TRUE(refused());
        EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
        machine->gate.reset();
    }
    EXPECT_EQ(machine->windows.count(), 1u);
    EXPECT_EQ(GetWindowTextLengthA(frame), 0);
    DestroyWindow(frame);
}

}  // namespace
