#include "host/frame/module_listing.h"

#include <gtest/gtest.h>

namespace {

using host::parseListing;

struct Listed {
    const char* text;
    const char* library;
    const char* picture;
};

TEST(ModuleListing, FindsTheLibraryAndItsPicture) {
    const Listed cases[] = {
        {"5,1,0,30,C:\\S\\Part.dll,C:\\S\\Part.bmp", "C:\\S\\Part.dll", "C:\\S\\Part.bmp"},
        {"5,1,0,30,C:\\a,b\\Part.dll,C:\\a,b\\Part.bmp", "C:\\a,b\\Part.dll", "C:\\a,b\\Part.bmp"},
        {"5,1,0,30,C:\\S\\Part,", "C:\\S\\Part", ""},
        {"5,1,0,30,C:\\a,b\\Part,", "C:\\a,b\\Part", ""},
        {"5,1,0,30,C:\\S.1\\Part,C:\\S.bmp", "C:\\S.1\\Part", "C:\\S.bmp"},
        {"1,2,3,4,C:\\S\\Part.dll,C:\\other\\face.bmp", "C:\\S\\Part.dll", "C:\\other\\face.bmp"},
    };
    for (const Listed& each : cases) {
        const auto listing = parseListing(each.text);
        ASSERT_TRUE(listing) << each.text;
        EXPECT_EQ(listing->library, each.library) << each.text;
        EXPECT_EQ(listing->picture, each.picture) << each.text;
    }
    EXPECT_EQ(parseListing("5,1,0,30,P,")->numbers, (std::array<int, 4>{5, 1, 0, 30}));
}

TEST(ModuleListing, RefusesOtherTexts) {
    for (const char* text : {"", "Part.dll", "5,1,0,Part.dll,", "5,1,0,30", "5,1,0,30,", "5,1,0,30,Part.dll",
                             "5,1,0,30,,", "5,,0,30,P,", "5,1,0,99999999999,P,"}) {
        EXPECT_FALSE(parseListing(text)) << text;
    }
}

}  // namespace
