#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include "UtilsString.h"
#include "support/files.h"
#include "support/text_model.h"
#include "thrown_message.h"

namespace {

using UTILS::UtilsString;

std::vector<std::string> all(const UtilsString& strings) {
    std::vector<std::string> texts;
    for (DWORD i = 0; i < strings.GetNumberOfStrings(); ++i) {
        texts.emplace_back(strings.GetStringNumber(i));
    }
    return texts;
}

using Texts = std::vector<std::string>;

TEST(SeveralStrings, AreAddedAndSelected) {
    UtilsString strings("zero");
    strings.AddString("one");
    strings.AddString(strings);
    EXPECT_EQ(all(strings), (Texts{"zero", "one", "zero"}));
    EXPECT_EQ(strings.GetCurrentString(), 0u);
    EXPECT_STREQ(strings[1].c_str(), "one");
    EXPECT_EQ(strings.GetCurrentString(), 1u);
    strings.Append("!");
    EXPECT_STREQ(strings.SetCurrentString(2).c_str(), "zero");
    EXPECT_EQ(all(strings), (Texts{"zero", "one!", "zero"}));
}

TEST(SeveralStrings, RefuseAnIndexBeyondTheEnd) {
    UtilsString one("x");
    const auto message = [](auto operation) { return thrownMessage<std::out_of_range>(operation); };
    const std::string inString = R"(; File:  ..\..\Include\UtilsString)";
    EXPECT_EQ(message([&] { one.SetCurrentString(1); }), "Out Of Range Error - 1:1" + inString);
    EXPECT_EQ(message([&] { one[5]; }), "Out Of Range Error - 5:1" + inString);
    EXPECT_EQ(message([&] { one.GetStringNumber(1); }), "Out Of Range Error - 1:1" + inString);
    EXPECT_EQ(message([&] { one.RemoveString(1); }), "Out Of Range Error - 1" + inString);
    EXPECT_THROW(one[-1], std::out_of_range);
    EXPECT_THROW(one.SetCurrentString(0xFFFFFFFF), std::out_of_range);
    EXPECT_EQ(one.GetCurrentString(), 0u);
}

TEST(SeveralStrings, AreRemoved) {
    UtilsString strings(std::string("a"));
    for (const char* const text : {"b", "c", "d"}) {
        strings.AddString(text);
    }
    strings.SetCurrentString(3);
    strings.RemoveString();
    EXPECT_EQ(all(strings), (Texts{"a", "b", "c"}));
    EXPECT_EQ(strings.GetCurrentString(), 2u);
    strings.RemoveString(0);
    EXPECT_EQ(all(strings), (Texts{"b", "c"}));
    EXPECT_STREQ(strings.c_str(), "c");
    strings.SetCurrentString(0);
    strings.RemoveString(1);
    EXPECT_EQ(all(strings), Texts{"b"});
    EXPECT_EQ(strings.GetCurrentString(), 0u);
    strings.RemoveString();
    EXPECT_EQ(all(strings), Texts{""}) << "one string stays";
    strings.Append("alive");
    EXPECT_EQ(all(strings), Texts{"alive"});
}

TEST(SplitData, MakesAStringOfEachFieldThatIsNotEmpty) {
    const UtilsString source("HKLM\\\\Software\\X\\");
    UtilsString fields("old");
    fields.SplitData(source, "\\", 0);
    EXPECT_EQ(all(fields), (Texts{"HKLM", "Software", "X"}));
    fields.SetCurrentString(2);
    fields.SplitData(UtilsString("1,2"), ",", 0);
    EXPECT_EQ(all(fields), (Texts{"1", "2"}));
    EXPECT_EQ(fields.GetCurrentString(), 1u);
    fields.SplitData(UtilsString("3,,4"), ",", 1);
    EXPECT_EQ(all(fields), (Texts{"1", "2", "3", "4"}));
    fields.SplitData(UtilsString("none"), ",", 1);
    EXPECT_EQ(fields.GetNumberOfStrings(), 4u);
    fields.SplitData(UtilsString("none"), ",", 0);
    EXPECT_EQ(all(fields), Texts{""}) << "a text without delimiter has no fields";
}

TEST(SplitData, SplitsItself) {
    UtilsString text("a;b;c");
    text.SplitData(";", 0);
    EXPECT_EQ(all(text), (Texts{"a", "b", "c"}));
    text = "x;y";
    text.SplitData(text, ";", 1);
    EXPECT_EQ(all(text), (Texts{"x;y", "b", "c", "x", "y"}));
    UtilsString own("a,b,");
    own.SplitData(own, own.c_str() + 3, 0);
    EXPECT_EQ(all(own), (Texts{"a", "b"}));
    UtilsString folded("1x2X3");
    folded.SetCase(0);
    folded.SplitData("x", 0);
    EXPECT_EQ(all(folded), (Texts{"1", "2", "3"}));
}

TEST(SplitData, AgreesWithCuttingByHand) {
    test::model::RandomText random(test::randomSeed());
    for (int round = 0; round < 3000; ++round) {
        const std::string text = random(16);
        const std::string delimiter = random(2);
        const int matchCase = static_cast<int>(random.below(2));
        Texts expected = test::model::fields(delimiter, text, matchCase, false);
        std::erase(expected, std::string());
        UtilsString source(text);
        source.SetCase(matchCase);
        UtilsString strings("own");
        strings.SplitData(source, delimiter, 1);
        ASSERT_EQ(strings.GetNumberOfStrings(), expected.size() + 1) << text << " | " << delimiter;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(strings[i + 1].GetSTLString(), expected[i]) << text << " | " << delimiter;
        }
    }
}

// Two threads work on the strings of one object: nothing may be lost, torn or read after it was freed.
TEST(SharedString, ThreadsAppendToOneStringFromAnother) {
    const UtilsString source("0123456789 and more than fits inside");
    UtilsString shared;
    const auto append = [&] {
        for (int i = 0; i < 500; ++i) {
            shared += source;
            UtilsString copy(source);
            copy.Append(i);
        }
    };
    std::thread first(append);
    std::thread second(append);
    first.join();
    second.join();
    EXPECT_EQ(shared.length(), 1000 * source.length());
    EXPECT_EQ(shared.Search(source, 999), 999 * source.length());
}

}  // namespace
