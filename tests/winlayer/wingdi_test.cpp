#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

// Run against the layer and against Windows itself; the bitmaps are in resources.rc.

namespace {

constexpr COLORREF red = RGB(255, 0, 0);
constexpr COLORREF green = RGB(0, 255, 0);
constexpr COLORREF blue = RGB(0, 0, 255);
constexpr COLORREF white = RGB(255, 255, 255);
constexpr COLORREF black = RGB(0, 0, 0);

HBITMAP screenBitmap(int width, int height) {
    const HDC screen = GetDC(nullptr);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    ReleaseDC(nullptr, screen);
    return bitmap;
}

// A memory context with a bitmap of its own in it.
class Canvas {
public:
    explicit Canvas(HBITMAP bitmap) : bitmap_(bitmap) {}
    Canvas(int width, int height) : Canvas(screenBitmap(width, height)) {}
    ~Canvas() {
        SelectObject(context_, before_);
        DeleteDC(context_);
        DeleteObject(bitmap_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HDC get() const { return context_; }
    HBITMAP bitmap() const { return bitmap_; }
    COLORREF at(int x, int y) const { return GetPixel(context_, x, y); }
    void row(int y, std::initializer_list<COLORREF> colors) {
        int x = 0;
        for (const COLORREF color : colors) {
            SetPixel(context_, x++, y, color);
        }
    }

private:
    const HBITMAP bitmap_;
    const HDC context_ = CreateCompatibleDC(nullptr);
    const HGDIOBJ before_ = SelectObject(context_, bitmap_);
};

void expectRow(const Canvas& canvas, int y, std::initializer_list<COLORREF> colors, const char* what = "") {
    int x = 0;
    for (const COLORREF color : colors) {
        EXPECT_EQ(canvas.at(x, y), color) << what << " at " << x << ", " << y;
        ++x;
    }
}

TEST(Gdi, FillingStopsAtTheEdges) {
    Canvas canvas(4, 3);
    expectRow(canvas, 0, {black, black, black, black});
    const HBRUSH brush = CreateSolidBrush(red);
    const RECT middle = {1, 1, 3, 2};
    EXPECT_NE(FillRect(canvas.get(), &middle, brush), 0);
    expectRow(canvas, 0, {black, black, black, black});
    expectRow(canvas, 1, {black, red, red, black});
    const RECT beyond = {-5, 2, 100, 100};
    EXPECT_NE(FillRect(canvas.get(), &beyond, reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1)), 0);
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    expectRow(canvas, 2, {window, window, window, window});
    const RECT none = {2, 0, 2, 3};
    FillRect(canvas.get(), &none, brush);
    expectRow(canvas, 1, {black, red, red, black});
    EXPECT_TRUE(DeleteObject(brush));
    EXPECT_EQ(canvas.at(4, 0), 0xFFFFFFFFu);
    EXPECT_EQ(canvas.at(0, -1), 0xFFFFFFFFu);
}

TEST(Gdi, CopiesMirrorAndStayInside) {
    Canvas from(3, 1);
    from.row(0, {red, green, blue});
    Canvas to(4, 2);
    EXPECT_TRUE(BitBlt(to.get(), 1, 0, 2, 1, from.get(), 1, 0, SRCCOPY));
    expectRow(to, 0, {black, green, blue, black});
    EXPECT_TRUE(BitBlt(to.get(), -1, 1, 3, 1, from.get(), 0, 0, SRCCOPY));
    expectRow(to, 1, {green, blue, black, black});
    EXPECT_TRUE(StretchBlt(to.get(), 2, 1, -3, 1, from.get(), 0, 0, 3, 1, SRCCOPY));
    expectRow(to, 1, {blue, green, red, black}, "mirrored");
    // Onto itself, one to the right.
    EXPECT_TRUE(BitBlt(to.get(), 1, 1, 3, 1, to.get(), 0, 1, SRCCOPY));
    expectRow(to, 1, {blue, blue, green, red}, "moved");
}

TEST(Gdi, ALargerPictureRepeatsPixels) {
    Canvas from(2, 2);
    from.row(0, {red, green});
    from.row(1, {blue, white});
    Canvas to(6, 4);
    EXPECT_TRUE(StretchBlt(to.get(), 0, 0, 6, 4, from.get(), 0, 0, 2, 2, SRCCOPY));
    for (int y = 0; y < 4; ++y) {
        const COLORREF left = y < 2 ? red : blue;
        const COLORREF right = y < 2 ? green : white;
        expectRow(to, y, {left, left, left, right, right, right});
    }
}

TEST(Gdi, ASmallerPictureMergesOrDropsPixels) {
    Canvas from(4, 1);
    from.row(0, {RGB(0xF0, 0, 0xFF), RGB(0x3C, 0, 0xFF), RGB(0, 8, 0), RGB(0, 8, 1)});
    Canvas to(2, 1);
    const auto shrink = [&] { return StretchBlt(to.get(), 0, 0, 2, 1, from.get(), 0, 0, 4, 1, SRCCOPY); };
    EXPECT_TRUE(shrink());
    expectRow(to, 0, {RGB(0x30, 0, 0xFF), RGB(0, 8, 0)}, "dark stays");
    EXPECT_EQ(SetStretchBltMode(to.get(), WHITEONBLACK), BLACKONWHITE);
    EXPECT_TRUE(shrink());
    expectRow(to, 0, {RGB(0xFC, 0, 0xFF), RGB(0, 8, 1)}, "bright stays");
    EXPECT_EQ(SetStretchBltMode(to.get(), COLORONCOLOR), WHITEONBLACK);
    EXPECT_TRUE(shrink());
    EXPECT_TRUE(to.at(0, 0) == from.at(0, 0) || to.at(0, 0) == from.at(1, 0)) << "one of the two stays";
    EXPECT_EQ(SetStretchBltMode(to.get(), 9), 0);
}

TEST(Gdi, ObjectsDescribeThemselves) {
    Canvas canvas(7, 5);
    BITMAP bitmap{};
    ASSERT_EQ(GetObjectA(canvas.bitmap(), sizeof bitmap, &bitmap), int{sizeof bitmap});
    EXPECT_EQ(bitmap.bmWidth, 7);
    EXPECT_EQ(bitmap.bmHeight, 5);
    EXPECT_EQ(bitmap.bmPlanes, 1);
    EXPECT_EQ(bitmap.bmBitsPixel, 32);
    EXPECT_EQ(bitmap.bmWidthBytes, 28);
    EXPECT_EQ(bitmap.bmBits, nullptr);
    EXPECT_EQ(GetObjectA(canvas.bitmap(), 0, nullptr), int{sizeof bitmap});

    LOGFONTA description{};
    description.lfHeight = -13;
    description.lfWeight = FW_BOLD;
    description.lfItalic = 1;
    std::memcpy(description.lfFaceName, "Arial", sizeof "Arial");
    const HFONT font = CreateFontIndirectA(&description);
    LOGFONTA again{};
    ASSERT_EQ(GetObjectA(font, sizeof again, &again), int{sizeof again});
    EXPECT_EQ(std::memcmp(&again, &description, sizeof again), 0);
    EXPECT_TRUE(DeleteObject(font));
    EXPECT_EQ(GetObjectA(font, sizeof description, &description), 0);
    EXPECT_NE(GetObjectA(GetStockObject(DEFAULT_GUI_FONT), sizeof description, &description), 0);
    EXPECT_EQ(description.lfWeight, FW_NORMAL);
    LOGBRUSH brush{};
    EXPECT_NE(GetObjectA(GetSysColorBrush(COLOR_BTNFACE), sizeof brush, &brush), 0);
    EXPECT_EQ(brush.lbColor, GetSysColor(COLOR_BTNFACE));
}

TEST(Gdi, ABitmapIsInOneContextOnly) {
    Canvas canvas(2, 2);
    const HDC other = CreateCompatibleDC(nullptr);
    EXPECT_EQ(SelectObject(other, canvas.bitmap()), nullptr);
    const HGDIOBJ brush = CreateSolidBrush(green);
    const HGDIOBJ before = SelectObject(other, brush);
    EXPECT_NE(before, nullptr);
    EXPECT_EQ(SelectObject(other, before), brush);
    EXPECT_TRUE(DeleteObject(brush));
    EXPECT_EQ(SelectObject(other, brush), nullptr);
    EXPECT_TRUE(DeleteDC(other));
    EXPECT_FALSE(DeleteDC(other));
    EXPECT_TRUE(DeleteObject(GetStockObject(WHITE_BRUSH))) << "a stock object stays";
    EXPECT_EQ(GetObjectA(GetStockObject(WHITE_BRUSH), 0, nullptr), int{sizeof(LOGBRUSH)});
}

TEST(Gdi, BitmapsComeFromResources) {
    // Each shows red, green and blue above black, white and red.
    for (const WORD id : std::array<WORD, 5>{1, 4, 8, 24, 32}) {
        const HBITMAP bitmap = LoadBitmapA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id));
        ASSERT_NE(bitmap, nullptr) << id;
        BITMAP description{};
        GetObjectA(bitmap, sizeof description, &description);
        EXPECT_EQ(description.bmWidth, 3) << id;
        EXPECT_EQ(description.bmHeight, 2) << id;
        const Canvas canvas(bitmap);
        if (id == 1) {
            expectRow(canvas, 0, {white, black, white});
            expectRow(canvas, 1, {black, white, black});
        } else {
            expectRow(canvas, 0, {red, green, blue}, std::to_string(id).c_str());
            expectRow(canvas, 1, {black, white, red});
        }
    }
    EXPECT_EQ(LoadBitmapA(GetModuleHandleA(nullptr), "missing"), nullptr);
}

}  // namespace
