#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "UtilsString.h"
#include "thrown_message.h"

namespace {

using UTILS::MemObject;
using UTILS::TextArgument;
using UTILS::UtilsByte;
using UTILS::UtilsString;
using UTILS::WideText;

WideText wide(const std::string& ascii) {
    return WideText(ascii.begin(), ascii.end());
}

// Length, block and terminator of the current string agree, and it reads as `expected`.
void expectText(const UtilsString& text, const std::string& expected) {
    EXPECT_EQ(text.GetSTLString(), expected);
    EXPECT_EQ(text.length(), expected.size());
    EXPECT_EQ(text.GetBuffer().GetAllocatedCount(), expected.size() + 1);
    EXPECT_EQ(text.c_str()[text.length()], '\0');
}

// A class that is no text but gives one.
struct Convertible {
    operator const char*() const { return "conv"; }
};

TEST(StringText, EveryOperationTakesEveryKindOfText) {
    const auto each = [](auto operation) {
        operation("text");
        operation(UtilsString("text"));
        operation(MemObject<char>("text"));
        operation(std::string("text"));
        operation(wide("text"));
    };
    each([](const auto& text) {
        const UtilsString made(text);
        expectText(made, "text");
        UtilsString other("was longer than that, by far");
        other = text;
        expectText(other, "text");
        other.Append(text);
        other += text;
        other.Insert(text, 0);
        expectText(other, "texttexttexttext");
        other.Replace(text, 14);
        expectText(other, "texttexttexttete");
        EXPECT_EQ(other.Search(text, 2), 8u);
        EXPECT_EQ(other.Compare(text), 1);
        EXPECT_EQ(other.FriendCompare(text), -1);
        EXPECT_TRUE(made == text && text == made && !(made != text) && made <= text && text >= made);
        EXPECT_TRUE(other > text && text < other);
        other.AddString(text);
        EXPECT_STREQ(other.GetStringNumber(1), "text");
        EXPECT_EQ(other.ReplaceAll(text, "+"), 1);
        expectText(other, "+++tete");
        EXPECT_EQ(other.ReplaceFirst("+", text), 1);
        expectText(other, "text++tete");
    });
    EXPECT_TRUE(UtilsString("conv") == Convertible());
}

TEST(StringText, CountsStringsAtConstruction) {
    EXPECT_EQ(UtilsString().GetNumberOfStrings(), 1u);
    EXPECT_EQ(UtilsString(0).GetNumberOfStrings(), 1u);
    EXPECT_EQ(UtilsString(3).GetNumberOfStrings(), 3u);
    EXPECT_THROW(UtilsString(-1), std::bad_alloc);
    const UtilsString three("same", 3);
    for (DWORD i = 0; i < 3; ++i) {
        EXPECT_STREQ(three.GetStringNumber(i), "same");
    }
    EXPECT_EQ(!UtilsString(), 1);
    EXPECT_EQ(!three, 0);
}

TEST(StringText, WritesNumbersAndCharacters) {
    UtilsString text;
    text.Append(0);
    text += -2147483647 - 1;
    text += '/';
    text.Append(DWORD{4294967295u});
    text.Append('/');
    text.Append(0.1);
    text += 1e300;
    text += '/';
    text += 1.0 / 3;
    text += std::numeric_limits<unsigned long long>::max();
    expectText(text, "0-2147483648/4294967295/0.11e+300/0.33333333333333318446744073709551615");
}

TEST(StringText, NullAndEmptyTextsAddNothing) {
    const char* const null = nullptr;
    UtilsString text(null);
    expectText(text, "");
    text = "abc";
    text.Append(null);
    text.Append(nullptr);
    text += null;
    text.Insert(null, 3);
    text.Insert("", 1);
    text.Replace(null, 1);
    text.Replace("", 1);
    text.Append(null, 5);
    expectText(text, "abc");
    text.Append("defg", 2);
    text.Append("fg", 0);
    expectText(text, "abcdefg");
    EXPECT_EQ(text.Compare(null), 1);
    EXPECT_EQ(text.FriendCompare(null), -1);
    EXPECT_EQ(text.Search(null), UTILS::not_found);
    EXPECT_EQ(text.ReplaceAll(null, null), 0);
    EXPECT_EQ(text.ReplaceAll("b", null), 1);
    text = null;
    expectText(text, "");
    EXPECT_EQ(text.Compare(null), 1);
}

TEST(StringText, InsertsAndOverwritesWithinBounds) {
    UtilsString text("abc");
    text.Insert("123", 1);
    text.Insert("<", 0);
    text.Insert(">", 7);
    expectText(text, "<a123bc>");
    text.Replace("XYZ", 6);
    expectText(text, "<a123bXY");
    text.Replace("!", 8);
    text.Replace("!", 0xFFFFFFFF);
    expectText(text, "<a123bXY");
    EXPECT_THROW(text.Insert("!", 9), std::out_of_range);
    EXPECT_THROW(text.Insert("", 0xFFFFFFFF), std::out_of_range);
    expectText(text, "<a123bXY");
}

TEST(StringText, Shortens) {
    UtilsString text("abcdefgh");
    text.TruncateString(2);
    text.TruncateStringAtPosition(2, 1);
    expectText(text, "adef");
    --text;
    text--;
    expectText(text, "ad");
    text.TruncateString(0);
    text.TruncateStringAtPosition(0, 2);
    for (const auto& [count, position] :
         {std::pair<DWORD, DWORD>{3, 0}, {1, 2}, {1, 0xFFFFFFFF}, {0xFFFFFFFF, 1}}) {
        EXPECT_THROW(text.TruncateStringAtPosition(count, position), std::out_of_range);
    }
    EXPECT_THROW(text.TruncateString(3), std::out_of_range);
    expectText(text, "ad");
    text.TruncateStringAtPosition(2, 1);
    expectText(text, "");
    EXPECT_THROW(--text, std::out_of_range);
    text = "again";
    text.EraseString();
    expectText(text, "");
    const std::string message = thrownMessage<std::out_of_range>([&] { text.TruncateString(5); });
    EXPECT_TRUE(message.starts_with("Out Of Range Error - 5:0; File:  ")) << message;
}

TEST(StringText, TakesItsOwnTextAsArgument) {
    for (const std::size_t size : {5u, 15u, 16u, 300u}) {
        std::string expected;
        while (expected.size() < size) {
            expected += static_cast<char>('a' + expected.size() % 26);
        }
        UtilsString text(expected);
        text += text;
        expected += expected;
        expectText(text, expected);
        text.Insert(text, 3);
        expected.insert(3, std::string(expected));
        expectText(text, expected);
        text.Insert(text.c_str() + 2, 5);
        expected.insert(5, std::string(expected, 2));
        expectText(text, expected);
        text.Replace(text.c_str() + 2, 0);
        expected.replace(0, expected.size() - 2, std::string(expected, 2));
        expectText(text, expected);
        text.Replace(std::string(expected), 2);
        text.Replace(text.c_str(), 1);
        const std::string moved =
            expected[0] + std::string(1, expected[0]) + expected[1] + expected.substr(0, expected.size() - 3);
        expectText(text, moved);
        text = text.c_str() + 2;
        expectText(text, moved.substr(2));
        text = *&text;
        text = text.GetBuffer();
        expectText(text, moved.substr(2));
        text.Append(text.c_str() + 1, 3);
        expectText(text, moved.substr(2) + moved.substr(3, 3));
    }
}

TEST(StringText, TakesItsOwnTextWhenReplacing) {
    UtilsString text("one two one");
    EXPECT_EQ(text.ReplaceAll(text.c_str() + 4, text), 1);
    expectText(text, "one one two one");
    EXPECT_EQ(text.ReplaceAll(text.c_str() + 12, text.c_str() + 8), 1);
    const std::string grown = "two one two one two two one";
    expectText(text, grown);
    EXPECT_EQ(text.ReplaceFirst(text.c_str() + 24, text), 1);
    expectText(text, "two " + grown + grown.substr(7));
    EXPECT_EQ(text.ReplaceAll(text, text.c_str() + text.length() - 3), 1);
    expectText(text, "one");
    text.EncryptString(text);
    expectText(text, std::string(3, '\0'));
    UtilsString& same = text;
    text = same;
    text = std::move(same);
    expectText(text, std::string(3, '\0'));
}

TEST(StringText, KeepsZerosInside) {
    const std::string zeros("a\0b\0", 4);
    UtilsString text(zeros);
    expectText(text, zeros);
    text.Append(text);
    text.Insert(zeros, 1);
    expectText(text, std::string("aa\0b\0\0b\0a\0b\0", 12));
    EXPECT_EQ(text.Search(std::string("\0a", 2)), 7u);
    text.Reverse();
    expectText(text, std::string("\0b\0a\0b\0\0b\0aa", 12));
    EXPECT_EQ(text.ReplaceAll(std::string(1, '\0'), "-"), 1);
    expectText(text, "-b-a-b--b-aa");
}

TEST(StringText, CopiesWithAllFieldsAndMovesLeavingAnEmptyString) {
    UtilsString text("first");
    text.AddString("second, a longer one than fits inside");
    text.SetCurrentString(1);
    text.SetCase(0);
    text.SetMatchStyle(1);
    DWORD position = 0;
    text.FindFirst("n", position);
    UtilsString copy(text);
    copy.Append("!");
    EXPECT_EQ(copy.GetCase(), 0);
    EXPECT_EQ(copy.GetMatchStyle(), 1);
    EXPECT_EQ(copy.GetCurrentString(), 1u);
    EXPECT_EQ(copy.FindNext("n", position), 1) << "the counter came along";
    EXPECT_STREQ(text.c_str(), "second, a longer one than fits inside");

    UtilsString moved(std::move(copy));
    EXPECT_STREQ(moved.c_str(), "second, a longer one than fits inside!");
    EXPECT_STREQ(moved.GetStringNumber(0), "first");
    copy.Append("usable");
    expectText(copy, "usable");
    EXPECT_EQ(copy.GetNumberOfStrings(), 1u);

    copy = std::move(moved);
    EXPECT_EQ(copy.GetNumberOfStrings(), 2u);
    swap(copy, moved);
    EXPECT_EQ(moved.GetNumberOfStrings(), 2u);
    expectText(copy, "");
    UtilsString shortText("short");
    UtilsString longText("longer than what fits in the object itself");
    shortText.Swap(longText);
    shortText.Swap(shortText);
    expectText(longText, "short");
    expectText(shortText, "longer than what fits in the object itself");
}

TEST(StringText, TakesVectorsAsSeveralStrings) {
    UtilsString text("own");
    text.AddString("other");
    text.SetCurrentString(1);
    char first[] = "one";
    text = std::vector<char*>{first, nullptr, text.GetString()};
    EXPECT_EQ(text.GetNumberOfStrings(), 3u);
    EXPECT_EQ(text.GetCurrentString(), 0u);
    expectText(text, "one");
    EXPECT_STREQ(text.GetStringNumber(1), "");
    EXPECT_STREQ(text.GetStringNumber(2), "other");
    text = std::vector<std::string>{"a", "b"};
    EXPECT_STREQ(text.GetStringNumber(1), "b");
    text = std::vector<UtilsString>{text, UtilsString("c")};
    EXPECT_STREQ(text.GetStringNumber(1), "c");
    EXPECT_STREQ(text.GetStringNumber(0), "a");
    text = std::vector<WideText>{wide("w"), wide("x"), wide("y")};
    EXPECT_STREQ(text.GetStringNumber(2), "y");
    text = std::vector<std::string>();
    EXPECT_EQ(text.GetNumberOfStrings(), 1u);
    expectText(text, "");
}

TEST(StringText, GivesAccessToItsCharacters) {
    UtilsString text("abc");
    const UtilsString& constant = text;
    text.RetrieveChar(1) = 'X';
    char* const characters = text;
    characters[2] = 'Y';
    unsigned char* const bytes = text;
    bytes[0] = 'Z';
    const char* const read = constant;
    EXPECT_STREQ(read, "ZXY");
    EXPECT_EQ(constant.RetrieveChar(0), 'Z');
    EXPECT_THROW(text.RetrieveChar(3), std::out_of_range);
    EXPECT_THROW(constant.RetrieveChar(0xFFFFFFFF), std::out_of_range);
    for (const char* const pointer : {constant.c_str(), constant.GetString(), constant.Retrieve()}) {
        EXPECT_EQ(pointer, read);
    }
    EXPECT_EQ(constant.size() + constant.strlen(), 6u);
    text.Resize(5);
    expectText(text, std::string("ZXY\0\0", 5));
}

TEST(StringText, ScramblesAndRestores) {
    const std::string plain = "The quick brown fox, twice as long as its key";
    UtilsString text(plain);
    text.XORString(0x20);
    EXPECT_EQ(text.GetSTLString()[0], 't');
    EXPECT_EQ(text.GetSTLString()[3], '\0');
    text.XORString(0x20);
    expectText(text, plain);
    const UtilsString key("key");
    text.EncryptString(key);
    for (std::size_t i = 0; i < plain.size(); ++i) {
        EXPECT_EQ(text.RetrieveChar(static_cast<DWORD>(i)), static_cast<char>(plain[i] ^ "key"[i % 3])) << i;
    }
    text.EncryptString(UtilsByte(reinterpret_cast<const unsigned char*>("key"), 3));
    expectText(text, plain);
    UtilsString single(plain);
    single.XORString('k');
    text.EncryptString(UtilsString("k"));
    EXPECT_EQ(text.GetSTLString(), single.GetSTLString());
    EXPECT_THROW(text.EncryptString(UtilsString()), std::out_of_range);
    EXPECT_THROW(text.EncryptString(UtilsByte()), std::out_of_range);
}

TEST(StringText, SortsSigned) {
    UtilsString text("b\xE9 a\x80Z");
    text.Sort();
    expectText(text, "\x80\xE9 Zab");
    UtilsString().Sort();
    UtilsString().Reverse();
    char one[] = "one", two[] = "two", alpha[] = "alpha";
    char* words[] = {two, one, alpha};
    UTILS::UtilsBase<char>::selection_sort(words, 3);
    EXPECT_EQ(words[0], alpha);
    EXPECT_EQ(words[2], two);
    UTILS::UtilsBase<char>::selection_sort(words, 0);
}

}  // namespace
