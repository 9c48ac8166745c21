#include "host/frame/frame_layout.h"

#include <algorithm>

namespace host {

namespace {

SIZE clientSize(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
}

// Moves the ends of a span within a length that has grown by `growth`.
void follow(LONG& first, LONG& last, bool withFirst, bool withLast, LONG growth) {
    if (!withFirst) first += growth;
    if (withLast) last += growth;
    last = std::max(first, last);
}

}  // namespace

FrameLayout::FrameLayout(HWND frame) : frame_(frame), original_(clientSize(frame)) {}

void FrameLayout::add(int control, Edges edges) {
    RECT rectangle{};
    GetWindowRect(GetDlgItem(frame_, control), &rectangle);
    MapWindowPoints(nullptr, frame_, reinterpret_cast<POINT*>(&rectangle), 2);
    entries_.push_back({control, edges, rectangle});
}

RECT FrameLayout::placed(const Entry& entry) const {
    const SIZE now = clientSize(frame_);
    RECT result = entry.original;
    follow(result.left, result.right, entry.edges.left, entry.edges.right, now.cx - original_.cx);
    follow(result.top, result.bottom, entry.edges.top, entry.edges.bottom, now.cy - original_.cy);
    return result;
}

void FrameLayout::apply() const {
    for (const Entry& entry : entries_) {
        const RECT to = placed(entry);
        SetWindowPos(GetDlgItem(frame_, entry.control), nullptr, to.left, to.top, to.right - to.left,
                     to.bottom - to.top, SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

RECT FrameLayout::rectangle(int control) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [control](const Entry& entry) { return entry.control == control; });
    return found == entries_.end() ? RECT{} : placed(*found);
}

}  // namespace host
