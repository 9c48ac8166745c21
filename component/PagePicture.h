#pragma once
#include <windows.h>

// The largest rectangle with the picture's proportions within `place`, centred. Sizes in pixels; the
// picture's are not 0.
RECT FitPicture(const RECT& place, LONG pictureWidth, LONG pictureHeight);

// The picture that every page shows at the position of its control IDC_PICTURE. Owns the bitmap.
class PagePicture {
public:
    PagePicture() = default;
    ~PagePicture() { Release(); }
    PagePicture(const PagePicture&) = delete;
    PagePicture& operator=(const PagePicture&) = delete;

    // Loads the module's bitmap; without it nothing is drawn.
    void Load(HINSTANCE module);
    // Handles a page's WM_PAINT.
    void Paint(HWND page) const;
    void Release();

private:
    HBITMAP bitmap_ = nullptr;
};
