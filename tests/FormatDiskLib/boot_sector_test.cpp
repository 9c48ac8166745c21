#include "boot_sector.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(BootSector, HasTheFieldsOfA144Diskette) {
    const auto image = boot_sector::Build(0x12345678);
    const unsigned char expected[62] = {
        0xEB, 0x41, 0x90, ')',  'G', 'W',  'm',  'R',  'I',  'H',  'C',  0,   2,   1,   1,   0,
        2,    224,  0,    0x40, 11,  0xF0, 9,    0,    18,   0,    2,    0,   0,   0,   0,   0,
        0,    0,    0,    0,    0,   0,    0x29, 0x78, 0x56, 0x34, 0x12, 'N', 'O', ' ', 'N', 'A',
        'M',  'E',  ' ',  ' ',  ' ', ' ',  'F',  'A',  'T',  '1',  '2',  ' ', ' ', ' '};
    for (std::size_t i = 0; i < sizeof expected; ++i) {
        EXPECT_EQ(image[i], expected[i]) << "offset " << i;
    }
    const unsigned char workArea[5] = {0, 0, 0, 0xAA, 0x55};
    EXPECT_TRUE(std::equal(workArea, workArea + 5, image.begin() + 0x3E));
    EXPECT_EQ(std::string(image.begin() + 0x1C3, image.begin() + 0x1F0),
              std::string("Disk Error, Press Ctrl-Alt-Del...\0QZLOADERBIN", 45));
    for (std::size_t i = 0x1F0; i < 0x1FE; ++i) {
        EXPECT_EQ(image[i], 0) << "offset " << i;
    }
    EXPECT_EQ(image[0x1FE], 0x55);
    EXPECT_EQ(image[0x1FF], 0xAA);
}

TEST(RandomSource, FollowsItsRecurrenceWhileNothingIsRejected) {
    RandomSource source;
    std::uint32_t state = 1;
    for (const unsigned shift : {9U, 10U, 11U, 12U, 13U, 14U, 15U, 16U, 8U, 9U}) {
        state = state * 21401335U + 253101144U;
        EXPECT_EQ(source.Draw(0xFFFFFFFF, 0), state >> shift) << "shift " << shift;
        ++state;
    }
}

TEST(RandomSource, GivesNothingWhereNothingFits) {
    RandomSource source;
    EXPECT_EQ(source.Draw(0xFF, 0x100), 0U);
    EXPECT_EQ(source.Draw(0xFF000000, 1), 0U);  // candidates have 24 bits
    EXPECT_EQ(source.Draw(0xFFFFFFFF, 0x100000000), 0U);
    EXPECT_EQ(source.Draw(0x80, 0x80), 0x80U);
}

TEST(RandomSource, DrawsSerialNumbersInTheirRange) {
    std::set<DWORD> drawn;
    for (int i = 0; i < 200; ++i) {
        const DWORD serial = boot_sector::DrawSerialNumber();
        EXPECT_GE(serial, 0x00AAAAAAU);
        EXPECT_EQ(serial & ~0xAAAAFFFFU, 0U);
        drawn.insert(serial);
    }
    EXPECT_GT(drawn.size(), 190U);
}

}  // namespace
