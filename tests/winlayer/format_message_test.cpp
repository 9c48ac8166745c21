#include <windows.h>

#include <gtest/gtest.h>

#include <cstdarg>
#include <string>

// Run against the layer and against Windows itself.

namespace {

struct Formatted {
    std::string text;
    DWORD error = 0;
};

bool operator==(const Formatted& left, const Formatted& right) {
    return left.text == right.text && left.error == right.error;
}

std::ostream& operator<<(std::ostream& out, const Formatted& result) {
    return out << testing::PrintToString(result.text) << " error " << result.error;
}

Formatted text(const std::string& expected) {
    return {expected, 0};
}

Formatted error(DWORD code) {
    return {"", code};
}

Formatted run(DWORD flags, const void* source, DWORD id, DWORD language, va_list* arguments) {
    char buffer[512] = "untouched";
    ::SetLastError(0);
    const DWORD length = ::FormatMessageA(flags, source, id, language, buffer, sizeof buffer, arguments);
    return {std::string(buffer, length), length == 0 ? ::GetLastError() : 0};
}

Formatted format(DWORD extraFlags, const char* definition, ...) {
    va_list arguments;
    va_start(arguments, definition);
    const Formatted result = run(FORMAT_MESSAGE_FROM_STRING | extraFlags, definition, 0, 0, &arguments);
    va_end(arguments);
    return result;
}

TEST(FormatMessage, EscapesStandForTheirCharacters) {
    EXPECT_EQ(format(0, "a%%b%nc%.d%!e% f%tg%rh%zi"), text("a%b\r\nc.d!e f\tg\rhzi"));
    EXPECT_EQ(format(0, "abc%0def"), text("abc"));
    EXPECT_EQ(format(0, "a\nb\rc\r\nd"), text("a\r\nb\r\nc\r\nd"));
    EXPECT_EQ(format(0, "abc%"), error(ERROR_INVALID_PARAMETER));
}

TEST(FormatMessage, InsertsMayComeInAnyOrderAndMoreThanOnce) {
    EXPECT_EQ(format(0, "%3 %1 %1%2", "one", "two", "three"), text("three one onetwo"));
    EXPECT_EQ(format(0, "%1!s! %2!d! %1", "r", 3), text("r 3 r"));
    EXPECT_EQ(format(0, "%10|%11", "1", "2", "3", "4", "5", "6", "7", "8", "9", "ten", "eleven"),
              text("ten|eleven"));
    EXPECT_EQ(format(0, "%1", static_cast<const char*>(nullptr)), text("(null)"));
}

TEST(FormatMessage, ValuesAreReadAndWrittenByTheirType) {
    EXPECT_EQ(format(0, "%1!d!|%2!05u!|%3!x!|%4!#X!|%5!o!|%6!c!|%7!ld!|%8!hd!|%9!i!", -1, 42, 255, 255, 8,
                     'c', -5, 70000, 7),
              text("-1|00042|ff|0XFF|10|c|-5|4464|7"));
    EXPECT_EQ(format(0, "%1!I64d! %2!I64u! %3", -1LL, 5000000000ULL, "end"), text("-1 5000000000 end"));
    EXPECT_EQ(format(0, "%1!lu! %2!lX!", 0xFFFFFFFFu, 0x80000000u), text("4294967295 80000000"));
    EXPECT_EQ(format(0, "[%1!5s!][%2!-5s!][%3!.2s!][%4!+d!]", "ab", "cd", "xyz", 5),
              text("[   ab][cd   ][xy][+5]"));
    const WCHAR wide[] = {'w', 0xE4, 0};
    EXPECT_EQ(format(0, "%1!S! %2!ls! %3!ws! %4!hs! %5!hS!", wide, wide, wide, "h", "H"),
              text("w\xE4 w\xE4 w\xE4 h H"));
}

TEST(FormatMessage, MalformedInsertsAreRefused) {
    EXPECT_EQ(format(0, "[%1!]", "x"), error(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(format(0, "[%1!d]", 5), error(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(run(FORMAT_MESSAGE_FROM_STRING, "%1", 0, 0, nullptr), error(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(run(FORMAT_MESSAGE_FROM_STRING, "no insert", 0, 0, nullptr), text("no insert"));
    EXPECT_EQ(run(0, "no source named", 0, 0, nullptr), error(ERROR_INVALID_PARAMETER));
}

// The first star of an insert is counted in an array, but not in an argument list.
TEST(FormatMessage, StarsTakeWidthAndPrecisionFromTheArguments) {
    EXPECT_EQ(format(0, "%1!*.*s! %3 %4!*s!", 4, 2, "Bill", "Bob", 6, "Bill"), text("  Bi Bob   Bill"));
    const DWORD_PTR values[] = {4,
                                2,
                                reinterpret_cast<DWORD_PTR>("Bill"),
                                reinterpret_cast<DWORD_PTR>("Bob"),
                                6,
                                reinterpret_cast<DWORD_PTR>("Bill")};
    EXPECT_EQ(run(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY, "%1!*.*s! %4 %5!*s!", 0, 0,
                  reinterpret_cast<va_list*>(const_cast<DWORD_PTR*>(values))),
              text("  Bi Bob   Bill"));
}

TEST(FormatMessage, AnArrayHoldsOneValuePerNumber) {
    const DWORD_PTR values[] = {reinterpret_cast<DWORD_PTR>("one"), static_cast<DWORD_PTR>(-2),
                                reinterpret_cast<DWORD_PTR>("three")};
    EXPECT_EQ(run(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY, "%1 %2!d! %3", 0, 0,
                  reinterpret_cast<va_list*>(const_cast<DWORD_PTR*>(values))),
              text("one -2 three"));
}

TEST(FormatMessage, InsertsPassUnchangedOnRequest) {
    EXPECT_EQ(format(FORMAT_MESSAGE_IGNORE_INSERTS, "%1 %% %9!d! %100 %n end%0 not this"),
              text("%1 %% %9!d! %100 \r\n end"));
    EXPECT_EQ(format(FORMAT_MESSAGE_IGNORE_INSERTS, "%1!"), text("%1!"));
}

TEST(FormatMessage, AWidthTakesTheOrdinaryLineBreaksAway) {
    EXPECT_EQ(format(0xFF, "a\nb%nc\r\nd"), text("a b\r\nc d"));
    EXPECT_EQ(format(8, "alpha beta gamma\ndelta%nend"), text("alpha\r\nbeta\r\ngamma\r\ndelta\r\nend"));
}

TEST(FormatMessage, TheTextAndItsZeroMustFit) {
    char buffer[8] = "before";
    EXPECT_EQ(::FormatMessageA(FORMAT_MESSAGE_FROM_STRING, "abcdef", 0, 0, buffer, 7, nullptr), 6u);
    EXPECT_STREQ(buffer, "abcdef");
    EXPECT_EQ(::FormatMessageA(FORMAT_MESSAGE_FROM_STRING, "ABCDEF", 0, 0, buffer, 6, nullptr), 0u);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

TEST(FormatMessage, ABufferOfItsOwnIsFreedByTheCaller) {
    const DWORD flags = FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ALLOCATE_BUFFER;
    const std::string longText(5000, 'x');
    char* given = nullptr;
    ASSERT_EQ(::FormatMessageA(flags, longText.c_str(), 0, 0, reinterpret_cast<LPSTR>(&given), 0, nullptr),
              5000u);
    EXPECT_EQ(longText, given);
    EXPECT_EQ(::LocalFree(given), nullptr);

    char* none = reinterpret_cast<char*>(1);
    EXPECT_EQ(::FormatMessageA(flags, "%1", 0, 0, reinterpret_cast<LPSTR>(&none), 0, nullptr), 0u);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(::LocalFree(nullptr), nullptr);
}

TEST(FormatMessage, SystemTextsEndTheirLine) {
    for (const DWORD code : {0u, 2u, 5u, 19u, 21u, 112u}) {
        const Formatted message =
            run(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, nullptr);
        ASSERT_GT(message.text.size(), 4u) << code;
        EXPECT_EQ(message.text.substr(message.text.size() - 2), "\r\n");
        const Formatted oneLine = run(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | 0xFF,
                                      nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), nullptr);
        EXPECT_EQ(oneLine.text.find('\n'), std::string::npos);
    }
    EXPECT_EQ(run(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 0x12345, 0, nullptr), error(ERROR_MR_MID_NOT_FOUND));
}

}  // namespace
