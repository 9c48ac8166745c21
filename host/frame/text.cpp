#include "host/frame/text.h"

#include <vector>

namespace host {

std::string utf8(const std::string& ansi) {
    if (ansi.empty()) return {};
    const int length = static_cast<int>(ansi.size());
    std::vector<WCHAR> wide(ansi.size() + 1);
    const int wideLength =
        MultiByteToWideChar(CP_ACP, 0, ansi.data(), length, wide.data(), static_cast<int>(wide.size()));
    std::string text(ansi.size() * 4, '\0');
    text.resize(static_cast<std::size_t>(WideCharToMultiByte(
        CP_UTF8, 0, wide.data(), wideLength, text.data(), static_cast<int>(text.size()), nullptr, nullptr)));
    return text;
}

std::string windowText(HWND window) {
    const int length = GetWindowTextLengthA(window);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(window, text.data(), length + 1)));
    return text;
}

std::string resourceString(UINT id) {
    char text[512];
    const int length = LoadStringA(GetModuleHandleA(nullptr), id, text, sizeof(text));
    return {text, static_cast<std::size_t>(length)};
}

std::string oneLine(const std::string& ansi) {
    std::string line;
    for (const char character : utf8(ansi)) {
        if (character == '\n') {
            line += "\\n";
        } else if (character != '\r') {
            line += character;
        }
    }
    return line;
}

}  // namespace host
