#include "tools/common/json_writer.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace {

// Elements must not wait for the end: an archive may have any number of records.
TEST(JsonWriter, WritesAnArrayAsItGrows) {
    const std::ostringstream captured;
    std::streambuf* const standard = std::cout.rdbuf(captured.rdbuf());
    tools::JsonWriter writer;
    writer.member("first", std::vector<tools::JsonMember>{{"a", 1}});
    writer.beginArray("rows");
    for (int i = 0; i < 10'000; ++i) writer.element(std::to_string(i) + "\x1B\x7F\xC2\x81");
    const std::size_t early = captured.str().size();
    writer.beginArray("last");
    writer.end();
    std::cout.rdbuf(standard);
    const std::string text = captured.str();
    EXPECT_GT(early, text.size() / 2);
    const auto object = nlohmann::ordered_json::parse(text);
    EXPECT_EQ(object["rows"][9'999], "9999\x1B\x7F\xC2\x81");
    EXPECT_EQ(text.find_first_of("\x1B\x7F\xC2"), std::string::npos) << "a terminal would act on it";
}

}  // namespace
