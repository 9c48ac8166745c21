#pragma once
#include <windows.h>

#include <vector>

namespace host {

// Keeps the distances between a window's controls and its edges when the window is resized, starting from the
// sizes at construction.
class FrameLayout {
public:
    FrameLayout() = default;
    explicit FrameLayout(HWND frame);

    // The edges to which a control is anchored; anchored to opposite edges, it stretches.
    struct Edges {
        bool left;
        bool top;
        bool right;
        bool bottom;
    };
    void add(int control, Edges edges);
    void apply() const;
    // A control's rectangle for the frame's current size, in client coordinates of the frame.
    RECT rectangle(int control) const;

private:
    struct Entry {
        int control;
        Edges edges;
        RECT original;
    };
    RECT placed(const Entry& entry) const;

    HWND frame_ = nullptr;
    SIZE original_{};
    std::vector<Entry> entries_;
};

}  // namespace host
