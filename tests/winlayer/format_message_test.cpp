#include <windows.h>

#include <gtest/gtest.h>

#include <cstdarg>
#include <string>

// Run against the layer and against Windows itself.

namespace {

// The text, or "error" and the last error.
std::string run(DWORD flags, const void* source, DWORD id, DWORD language, va_list* arguments) {
    char buffer[512] = "untouched";
    ::SetLastError(0);
    const DWORD length = ::FormatMessageA(flags, source, id, language, buffer, sizeof buffer, arguments);
    return length != 0 ? std::string(buffer, length) : "error " + std::to_string(::GetLastError());
}

std::string format(DWORD extraFlags, const char* definition, ...) {
    va_list arguments;
    va_start(arguments, definition);
    const std::string result = run(FORMAT_MESSAGE_FROM_STRING | extraFlags, definition, 0, 0, &arguments);
    va_end(arguments);
    return result;
}

std::string formatArray(const char* definition, const DWORD_PTR* values) {
    return run(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY, definition, 0, 0,
               reinterpret_cast<va_list*>(const_cast<DWORD_PTR*>(values)));
}

const std::string invalid = "error 87";

TEST(FormatMessage, EscapesStandForTheirCharacters) {
    EXPECT_EQ(format(0, "a%%b%nc%.d%!e% f%tg%rh%zi"), "a%b\r\nc.d!e f\tg\rhzi");
    EXPECT_EQ(format(0, "abc%0def"), "abc");
    EXPECT_EQ(format(0, "a\nb\rc\r\nd"), "a\r\nb\r\nc\r\nd");
    EXPECT_EQ(format(0, "abc%"), invalid);
}

TEST(FormatMessage, InsertsMayComeInAnyOrderAndMoreThanOnce) {
    EXPECT_EQ(format(0, "%3 %1 %1%2", "one", "two", "three"), "three one onetwo");
    EXPECT_EQ(format(0, "%1!s! %2!d! %1", "r", 3), "r 3 r");
    EXPECT_EQ(format(0, "%10|%11", "1", "2", "3", "4", "5", "6", "7", "8", "9", "ten", "eleven"),
              "ten|eleven");
    EXPECT_EQ(format(0, "%1", static_cast<const char*>(nullptr)), "(null)");
}

TEST(FormatMessage, ValuesAreReadAndWrittenByTheirType) {
    EXPECT_EQ(format(0, "%1!d!|%2!05u!|%3!x!|%4!#X!|%5!o!|%6!c!|%7!ld!|%8!hd!|%9!i!", -1, 42, 255, 255, 8,
                     'c', -5, 70000, 7),
              "-1|00042|ff|0XFF|10|c|-5|4464|7");
    EXPECT_EQ(format(0, "%1!I64d! %2!I64u! %3", -1LL, 5000000000ULL, "end"), "-1 5000000000 end");
    EXPECT_EQ(format(0, "%1!lu! %2!lX!", 0xFFFFFFFFu, 0x80000000u), "4294967295 80000000");
    EXPECT_EQ(format(0, "[%1!5s!][%2!-5s!][%3!.2s!][%4!+d!]", "ab", "cd", "xyz", 5),
              "[   ab][cd   ][xy][+5]");
    const WCHAR wide[] = {'w', 0xE4, 0};
    EXPECT_EQ(format(0, "%1!S! %2!ls! %3!ws! %4!hs! %5!hS!", wide, wide, wide, "h", "H"),
              "w\xE4 w\xE4 w\xE4 h H");
}

TEST(FormatMessage, MalformedInsertsAreRefused) {
    EXPECT_EQ(format(0, "[%1!]", "x"), invalid);
    EXPECT_EQ(format(0, "[%1!d]", 5), invalid);
    EXPECT_EQ(run(FORMAT_MESSAGE_FROM_STRING, "%1", 0, 0, nullptr), invalid);
    EXPECT_EQ(run(FORMAT_MESSAGE_FROM_STRING, "no insert", 0, 0, nullptr), "no insert");
    EXPECT_EQ(run(0, "no source named", 0, 0, nullptr), invalid);
}

// The first star of an insert is counted in an array, but not in an argument list.
TEST(FormatMessage, StarsTakeWidthAndPrecisionFromTheArguments) {
    EXPECT_EQ(format(0, "%1!*.*s! %3 %4!*s!", 4, 2, "Bill", "Bob", 6, "Bill"), "  Bi Bob   Bill");
    const auto address = [](const char* text) { return reinterpret_cast<DWORD_PTR>(text); };
    const DWORD_PTR values[] = {4, 2, address("Bill"), address("Bob"), 6, address("Bill")};
    EXPECT_EQ(formatArray("%1!*.*s! %4 %5!*s!", values), "  Bi Bob   Bill");
    const DWORD_PTR plain[] = {address("one"), static_cast<DWORD_PTR>(-2), address("three")};
    EXPECT_EQ(formatArray("%1 %2!d! %3", plain), "one -2 three");
}

TEST(FormatMessage, InsertsPassUnchangedOnRequest) {
    EXPECT_EQ(format(FORMAT_MESSAGE_IGNORE_INSERTS, "%1 %% %9!d! %100 %n end%0 not this"),
              "%1 %% %9!d! %100 \r\n end");
    EXPECT_EQ(format(FORMAT_MESSAGE_IGNORE_INSERTS, "%1!"), "%1!");
}

TEST(FormatMessage, AWidthTakesTheOrdinaryLineBreaksAway) {
    EXPECT_EQ(format(0xFF, "a\nb%nc\r\nd"), "a b\r\nc d");
    EXPECT_EQ(format(8, "alpha beta gamma\ndelta%nend"), "alpha\r\nbeta\r\ngamma\r\ndelta\r\nend");
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
        const std::string message =
            run(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, nullptr);
        ASSERT_GT(message.size(), 4u) << code;
        EXPECT_EQ(message.substr(message.size() - 2), "\r\n");
        const std::string oneLine = run(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | 0xFF,
                                        nullptr, code, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), nullptr);
        EXPECT_EQ(oneLine.find('\n'), std::string::npos);
    }
    EXPECT_EQ(run(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 0x12345, 0, nullptr), "error 317");
}

}  // namespace
