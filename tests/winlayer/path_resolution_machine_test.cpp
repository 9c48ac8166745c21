#include "winlayer/file_system/path_resolution.h"

#include <gtest/gtest.h>

#include <string>

#include "winlayer/file_system/wildcard.h"
#include "winlayer/include/winerror.h"

namespace {

// Where each path leads from the current directory C:\work\sub; "!" and a number for an error code.
TEST(PathResolution, followsTheTextOfThePath) {
    struct Row {
        const char* path;
        const char* leads;
    };
    const Row rows[] = {
        {"a.txt", "C:work\\sub\\a.txt"},
        {"C:\\a.txt", "C:a.txt"},
        {"c:/x//y\\\\z/", "C:x\\y\\z"},
        {"C:\\", "C:"},
        {"\\", "C:"},
        {"/top", "C:top"},
        {"C:a", "C:work\\sub\\a"},
        {"C:", "C:work\\sub"},
        {"d:a", "D:a"},
        {"D:", "D:"},
        {".", "C:work\\sub"},
        {"..", "C:work"},
        {"..\\..\\..\\..\\x", "C:x"},
        {".\\.\\b\\..\\c", "C:work\\sub\\c"},
        {"C:\\no\\such\\..\\..\\a", "C:a"},
        {"C:\\a. . .", "C:a"},
        {"C:\\a.\\b ", "C:a\\b"},
        {"C:\\a \\b", "C:a \\b"},
        {"C:\\ a", "C: a"},
        {"C:\\.hidden", "C:.hidden"},
        {"C:\\a..b", "C:a..b"},
        {"C:\\nullen", "C:nullen"},
        {"C:\\com0", "C:com0"},
        {"C:\\com10", "C:com10"},
        {"C:\\\xC4", "C:\xC4"},
        {"", "!3"},
        {"\\\\server\\share", "!53"},
        {"//server", "!53"},
        {"1:\\a", "!123"},
        {"C:\\a:b", "!123"},
        {"C:\\a*", "!123"},
        {"C:\\?\\b", "!123"},
        {"C:\\a\tb", "!123"},
        {"C:\\NUL", "!123"},
        {"con", "!123"},
        {"C:\\aux.c", "!123"},
        {"C:\\LPT1.a.b", "!123"},
        {"C:\\com9 .txt", "!123"},
        {"C:\\prn\\x", "!123"},
        {"nul:", "!123"},
    };
    for (const Row& row : rows) {
        winlayer::ResolvedPath resolved;
        const DWORD error = winlayer::resolvePath(row.path, "C:\\work\\sub", resolved);
        const std::string leads =
            error != 0 ? "!" + std::to_string(error) : std::string(1, resolved.letter) + ":" + resolved.below;
        EXPECT_EQ(leads, row.leads) << row.path;
    }
}

TEST(Wildcard, matchesAsWindowsDoes) {
    struct Row {
        const char* pattern;
        const char* matching;  // names separated by blanks
        const char* notMatching;
    };
    const Row rows[] = {
        {"*", "a a.b .a a.b.c", ""},
        {"*.*", "a a.b .a a.b.c", ""},
        {"*.", "a abc", "a.b .a"},
        {"a*.", "a abc", "b a.b"},
        {"*.txt", "a.txt A.TXT .txt a.b.txt", "a atxt a.txtx a.txt.b"},
        {"???", "a ab abc", "abcd a.b abc.d"},
        {"a?c", "abc aXc", "ac abbc a.c"},
        {"a?", "a ab", "abc b"},
        {"?.?", "a a.b .b", "ab.c a.bc"},
        {"a.*", "a a. a.b a.b.c", "ab ab.c"},
        {"*a*b*", "ab xaxbx aab", "ba a b"},
        {"*ab", "ab aab abab", "aba"},
        {"name", "name NAME", "names nam"},
        {"\xC3\xA4?", "\xC3\x84\xC3\xB6 \xC3\xA4x \xC3\xA4", "a\xC3\xB6 \xC3\xA4xy"},
        {"?", "\xE2\x82\xAC x", "xy"},
    };
    const auto forEach = [](const std::string& names, const auto& check) {
        for (std::size_t start = 0; start < names.size();) {
            const std::size_t end = std::min(names.find(' ', start), names.size());
            check(names.substr(start, end - start));
            start = end + 1;
        }
    };
    for (const Row& row : rows) {
        const winlayer::Wildcard wildcard(row.pattern);
        forEach(row.matching, [&](const std::string& name) {
            EXPECT_TRUE(wildcard.matches(name)) << row.pattern << " and " << name;
        });
        forEach(row.notMatching, [&](const std::string& name) {
            EXPECT_FALSE(wildcard.matches(name)) << row.pattern << " and " << name;
        });
    }
}

// A pattern made to be walked over and over must not take time out of proportion.
TEST(Wildcard, staysQuickOnManyStars) {
    std::string pattern;
    for (int i = 0; i < 60; ++i) {
        pattern += "*a";
    }
    EXPECT_FALSE(winlayer::Wildcard(pattern + "b").matches(std::string(250, 'a')));
}

}  // namespace
