// The frame with a page of the test's own: what each message of the protocol does, and what the page is sent.
#include "host/frame/wizard_frame.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "host/frame/frame_resources.h"
#include "host/frame/text.h"

namespace {

using namespace host;

using Record = std::vector<std::string>;

// A page that writes down the messages it gets; the frame's events go to the same record.
class FrameTest : public testing::Test, public FrameEvents {
protected:
    FrameTest() {
        WNDCLASSA pageClass{};
        pageClass.lpfnWndProc = pageProcedure;
        pageClass.hInstance = GetModuleHandleA(nullptr);
        pageClass.lpszClassName = "FrameTestPage";
        RegisterClassA(&pageClass);
        frame = std::make_unique<WizardFrame>(pageClass.hInstance, *this);
        page = CreateWindowExA(0, "FrameTestPage", "", WS_CHILD, 0, 0, 1, 1, frame->window(), nullptr,
                               pageClass.hInstance, nullptr);
        SetPropA(page, "TEST", &record);
        frame->show();
    }
    ~FrameTest() override {
        frame.reset();
        UnregisterClassA("FrameTestPage", GetModuleHandleA(nullptr));
    }

    static LRESULT CALLBACK pageProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* const record = static_cast<Record*>(GetPropA(window, "TEST"));
        if (record && message == WM_COMMAND) record->push_back("command " + std::to_string(wParam));
        const HANDLE home = GetPropA(window, "PRESS ON NEXT");
        if (home && message == WM_COMMAND && wParam == static_cast<WPARAM>(Button::next))
            SendMessageA(static_cast<HWND>(home), BM_CLICK, 0, 0);
        if (record && message == WM_SIZE) record->push_back("size");
        return DefWindowProcA(window, message, wParam, lParam);
    }

    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessageA(frame->window(), message, wParam, lParam);
    }
    void makeCurrent(DWORD buttons) {
        send(messageCurrentPage, 0, reinterpret_cast<LPARAM>(page));
        ShowWindow(page, SW_SHOW);
        send(messageSetButtons, buttons);
        send(messageEnableHome, TRUE);
        record.clear();
    }
    HWND control(int id) const { return GetDlgItem(frame->window(), id); }
    HWND control(Button button) const { return control(static_cast<int>(button)); }
    bool shown(int id) const { return IsWindowVisible(control(id)) != FALSE; }

    void pageShown(HWND window, WPARAM argument) override {
        record.push_back(std::string(window == page ? "page " : "stranger ") + std::to_string(argument));
    }
    void buttonsChanged() override { record.emplace_back("buttons"); }
    void progressRange(int low, int high) override {
        record.push_back("range " + std::to_string(low) + " " + std::to_string(high));
    }
    void progress(int position) override { record.push_back("progress " + std::to_string(position)); }
    void status(const std::string& text) override { record.push_back("status " + text); }
    void leaving() override { record.emplace_back("leaving"); }

    Record record;
    std::unique_ptr<WizardFrame> frame;
    HWND page = nullptr;
};

TEST_F(FrameTest, OffersAndEnablesTheButtonsOfTheMasks) {
    struct Row {
        Button button;
        bool offered;
        bool enabled;
    };
    const auto expect = [this](std::initializer_list<Row> rows) {
        for (const Row& row : rows) {
            EXPECT_EQ(IsWindowVisible(control(row.button)) != FALSE, row.offered)
                << static_cast<int>(row.button);
            EXPECT_EQ(IsWindowEnabled(control(row.button)) != FALSE, row.enabled)
                << static_cast<int>(row.button);
        }
    };
    makeCurrent(0x212);
    expect({{Button::cancel, true, true},
            {Button::back, false, true},
            {Button::next, true, true},
            {Button::finish, false, true},
            {Button::help, true, true}});
    send(messageSetButtons, 0x1A);
    send(messageEnableButtons, 0, 0x1A);
    expect({{Button::cancel, true, false},
            {Button::back, true, false},
            {Button::next, true, false},
            {Button::finish, false, true},
            {Button::help, false, true}});
    send(messageSetButtons, 0x282);
    expect({{Button::cancel, true, false}, {Button::finish, true, true}, {Button::next, false, false}});
    send(messageEnableButtons, 0x282, 0);
    expect({{Button::cancel, true, true}, {Button::finish, true, true}, {Button::help, true, true}});
}

TEST_F(FrameTest, SendsThePageTheCommandsOfButtonsThatCanBePressed) {
    makeCurrent(0x212);
    EXPECT_TRUE(frame->press(Button::next));
    EXPECT_TRUE(frame->press(Button::help));
    EXPECT_FALSE(frame->press(Button::back)) << "not offered";
    send(messageEnableButtons, 0, 0x010);
    EXPECT_FALSE(frame->press(Button::next)) << "disabled";
    send(WM_COMMAND, static_cast<WPARAM>(Button::next));
    send(WM_COMMAND, 12345);
    EXPECT_EQ(record, (Record{"command 33772", "command 33777", "buttons"}));
}

TEST_F(FrameTest, TheKeyboardReachesTheButtons) {
    makeCurrent(0x21A);
    const auto key = [this](UINT message, WPARAM wParam, LPARAM lParam) {
        PostMessageA(GetFocus(), message, wParam, lParam);
        frame->dispatchWaiting();
    };
    constexpr LPARAM alt = LPARAM{1} << 29;
    key(WM_KEYDOWN, VK_RETURN, 1);
    send(messageSetButtons, 0x282);
    key(WM_KEYDOWN, VK_RETURN, 1);
    EXPECT_EQ(record, (Record{"command 33772", "buttons", "command 33775"}))
        << "Enter presses Next or, where it is not offered, Finish";
    send(messageSetButtons, 0x21A);
    record.clear();
    key(WM_SYSCHAR, 'z', alt);
    key(WM_SYSCHAR, 'H', alt);
    key(WM_KEYDOWN, VK_ESCAPE, 1);
    EXPECT_EQ(record, (Record{"command 33771", "command 33777", "command 33769"}));
}

TEST_F(FrameTest, APageThatComesTakesTheKeyboardByItsFirstTabStop) {
    makeCurrent(0x21A);
    EXPECT_EQ(GetFocus(), control(Button::next)) << "the page has no tab stop";
    const auto addRadio = [this](DWORD style) {
        return CreateWindowExA(0, "BUTTON", "", WS_CHILD | WS_VISIBLE | BS_AUTORADIOBUTTON | style, 0, 0, 9,
                               9, page, nullptr, GetModuleHandleA(nullptr), nullptr);
    };
    addRadio(0);
    const HWND stop = addRadio(WS_TABSTOP);
    makeCurrent(0x21A);
    EXPECT_EQ(GetFocus(), stop);
    SetFocus(control(Button::help));
    send(messageSetButtons, 0x212);
    EXPECT_EQ(GetFocus(), control(Button::help)) << "only a page that comes takes it";
    SetFocus(stop);
    ShowWindow(page, SW_HIDE);
    SetFocus(frame->window());  // not every Windows takes the focus from a control whose parent is hidden
    EXPECT_EQ(GetFocus(), control(Button::next)) << "not the first control of the frame, which is Home";
}

TEST_F(FrameTest, TheKeyboardIsNeverLeftOnHomeByItself) {
    makeCurrent(0x1A);
    send(messageEnableHome, FALSE);
    send(messageEnableButtons, 0, 0x1A);
    EXPECT_EQ(GetFocus(), frame->window());
    send(messageEnableHome, TRUE);
    EXPECT_EQ(GetFocus(), frame->window()) << "Enter would leave";
    send(messageEnableButtons, 0x1A, 0);
    EXPECT_EQ(GetFocus(), control(Button::next));

    const HWND other = CreateWindowExA(0, "FrameTestPage", "", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr,
                                       nullptr, GetModuleHandleA(nullptr), nullptr);
    SetActiveWindow(other);
    send(messageSetButtons, 0x282);
    DestroyWindow(other);
    EXPECT_EQ(GetActiveWindow(), frame->window());
    EXPECT_EQ(GetFocus(), control(Button::finish)) << "Next went meanwhile";
}

TEST_F(FrameTest, ShowsProgressAndStatus) {
    makeCurrent(0x1A);
    EXPECT_FALSE(shown(CONTROL_PROGRESS));
    send(messageProgressRange, 0, MAKELPARAM(0, 100));
    send(messageProgress, 0, 42);
    EXPECT_TRUE(shown(CONTROL_PROGRESS));
    EXPECT_EQ(SendMessageA(control(CONTROL_PROGRESS), PBM_GETPOS, 0, 0), 42);
    const std::string text = "L\xE4uft & l\xE4uft";
    send(messageStatus, 0, reinterpret_cast<LPARAM>(text.c_str()));
    EXPECT_EQ(windowText(control(CONTROL_STATUS)), text);
    send(messageStatus, 0, reinterpret_cast<LPARAM>(""));
    EXPECT_EQ(windowText(control(CONTROL_STATUS)), "");
    send(messageProgressRange);
    EXPECT_FALSE(shown(CONTROL_PROGRESS));
    EXPECT_EQ(record, (Record{"range 0 100", "progress 42", "status " + text, "status ", "range 0 0"}));
}

TEST_F(FrameTest, AnswersWithABoldHeadingFont) {
    LOGFONTA heading{};
    ASSERT_NE(GetObjectA(reinterpret_cast<HGDIOBJ>(send(messageHeadingFont)), sizeof(heading), &heading), 0);
    LOGFONTA text{};
    ASSERT_NE(GetObjectA(reinterpret_cast<HGDIOBJ>(send(WM_GETFONT)), sizeof(text), &text), 0);
    EXPECT_GT(heading.lfWeight, text.lfWeight);
    EXPECT_EQ(heading.lfHeight, text.lfHeight);
}

TEST_F(FrameTest, LaysThePageOutAboveTheStatusLine) {
    makeCurrent(0x212);
    send(messageLayOutPage, 0, reinterpret_cast<LPARAM>(page));
    send(messageLayOutPage, 0, reinterpret_cast<LPARAM>(page));
    EXPECT_EQ(record, (Record{"size", "size"})) << "also when its size stays the same";

    const auto bounds = [](HWND window) {
        RECT rectangle{};
        GetWindowRect(window, &rectangle);
        return rectangle;
    };
    const RECT before = bounds(page);
    const RECT outer = bounds(frame->window());
    EXPECT_LE(before.bottom, bounds(control(CONTROL_STATUS)).top);
    EXPECT_LE(bounds(control(CONTROL_STATUS)).right, bounds(control(CONTROL_PROGRESS)).left);
    EXPECT_LE(bounds(control(CONTROL_PROGRESS)).bottom, bounds(control(Button::next)).top);
    record.clear();
    SetWindowPos(frame->window(), nullptr, 0, 0, outer.right - outer.left + 100,
                 outer.bottom - outer.top + 60, SWP_NOMOVE | SWP_NOZORDER);
    const RECT after = bounds(page);
    EXPECT_EQ(after.right - after.left, before.right - before.left + 100);
    EXPECT_EQ(after.bottom - after.top, before.bottom - before.top + 60);
    EXPECT_EQ(record, Record{"size"});
    SetWindowPos(frame->window(), nullptr, 0, 0, 10, 10, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_LT(bounds(control(Button::home)).right, bounds(control(Button::back)).left);
    RECT largestPage{0, 0, 370, 180};
    MapDialogRect(frame->window(), &largestPage);
    EXPECT_EQ(bounds(page).bottom - bounds(page).top, largestPage.bottom) << "no smaller than a page needs";
    EXPECT_GT(before.bottom - before.top, largestPage.bottom) << "with air around its picture at first";
}

TEST_F(FrameTest, IsLeftAtThePagesWishOrByHomeOnce) {
    makeCurrent(0x212);
    PostMessageA(frame->window(), messageLeave, 0, 0);
    EXPECT_FALSE(frame->left());
    frame->dispatchWaiting();
    EXPECT_TRUE(frame->left());
    EXPECT_TRUE(frame->press(Button::home));
    EXPECT_EQ(record, Record{"leaving"});
}

TEST_F(FrameTest, HomeStopsAPageAtWork) {
    makeCurrent(0x212);
    SetPropA(page, "PRESS ON NEXT", control(Button::home));
    frame->press(Button::next);
    EXPECT_EQ(record, (Record{"command 33772", "command 33769", "leaving"}));
}

TEST_F(FrameTest, HomeCanBeSwitchedOff) {
    makeCurrent(0x212);
    send(messageEnableHome, FALSE);
    EXPECT_FALSE(frame->press(Button::home));
    EXPECT_FALSE(frame->left());
    send(messageEnableHome, TRUE);
    EXPECT_TRUE(frame->press(Button::home));
    EXPECT_TRUE(frame->left());
}

TEST_F(FrameTest, ClosingCancelsThePageOrLeavesAnEmptyFrame) {
    makeCurrent(0x212);
    send(WM_CLOSE);
    frame->dispatchWaiting();
    EXPECT_EQ(record, Record{"command 33769"});
    send(messageEnableButtons, 0, 0x002);
    send(WM_CLOSE);
    frame->dispatchWaiting();
    EXPECT_EQ(record, (Record{"command 33769", "buttons"})) << "a page that cannot be cancelled stays";
    send(messagePageGone, 0, reinterpret_cast<LPARAM>(page));
    send(WM_CLOSE);
    frame->dispatchWaiting();
    EXPECT_TRUE(frame->left());
    EXPECT_FALSE(frame->page());
}

TEST_F(FrameTest, ForgetsOnlyThePageThatGoes) {
    makeCurrent(0x212);
    send(messagePageGone, 0, reinterpret_cast<LPARAM>(control(Button::next)));
    EXPECT_EQ(frame->page(), page);
}

}  // namespace
