#include <windows.h>

#include <gtest/gtest.h>

#include <vector>

#include "support/expect_fails.h"
#include "winlayer/gdi/bitmap_data.h"
#include "winlayer/gdi/surface_drawing.h"
#include "winlayer/machine.h"

namespace {

using namespace winlayer;

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t green = 0xFF00FF00;
constexpr std::uint32_t blue = 0xFF0000FF;
constexpr std::uint32_t white = 0xFFFFFFFF;
constexpr std::uint32_t black = 0xFF000000;

using Bytes = std::vector<BYTE>;

void append(Bytes& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i, value >>= 8) {
        bytes.push_back(static_cast<BYTE>(value));
    }
}

Bytes header(std::int32_t width, std::int32_t height, std::uint32_t bits, std::uint32_t compression = 0,
             std::uint32_t colors = 0) {
    Bytes bytes;
    append(bytes, 40, 4);
    append(bytes, static_cast<std::uint32_t>(width), 4);
    append(bytes, static_cast<std::uint32_t>(height), 4);
    append(bytes, 1, 2);
    append(bytes, bits, 2);
    append(bytes, compression, 4);
    append(bytes, 0, 12);
    append(bytes, colors, 4);
    append(bytes, 0, 4);
    return bytes;
}

Bytes joined(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TEST(BitmapData, TheOlderHeaderHasColorsOfThreeBytes) {
    const Bytes data = {12, 0, 0, 0, 2, 0, 1, 0, 1, 0, 1, 0, 0, 0, 255, 255, 0, 0, 0x40, 0, 0, 0};
    const auto bitmap = decodeBitmap(data);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->surface.pixels, (std::vector<std::uint32_t>{red, blue}));
    EXPECT_FALSE(bitmap->monochrome);
}

TEST(BitmapData, WhatEndsEarlyOrIsNotKnownIsRefused) {
    const Bytes whole = joined(header(2, 2, 24), Bytes(16));
    ASSERT_TRUE(decodeBitmap(whole));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_FALSE(decodeBitmap(std::span(whole).first(size))) << size;
    }
    const Bytes refused[] = {
        header(0, 2, 24),
        header(2, 0, 24),
        header(-2, 2, 24),
        header(2, 2, 16),
        header(2, 2, 24, 1),
        header(2, 2, 24, 3),
        header(2, 2, 8, 0, 0xFFFFFFFF),
        header(2, 2, 24, 0, 0x40000000),
        header(0x7FFFFFFF, 0x7FFFFFFF, 32),
        header(1, static_cast<std::int32_t>(0x80000000), 1),
        header(0x7FFFFFFF, 1, 1),
    };
    for (const Bytes& bytes : refused) {
        EXPECT_FALSE(decodeBitmap(joined(bytes, Bytes(64)))) << &bytes - refused;
    }
}

TEST(BitmapData, RowsStandFromTheTopWhenTheHeightIsNegative) {
    Bytes data = header(1, -2, 24);
    append(data, 0x00FF0000, 4);
    append(data, 0x0000FF00, 4);
    const auto bitmap = decodeBitmap(data);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->surface.pixels, (std::vector<std::uint32_t>{red, green}));
}

TEST(BitmapData, ANumberWithoutAColorIsBlack) {
    Bytes data = header(2, 1, 8, 0, 1);
    append(data, 0x00FF0000, 4);
    append(data, 0x0700, 4);
    const auto bitmap = decodeBitmap(data);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->surface.pixels, (std::vector<std::uint32_t>{red, black}));
}

TEST(SurfaceDrawing, HalftoneMixesPixels) {
    const Surface from{4, 2, {black, white, red, red, white, black, blue, blue}};
    Surface to = makeSurface(2, 1, green);
    stretch(from, {0, 0, 4, 2}, to, {0, 0, 2, 1}, HALFTONE);
    EXPECT_EQ(to.pixels, (std::vector<std::uint32_t>{0xFF808080, 0xFF800080}));
}

TEST(SurfaceDrawing, EveryPlaceStaysInside) {
    const Surface from = makeSurface(5, 4, red);
    unsigned seed = 1;
    const auto random = [&seed](int range) {
        seed = seed * 1103515245 + 12345;
        return static_cast<int>((seed >> 16) % static_cast<unsigned>(2 * range + 1)) - range;
    };
    for (int i = 0; i < 20'000; ++i) {
        Surface to = makeSurface(7, 6, green);
        const Placement source = {random(8), random(8), random(12), random(12)};
        const Placement target = {random(9), random(9), random(14), random(14)};
        stretch(from, source, to, target, 1 + i % 4);
        const RECT touched = {std::min(target.x, target.x + target.width + 1),
                              std::min(target.y, target.y + target.height + 1),
                              std::max(target.x + 1, target.x + target.width),
                              std::max(target.y + 1, target.y + target.height)};
        for (int y = 0; y < to.height; ++y) {
            for (int x = 0; x < to.width; ++x) {
                const bool inside =
                    x >= touched.left && x < touched.right && y >= touched.top && y < touched.bottom;
                ASSERT_TRUE(pixelAt(to, x, y) == green || (inside && pixelAt(to, x, y) == red))
                    << i << ": " << x << ", " << y;
            }
        }
    }
}

TEST(GraphicsMachine, OpenObjectsAreCounted) {
    ScopedMachine machine;
    Graphics& graphics = machine->graphics;
    EXPECT_EQ(graphics.count(), 0u);
    const auto surface = std::make_shared<Surface>(makeSurface(4, 4, green));
    const HDC window = graphics.open(surface);
    const HDC memory = CreateCompatibleDC(window);
    const HBITMAP bitmap = CreateCompatibleBitmap(window, 2, 2);
    EXPECT_EQ(graphics.count(), 3u);

    EXPECT_EQ(SelectObject(window, bitmap), nullptr) << "a window's context has no bitmap";
    const HGDIOBJ before = SelectObject(memory, bitmap);
    EXPECT_TRUE(BitBlt(window, 1, 1, 2, 2, memory, 0, 0, SRCCOPY));
    EXPECT_EQ(pixelAt(*surface, 1, 1), black);
    EXPECT_EQ(pixelAt(*surface, 3, 3), green);
    EXPECT_FAILS(BitBlt(window, 0, 0, 2, 2, memory, 0, 0, 0x00550009), ERROR_INVALID_PARAMETER);

    EXPECT_FALSE(DeleteObject(bitmap)) << "it is selected";
    SelectObject(memory, before);
    EXPECT_TRUE(DeleteObject(bitmap));
    EXPECT_FAILS(DeleteObject(bitmap), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(DeleteDC(window));
    EXPECT_FALSE(graphics.close(memory));
    EXPECT_TRUE(DeleteDC(memory));
    EXPECT_TRUE(graphics.close(window));
    EXPECT_EQ(graphics.count(), 0u);
    EXPECT_FALSE(BitBlt(window, 0, 0, 1, 1, window, 0, 0, SRCCOPY));
    EXPECT_EQ(CreateCompatibleDC(window), nullptr);
}

TEST(GraphicsMachine, FailuresAreReported) {
    ScopedMachine machine;
    const HDC memory = CreateCompatibleDC(nullptr);
    EXPECT_EQ(CreateCompatibleBitmap(memory, -1, 1), nullptr);
    EXPECT_FAILS(CreateCompatibleBitmap(memory, 0x7FFFFFFF, 0x7FFFFFFF), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_FAILS(LoadBitmapA(nullptr, MAKEINTRESOURCEA(99)), ERROR_RESOURCE_NAME_NOT_FOUND);
    machine->gate.failFunction("CreateCompatibleDC", ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_FAILS(CreateCompatibleDC(nullptr), ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_TRUE(DeleteDC(memory));
    EXPECT_EQ(machine->graphics.count(), 0u);
}

}  // namespace
