// Draws the picture of the wizard's pages: a diskette and a lifebelt on the sea at dawn. Run at build time:
//   draw_picture OUTPUT.bmp
// Every shape is a signed distance (negative inside, in pixels); each pixel averages many samples, which
// smooths the edges.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <numbers>
#include <vector>

namespace {

constexpr int width = 336;
constexpr int height = 161;
constexpr int samples = 5;  // per pixel and direction

struct Point {
    double x, y;
};
struct Color {
    double r, g, b;
};

constexpr Color hex(std::uint32_t rgb) {
    return {(rgb >> 16 & 0xFF) / 255.0, (rgb >> 8 & 0xFF) / 255.0, (rgb & 0xFF) / 255.0};
}

Color mix(Color a, Color b, double share) {
    const double t = std::clamp(share, 0.0, 1.0);
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

Color lit(const Color& color, double light) {
    return light < 0 ? mix(color, hex(0x061426), -light) : mix(color, hex(0xFFFFFF), light);
}

double smooth(double from, double to, double value) {
    const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

Point turned(Point p, Point center, double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    const double x = p.x - center.x;
    const double y = p.y - center.y;
    return {x * std::cos(angle) + y * std::sin(angle), y * std::cos(angle) - x * std::sin(angle)};
}

double box(Point p, double left, double top, double right, double bottom, double radius) {
    const double dx = std::abs(p.x - (left + right) / 2) - (right - left) / 2 + radius;
    const double dy = std::abs(p.y - (top + bottom) / 2) - (bottom - top) / 2 + radius;
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) - radius;
}

// The sea.

constexpr double horizon = 92;
constexpr Point sun{272, 84};

double swell(double x, double y, double phase) {
    return std::sin(x / 17 + phase) * 1.6 + std::sin(x / 41 - phase * 2 + y / 9) * 2.2;
}

Color sky(Point p) {
    Color color = mix(hex(0x12305C), hex(0x3C7FA8), p.y / 55);
    color = mix(color, hex(0xF6C98A), smooth(30, horizon, p.y));
    const double distance = std::hypot(p.x - sun.x, (p.y - sun.y) * 1.15);
    color = mix(color, hex(0xFFE9B8), 0.8 * std::exp(-distance * distance / 2400));
    color = mix(color, hex(0xFFF7DC), 1 - smooth(15, 17, distance));
    // Cloud bands.
    const double cloud =
        std::sin(p.x / 31 + p.y / 5) + std::sin(p.x / 13 - p.y / 3.1) * 0.5 + std::sin(p.y / 3.7);
    const double band = smooth(0.9, 2.1, cloud) * smooth(8, 26, p.y) * (1 - smooth(56, 78, p.y));
    return mix(color, hex(0xFFE7D2), band * 0.45);
}

Color sea(Point p) {
    const double depth = (p.y - horizon) / (height - horizon);
    Color color = mix(hex(0x3E8BA6), hex(0x0B3558), std::sqrt(depth));
    const double ripple = std::sin((p.y - horizon + swell(p.x, p.y, 0.4)) * (2.6 - 1.7 * depth));
    color = lit(color, ripple * 0.10);
    // The sun's path across the waves.
    const double path = std::exp(-std::pow((p.x - sun.x + swell(p.x, p.y, 1.0) * 2) / (14 + 60 * depth), 2));
    return mix(color, hex(0xFFDDA6), path * (0.25 + 0.45 * smooth(0.2, 0.9, ripple)) * (1 - 0.4 * depth));
}

// The diskette: 92 by 96 pixels around its centre.

constexpr Point disketteCenter{118, 78};
constexpr double disketteTurn = -11;

double bodyDistance(Point p) {
    const double corner = (p.x - p.y - 88) / std::numbers::sqrt2;  // cut off
    return std::max(box(p, -46, -48, 46, 48, 4), corner);
}

bool drawDiskette(Point pixel, Color& color) {
    const Point p = turned(pixel, disketteCenter, disketteTurn);
    const double body = bodyDistance(p);
    if (body > 0) {
        const double shadow = bodyDistance({p.x - 5, p.y - 6});
        color = mix(color, hex(0x071B30), 0.45 * (1 - smooth(-6, 7, shadow)));
        return false;
    }
    color = lit(hex(0x27408F), 0.16 - p.y / 300 - p.x / 400);
    color = lit(color, 0.35 * (1 - smooth(0, 1.8, -body)) * (p.x + p.y < 0 ? 1 : -1.2));  // edges
    const double recess = box(p, -29, -50, 27, -14, 2);
    if (recess < 0) color = lit(color, -0.35);
    const double shutter = box(p, -24, -50, 19, -16, 2);
    if (shutter < 0) {
        color = lit(mix(hex(0xAEB9C6), hex(0xE9EEF3), 0.5 + 0.5 * std::sin(p.x / 9 + 0.6)), -0.05);
        color = lit(color, 0.4 * (1 - smooth(0, 1.4, -shutter)));
        if (box(p, 1, -43, 12, -21, 1.5) < 0) color = hex(0x1A2233);
    }
    const double label = box(p, -37, -4, 37, 52, 3);
    if (label < 0) {
        color = lit(hex(0xFBF4E2), -p.y / 500);
        if (p.y < 8) color = lit(hex(0xD8402F), 0.05 - p.x / 300);
        const double line = std::abs(std::fmod(p.y - 8, 9.5) - 7);
        if (p.y > 12 && p.y < 44 && std::abs(p.x) < 31)
            color = mix(color, hex(0x8FA3BF), 0.8 * (1 - smooth(0.4, 0.9, line)));
    }
    for (const double x : {-40.0, 40.0}) {
        if (box(p, x - 2.5, 39, x + 2.5, 44.5, 0.6) < 0) color = hex(0x101B3A);
    }
    return true;
}

// The lifebelt: a ring seen slightly from above, with four red bands and a rope.

constexpr Point beltCenter{196, 92};
constexpr double beltRadius = 37;     // of the ring's centre line
constexpr double beltThickness = 12;  // half

bool drawBelt(Point pixel, Color& color) {
    const Point p = turned(pixel, beltCenter, 14);
    const double fromCenter = std::hypot(p.x, p.y);
    const double across = fromCenter - beltRadius;  // along the ring's cross-section
    const double angle = std::atan2(p.y, p.x);

    // The rope hangs from band to band outside the ring.
    const double quarter =
        std::fmod(angle + 4.5 * std::numbers::pi, std::numbers::pi / 2) / (std::numbers::pi / 2);
    const double slack = beltRadius + beltThickness - 1 + 6.5 * std::sin(quarter * std::numbers::pi);
    const double rope = std::abs(fromCenter - slack) - 1.5;
    if (std::abs(across) > beltThickness) {
        const double shadow = std::abs(std::hypot(p.x - 4, p.y - 5) - beltRadius) - beltThickness;
        color = mix(color, hex(0x071B30), 0.4 * (1 - smooth(-4, 7, shadow)));
        if (rope < 0) {
            color = lit(hex(0xE8D9B0), 0.25 * std::sin(angle * 90) - 0.1);
            return true;
        }
        return false;
    }
    const double edge = std::abs(quarter - (quarter < 0.5 ? 0.0 : 1.0));
    const bool red = edge < 0.2;
    color = red ? hex(0xDB3B2B) : hex(0xF7F4EC);
    // A round cross-section, lit from the upper left.
    const double slope = across / beltThickness;
    const double facing = -(p.x * 0.55 + p.y * 0.83) / std::max(fromCenter, 1.0);
    const double light = 0.55 * std::sqrt(1 - slope * slope) + 0.45 * slope * facing;
    color = lit(color, std::clamp(light - 0.42, -0.55, 0.25));
    color = lit(color, 0.75 * std::exp(-std::pow((slope - 0.35 * facing) / 0.16, 2)) *
                           std::max(0.0, 0.4 + facing * 0.5));
    if (std::abs(edge - 0.2) < 0.012) color = lit(color, -0.4);
    return true;
}

// Water in front of the floating objects.
void drawFront(Point p, Color& color) {
    const double line = 124 + swell(p.x, 0, 2.3) + std::sin(p.x / 6.3) * 0.7;
    if (p.y < line) {
        return;
    }
    const double below = p.y - line;
    const Color water = lit(sea(p), 0.03 * std::sin(p.x / 9 + below / 2));
    color = mix(color, water, 0.45 + smooth(0, 20, below) * 0.5);
    color = mix(color, hex(0xF4FBFF), 0.7 * (1 - smooth(0.3, 2.2, below)));  // foam
}

Color scene(Point p) {
    Color color = p.y < horizon ? sky(p) : sea(p);
    color = mix(color, hex(0xFFE3B5), 0.5 * std::exp(-std::pow((p.y - horizon) / 1.5, 2)));
    drawDiskette(p, color);
    drawBelt(p, color);
    drawFront(p, color);
    const double corner = std::hypot((p.x - width / 2.0) / width, (p.y - height / 2.0) / height);
    return lit(color, -0.3 * smooth(0.45, 0.75, corner));
}

std::array<std::uint8_t, 3> pixel(int x, int y) {
    Color sum{0, 0, 0};
    for (int i = 0; i < samples * samples; ++i) {
        const Color one = scene({x + (i % samples + 0.5) / samples, y + (i / samples + 0.5) / samples});
        sum = {sum.r + one.r, sum.g + one.g, sum.b + one.b};
    }
    const auto byte = [](double value) {
        return static_cast<std::uint8_t>(std::clamp(value / (samples * samples), 0.0, 1.0) * 255 + 0.5);
    };
    return {byte(sum.b), byte(sum.g), byte(sum.r)};
}

void put(std::vector<std::uint8_t>& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

// A Windows bitmap: file header, info header, rows bottom up, each padded to four bytes.
std::vector<std::uint8_t> bitmap() {
    constexpr std::uint32_t rowBytes = (width * 3 + 3) / 4 * 4;
    constexpr std::uint32_t headBytes = 14 + 40;
    std::vector<std::uint8_t> bytes{'B', 'M'};
    put(bytes, headBytes + rowBytes * height, 4);
    put(bytes, 0, 4);
    put(bytes, headBytes, 4);
    put(bytes, 40, 4);
    put(bytes, width, 4);
    put(bytes, height, 4);
    put(bytes, 1, 2);
    put(bytes, 24, 2);
    for (const std::uint32_t field : {0U, rowBytes * height, 2835U, 2835U, 0U, 0U}) {
        put(bytes, field, 4);
    }
    for (int y = height - 1; y >= 0; --y) {
        for (int x = 0; x < width; ++x) {
            const auto bgr = pixel(x, y);
            bytes.insert(bytes.end(), bgr.begin(), bgr.end());
        }
        bytes.resize((bytes.size() - headBytes + 3) / 4 * 4 + headBytes);
    }
    return bytes;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        return 2;
    }
    const std::vector<std::uint8_t> bytes = bitmap();
    std::ofstream file(arguments[1], std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file.flush() ? 0 : 1;
}
