#pragma once
#include <windows.h>

#include <string>
#include <vector>

namespace host {

// One control of a page as the user sees it.
struct ControlView {
    int id;
    std::string text;  // 8-bit
    bool enabled;
    enum class Mark { none, clear, checked } mark;  // of radio buttons and check boxes

    bool operator==(const ControlView&) const = default;
};

// The page's visible controls that show text, in their order on the page.
std::vector<ControlView> viewPage(HWND page);

}  // namespace host
