#include "PagePicture.h"

#include "page_layout.h"
#include "resources/resource.h"

RECT FitPicture(const RECT& place, LONG pictureWidth, LONG pictureHeight) {
    const LONG placeWidth = place.right - place.left;
    const LONG placeHeight = place.bottom - place.top;
    const bool wider = placeWidth * pictureHeight > placeHeight * pictureWidth;
    const LONG width = wider ? placeHeight * pictureWidth / pictureHeight : placeWidth;
    const LONG height = wider ? placeHeight : placeWidth * pictureHeight / pictureWidth;
    const LONG left = place.left + (placeWidth - width) / 2;
    const LONG top = place.top + (placeHeight - height) / 2;
    return {left, top, left + width, top + height};
}

void PagePicture::Load(HINSTANCE module) {
    Release();
    bitmap_ = ::LoadBitmapA(module, MAKEINTRESOURCEA(IDB_PICTURE));
}

void PagePicture::Release() {
    if (bitmap_ != nullptr) {
        ::DeleteObject(bitmap_);
        bitmap_ = nullptr;
    }
}

void PagePicture::Paint(HWND page) const {
    PAINTSTRUCT paint;
    const HDC target = ::BeginPaint(page, &paint);
    BITMAP bitmap{};
    if (bitmap_ != nullptr && ::GetObjectA(bitmap_, sizeof bitmap, &bitmap) != 0) {
        const HDC source = ::CreateCompatibleDC(target);
        const HGDIOBJ before = ::SelectObject(source, bitmap_);
        ::SetStretchBltMode(target, HALFTONE);  // dropping pixels would spoil a drawing
        const RECT drawn = FitPicture(page_layout::Place(page, IDC_PICTURE), bitmap.bmWidth, bitmap.bmHeight);
        ::StretchBlt(target, drawn.left, drawn.top, drawn.right - drawn.left, drawn.bottom - drawn.top,
                     source, 0, 0, bitmap.bmWidth, bitmap.bmHeight, SRCCOPY);
        ::SelectObject(source, before);
        ::DeleteDC(source);
    }
    ::EndPaint(page, &paint);
}
