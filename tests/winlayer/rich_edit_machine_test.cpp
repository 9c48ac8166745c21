#include <windows.h>

#include <gtest/gtest.h>
#include <richedit.h>

#include <algorithm>
#include <cstring>

#include "Include/ansi_literal.h"
#include "support/window_recorder.h"
#include "winlayer/dialogs/control_rich_edit.h"
#include "winlayer/dialogs/formatted_text.h"
#include "winlayer/machine.h"
#include "winlayer/windows/window_tree.h"

namespace {

using namespace UTILS::literals;

using winlayer::readRtf;
using winlayer::RichText;
using winlayer::ScopedMachine;

std::string textOf(std::string_view rtf) {
    const auto content = readRtf(rtf, 1252);
    return content ? content->text : "(none)";
}

TEST(Rtf, CharactersAreReadInAllTheirForms) {
    EXPECT_EQ(textOf("{\\rtf1\\ansi Daten\\'fcbung\\par zwei}"), "Datenübung\r\nzwei"_ansi);
    EXPECT_EQ(textOf("{\\rtf1 a\\par\\b\\par}"), "a\r\n") << "the end of the last paragraph is no text";
    EXPECT_EQ(textOf("{\\rtf1\\par}"), "");
    EXPECT_EQ(textOf("{\\rtf1 a\\{b\\}\\\\c\\tab d\\~e\nf}"), "a{b}\\c\td\240ef");
    EXPECT_EQ(textOf("{\\rtf1 \\bullet\\emdash\\ldblquote x}"), "\x95\x97\x93x");
    EXPECT_EQ(textOf("{\\rtf1 \\u252?\\u8364\\'80!{\\uc0\\u228 b}}"), "\374\200!\344b");
    EXPECT_EQ(textOf("{\\rtf1{\\info{\\title T}}{\\*\\unknown x}{\\colortbl;\\red0;}{\\pntext\\'b7\\tab}y}"),
              "y");
    EXPECT_EQ(textOf("{\\rtf1 a{\\pict\\bin3 }}}b}c}"), "ac");
}

TEST(Rtf, FormatsHoldWithinTheirGroups) {
    const auto content = readRtf(
        "{\\rtf1\\deff0{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\froman Times New Roman;}}\\fs20 a{\\b b\\i "
        "c}d\\f1\\b e\\b0\\fs36 f\\plain g}",
        1252);
    ASSERT_TRUE(content.has_value());
    EXPECT_EQ(content->text, "abcdefg");
    std::string runs;
    for (const auto& run : content->runs) {
        runs += std::to_string(run.start) + run.format.face.substr(0, 1) +
                std::to_string(run.format.halfPoints) + (run.format.bold ? "b" : "") +
                (run.format.italic ? "i" : "") + ' ';
    }
    EXPECT_EQ(runs, "0A20 1A20b 2A20bi 3A20 4T20b 5T36 6A24 ");
}

TEST(Rtf, ParagraphsCarryBulletsIndentsAndSpaces) {
    const auto content = readRtf(
        "{\\rtf1\\sb40 "
        "Kopf\\par\\pard\\sa120{\\pntext\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnf1{\\pntxtb\\'b7}}\\fi-200\\li400 "
        "eins\\par zwei\\par\\pard\\qc Ende}",
        1252);
    ASSERT_TRUE(content.has_value());
    EXPECT_EQ(content->text, "Kopf\r\neins\r\nzwei\r\nEnde");
    ASSERT_EQ(content->paragraphs.size(), 4u);
    const std::vector<bool> bullets = {false, true, true, false};
    for (std::size_t i = 0; i < bullets.size(); ++i) {
        EXPECT_EQ(content->paragraphs[i].format.bullet, bullets[i]) << i;
    }
    EXPECT_EQ(content->paragraphs[1].start, 6u);
    EXPECT_EQ(content->paragraphs[0].format.spaceBefore, 40);
    EXPECT_EQ(content->paragraphs[2].format.spaceAfter, 120);
    EXPECT_EQ(content->paragraphs[3].format.spaceAfter, 0);
    EXPECT_EQ(content->paragraphs[2].format.leftIndent, 400);
    EXPECT_EQ(content->paragraphs[2].format.firstIndent, -200);
    EXPECT_EQ(content->paragraphs[3].format.alignment, winlayer::TextAlignment::Centre);
}

// Cut off anywhere it is not RTF; numbers beyond measure do no harm.
TEST(Rtf, WhatEndsTooEarlyIsRefused) {
    const std::string whole =
        "{\\rtf1{\\fonttbl{\\f0 Arial;}}\\b a\\'fc\\u228?\\bin2 xy{\\*\\pn\\pnlvlblt}\\par}";
    ASSERT_TRUE(readRtf(whole, 1252).has_value());
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(readRtf(whole.substr(0, size), 1252).has_value()) << size;
    }
    EXPECT_FALSE(readRtf("plain", 1252).has_value());
    EXPECT_FALSE(readRtf("{\\rtf1\\bin99999999}", 1252).has_value());
    EXPECT_EQ(textOf("{\\rtf1\\fs99999999999\\li-1\\'41}"), "A");
}

struct Source {
    std::string_view text;
    std::size_t pieces;  // bytes at a time
    DWORD error;         // at the end
};

DWORD CALLBACK give(DWORD_PTR cookie, LPBYTE buffer, LONG size, LONG* given) {
    auto& source = *reinterpret_cast<Source*>(cookie);
    const std::size_t count = std::min({source.text.size(), source.pieces, static_cast<std::size_t>(size)});
    std::memcpy(buffer, source.text.data(), count);
    source.text.remove_prefix(count);
    *given = static_cast<LONG>(count);
    return count == 0 ? source.error : 0;
}

class RichEditMachine : public ::testing::Test {
protected:
    void SetUp() override {
        module_ = LoadLibraryA("RICHED32.DLL");
        frame_ = recorder_.create(WS_POPUP, {0, 0, 400, 300});
        edit_ = CreateWindowExA(0, "RICHEDIT", "alt", WS_CHILD | WS_VISIBLE | ES_MULTILINE, 0, 0, 100, 100,
                                frame_, nullptr, nullptr, nullptr);
        ASSERT_NE(edit_, nullptr);
    }
    void TearDown() override {
        DestroyWindow(frame_);
        FreeLibrary(module_);
    }

    LRESULT stream(WPARAM format, Source source, DWORD& error) {
        EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&source), 0, give};
        const LRESULT result = SendMessageA(edit_, EM_STREAMIN, format, reinterpret_cast<LPARAM>(&stream));
        error = stream.dwError;
        return result;
    }
    std::string text() const {
        char buffer[100] = "";
        GetWindowTextA(edit_, buffer, sizeof buffer);
        return buffer;
    }

    ScopedMachine machine_;
    WindowRecorder recorder_;
    HMODULE module_ = nullptr;
    HWND frame_ = nullptr;
    HWND edit_ = nullptr;
};

TEST_F(RichEditMachine, TakesTextAndRtfFromAStream) {
    DWORD error = 1;
    EXPECT_EQ(stream(SF_RTF, {"{\\rtf1\\b Retter\\par}", 3, 0}, error), 6);
    EXPECT_EQ(error, 0u);
    EXPECT_EQ(text(), "Retter");
    const auto window = winlayer::findWindow(edit_);
    const auto* control = dynamic_cast<winlayer::RichEditControl*>(window->control.get());
    ASSERT_NE(control, nullptr);
    EXPECT_TRUE(control->content().runs.at(0).format.bold);
    EXPECT_EQ(stream(SF_TEXT, {"eins\r\nzwei", 100, 0}, error), 10);
    EXPECT_EQ(control->content().paragraphs.size(), 2u);
    SetWindowTextA(edit_, "neu");
    EXPECT_EQ(control->content().text, "neu");
}

TEST_F(RichEditMachine, AFailedStreamLeavesTheText) {
    DWORD error = 0;
    EXPECT_EQ(stream(SF_RTF, {"{\\rtf1 neu}", 4, 55}, error), 0);
    EXPECT_EQ(error, 55u);
    EXPECT_EQ(stream(SF_RTF, {"kein RTF", 100, 0}, error), 0);
    EXPECT_NE(error, 0u);
    EXPECT_EQ(text(), "alt");
}

}  // namespace
