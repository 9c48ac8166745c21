// Conversions between code pages and UTF-16.

#include <algorithm>

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/text/code_pages.h"

namespace winlayer {
namespace {

constexpr DWORD widenFlags = MB_PRECOMPOSED | MB_USEGLYPHCHARS | MB_ERR_INVALID_CHARS;
constexpr DWORD narrowFlags = WC_COMPOSITECHECK | WC_SEPCHARS | WC_NO_BEST_FIT_CHARS;

// Copies the text to a buffer of `size` units, or only counts them when the size is 0.
template <class Text, class Unit>
int give(const Text& text, Unit* buffer, int size) {
    const auto length = static_cast<int>(text.size());
    if (size == 0) {
        return length;
    }
    if (length > size) {
        return failed(ERROR_INSUFFICIENT_BUFFER);
    }
    std::transform(text.begin(), text.end(), buffer, [](auto unit) { return static_cast<Unit>(unit); });
    return length;
}

std::u16string unitsOf(LPCWSTR wide, int length) {
    LPCWSTR end = wide + std::max(length, 0);
    while (length < 0 && *end++ != 0) {
    }
    return {wide, end};
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

int WINAPI MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int length, LPWSTR wide,
                               int wideSize) try {
    if (denied(__func__)) {
        return 0;
    }
    const UINT page = actualCodePage(winlayer::SystemSettings::current(), codePage);
    if (!isCodePage(page) || text == nullptr || length == 0 || wideSize < 0 ||
        (wideSize > 0 && wide == nullptr)) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    if ((flags & ~widenFlags) != 0) {
        return failed(ERROR_INVALID_FLAGS);
    }
    const std::string_view source(
        text, length < 0 ? std::string_view(text).size() + 1 : static_cast<std::size_t>(length));
    bool valid = true;
    const std::u16string units = widen(page, source, valid);
    if (!valid && (flags & MB_ERR_INVALID_CHARS) != 0) {
        return failed(ERROR_NO_UNICODE_TRANSLATION);
    }
    return give(units, wide, wideSize);
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}

int WINAPI WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR wide, int wideLength, LPSTR text, int size,
                               LPCSTR defaultChar, LPBOOL usedDefault) try {
    if (denied(__func__)) {
        return 0;
    }
    const UINT page = actualCodePage(winlayer::SystemSettings::current(), codePage);
    const bool choosesDefault = defaultChar != nullptr || usedDefault != nullptr;
    if (!isCodePage(page) || wide == nullptr || wideLength == 0 || size < 0 ||
        (size > 0 && text == nullptr) || (page == CP_UTF8 && choosesDefault)) {
        return failed(ERROR_INVALID_PARAMETER);
    }
    if ((flags & ~narrowFlags) != 0) {
        return failed(ERROR_INVALID_FLAGS);
    }
    Narrowing how;
    how.compose = (flags & WC_COMPOSITECHECK) != 0;
    if (defaultChar != nullptr) {
        how.replacement = std::string_view(defaultChar, 1);
    }
    const std::string bytes = narrow(page, unitsOf(wide, wideLength), how);
    if (usedDefault != nullptr) {
        *usedDefault = how.replaced ? TRUE : FALSE;
    }
    return give(bytes, text, size);
} catch (const std::bad_alloc&) {
    return outOfMemory(0);
}
