#include "winlayer/text/system_messages.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>

#include "winlayer/machine.h"

namespace {

using winlayer::ScopedMachine;
using winlayer::systemMessage;

constexpr DWORD germanId = 0x0407;
constexpr DWORD englishId = 0x0409;

std::set<DWORD> declaredCodes() {
    std::ifstream header(SOURCE_DIRECTORY "/winlayer/include/winerror.h");
    const std::regex declaration("constexpr \\w+ (ERROR_\\w+|NO_ERROR) = (\\d+);");
    std::set<DWORD> codes;
    std::string line;
    while (std::getline(header, line)) {
        std::smatch match;
        if (std::regex_search(line, match, declaration)) {
            codes.insert(static_cast<DWORD>(std::stoul(match[2])));
        }
    }
    return codes;
}

TEST(SystemMessagesMachine, EveryDeclaredCodeHasATextOfItsOwnInBothLanguages) {
    const ScopedMachine machine;
    const winlayer::Machine& current = winlayer::Machine::current();
    std::set<std::string> seen;
    const std::set<DWORD> codes = declaredCodes();
    ASSERT_GT(codes.size(), 50u);
    for (const DWORD code : codes) {
        for (const DWORD language : {germanId, englishId}) {
            std::string text;
            ASSERT_EQ(systemMessage(current, code, language, text), 0u) << code;
            EXPECT_TRUE(seen.insert(text).second) << code << ": " << text;
            EXPECT_EQ(text.substr(text.size() - 3), ".\r\n") << code;
            EXPECT_EQ(text.find('%'), std::string::npos) << code << ": would be read as an insert";
        }
    }
}

TEST(SystemMessagesMachine, TheMachineChoosesTheLanguageAndTheCodePage) {
    ScopedMachine machine;
    const auto message = [&](DWORD language) {
        std::string text;
        EXPECT_EQ(systemMessage(*machine, ERROR_WRITE_PROTECT, language, text), 0u);
        return text;
    };
    EXPECT_EQ(message(0), message(germanId));
    EXPECT_NE(message(0).find("schreibgesch\xFCtzt"), std::string::npos);
    machine->ansiCodePage = CP_UTF8;
    EXPECT_NE(message(0).find("schreibgesch\xC3\xBCtzt"), std::string::npos);
    machine->language = 0x040C;  // a language without texts
    EXPECT_EQ(message(0), message(englishId));
    std::string text;
    EXPECT_EQ(systemMessage(*machine, ERROR_WRITE_PROTECT, 0x040C, text), ERROR_RESOURCE_LANG_NOT_FOUND);
}

}  // namespace
