#pragma once
#include <windows.h>

#include <vector>

namespace host {

// Keeps the distances between a window's controls and its edges while the window changes its size. It takes
// the sizes of the moment of its making as the ones to go by.
class FrameLayout {
public:
    FrameLayout() = default;
    explicit FrameLayout(HWND frame);

    // The edges that a control goes with; with both of a pair it is stretched.
    struct Edges {
        bool left;
        bool top;
        bool right;
        bool bottom;
    };
    void add(int control, Edges edges);
    void apply() const;
    // A control's rectangle in the frame's client coordinates for the frame's size of now.
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
