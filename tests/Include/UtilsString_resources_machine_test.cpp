#include <gtest/gtest.h>

#include "UtilsString.h"
#include "winlayer/machine.h"

namespace {

using UTILS::UtilsString;

class StringResources : public ::testing::Test {
protected:
    StringResources() {
        machine->modules.addString(nullptr, 100, "own");
        module = machine->modules.add("other.dll", "C:\\other.dll");
        machine->modules.addString(module, 100, "the other's text");
        machine->modules.addString(module, 101, "%1!u! of %2");
        machine->modules.addString(module, 102, longText + "%1");
    }

    winlayer::ScopedMachine machine;
    HMODULE module = nullptr;
    const std::string longText = std::string(3000, 'l');
};

TEST_F(StringResources, AreAppendedUpToTheMaximum) {
    UtilsString text("> ");
    EXPECT_EQ(text.LoadString(module, 100, 255), 16);
    EXPECT_STREQ(text.c_str(), "> the other's text");
    EXPECT_EQ(text.LoadString(nullptr, 100, 255), 3);
    EXPECT_STREQ(text.c_str(), "> the other's textown");
    UtilsString part;
    EXPECT_EQ(part.LoadString(module, 100, 3), 3);
    EXPECT_STREQ(part.c_str(), "the");
    EXPECT_EQ(part.LoadString(module, 999, 255), 0);
    EXPECT_EQ(part.LoadString(module, 100, 0), 0);
    EXPECT_STREQ(part.c_str(), "the");
    EXPECT_THROW(part.LoadString(module, 100, -1), std::bad_alloc);
    EXPECT_THROW(part.LoadString(module, 100, 0x7FFFFFFF), std::bad_alloc);
}

TEST_F(StringResources, AreFormats) {
    UtilsString text;
    EXPECT_EQ(text.FormatMessage(module, 101, 3u, "four"), 9u);
    EXPECT_STREQ(text.c_str(), "3 of four");
    EXPECT_EQ(text.FormatMessage(nullptr, 100), 3u);
    EXPECT_STREQ(text.c_str(), "3 of fourown");
    UtilsString whole;
    EXPECT_EQ(whole.FormatMessage(module, 102, "end"), 3003u);
    EXPECT_EQ(whole.GetSTLString(), longText + "end");
    EXPECT_EQ(whole.FormatMessage(module, 999), 0u);
}

TEST_F(StringResources, FailingSystemLeavesTheText) {
    UtilsString text("kept %1");
    const UTILS::WideText wide = {'w'};
    machine->gate.failFunction("FormatMessageA", ERROR_NOT_ENOUGH_MEMORY);
    machine->gate.failFunction("LoadStringA", ERROR_NOT_ENOUGH_MEMORY);
    machine->gate.failFunction("WideCharToMultiByte", ERROR_INVALID_PARAMETER);
    machine->gate.failFunction("MultiByteToWideChar", ERROR_INVALID_PARAMETER);
    EXPECT_EQ(text.SetErrorMsg(5), 0u);
    EXPECT_EQ(text.LoadString(module, 100, 50), 0);
    EXPECT_EQ(text.FormatCurrentString("x"), 0u);
    text = wide;
    text += wide;
    text.ConvertFromWideChar(wide, 1);
    EXPECT_STREQ(text.c_str(), "kept %1");
    EXPECT_EQ(text.GetSTLWString(), UTILS::WideText());
    EXPECT_EQ(text.w_str()[0], 0);
}

}  // namespace
