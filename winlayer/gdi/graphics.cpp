#include "winlayer/gdi/graphics.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "winlayer/gdi/surface_drawing.h"

namespace winlayer {

namespace {

constexpr std::uint32_t black = 0xFF000000;

// From COLOR_SCROLLBAR (0) to COLOR_INFOBK (24).
constexpr std::array<COLORREF, 25> systemColors = {
    RGB(212, 208, 200), RGB(58, 110, 165),  RGB(10, 36, 106),   RGB(128, 128, 128), RGB(212, 208, 200),
    RGB(255, 255, 255), RGB(0, 0, 0),       RGB(0, 0, 0),       RGB(0, 0, 0),       RGB(255, 255, 255),
    RGB(212, 208, 200), RGB(212, 208, 200), RGB(128, 128, 128), RGB(10, 36, 106),   RGB(255, 255, 255),
    RGB(212, 208, 200), RGB(128, 128, 128), RGB(128, 128, 128), RGB(0, 0, 0),       RGB(212, 208, 200),
    RGB(255, 255, 255), RGB(64, 64, 64),    RGB(212, 208, 200), RGB(0, 0, 0),       RGB(255, 255, 225)};

// Eight points at 96 dots per inch.
Font dialogFont() {
    Font font;
    font.description.lfHeight = -11;
    font.description.lfWeight = FW_NORMAL;
    std::strcpy(font.description.lfFaceName, "MS Shell Dlg");
    return font;
}

}  // namespace

bool systemColor(int index, COLORREF& color) {
    const bool known = index >= 0 && static_cast<std::size_t>(index) < systemColors.size();
    color = known ? systemColors[static_cast<std::size_t>(index)] : 0;
    return known;
}

Graphics::Graphics() {
    stock_[WHITE_BRUSH] = insert({Brush{RGB(255, 255, 255)}, true});
    stock_[BLACK_BRUSH] = insert({Brush{RGB(0, 0, 0)}, true});
    stock_[DEFAULT_GUI_FONT] = insert({dialogFont(), true});
    noBitmap_ = insert({Bitmap{std::make_shared<Surface>(makeSurface(1, 1, black)), 1}, true});
    for (int index = 0; static_cast<std::size_t>(index) < systemColors.size(); ++index) {
        systemBrushes_[index] = insert({Brush{systemColors[static_cast<std::size_t>(index)]}, true});
    }
}

ULONG_PTR Graphics::nextHandle() {
    lastHandle_ += 4;
    return lastHandle_;
}

HGDIOBJ Graphics::insert(Object object) {
    const auto handle = reinterpret_cast<HGDIOBJ>(nextHandle());
    objects_.emplace(handle, std::move(object));
    return handle;
}

HDC Graphics::open(std::shared_ptr<Surface> surface) {
    const auto handle = reinterpret_cast<HDC>(nextHandle());
    contexts_[handle] = {std::move(surface), true, nullptr, stock(WHITE_BRUSH), stock(DEFAULT_GUI_FONT)};
    return handle;
}

bool Graphics::close(HDC handle) {
    const DeviceContext* const closed = context(handle);
    return closed != nullptr && closed->ofWindow && contexts_.erase(handle) != 0;
}

HDC Graphics::createMemoryContext() {
    const HDC handle = open(find<Bitmap>(noBitmap_)->surface);
    contexts_[handle].ofWindow = false;
    contexts_[handle].bitmap = noBitmap_;
    return handle;
}

bool Graphics::deleteContext(HDC handle) {
    const DeviceContext* const deleted = context(handle);
    return deleted != nullptr && !deleted->ofWindow && contexts_.erase(handle) != 0;
}

DeviceContext* Graphics::context(HDC handle) {
    const auto found = contexts_.find(handle);
    return found == contexts_.end() ? nullptr : &found->second;
}

const LOGFONTA* Graphics::font(HFONT handle) {
    const Font* const found = find<Font>(handle);
    return found == nullptr ? nullptr : &found->description;
}

bool Graphics::select(DeviceContext& context, HGDIOBJ object, HGDIOBJ& previous) {
    if (Bitmap* const bitmap = find<Bitmap>(object); bitmap != nullptr) {
        if (context.ofWindow || (object != noBitmap_ && isSelected(object, &context))) {
            return false;
        }
        context.surface = bitmap->surface;
        previous = std::exchange(context.bitmap, object);
        return true;
    }
    const bool isBrush = find<Brush>(object) != nullptr;
    if (!isBrush && find<Font>(object) == nullptr) {
        return false;
    }
    previous = std::exchange(isBrush ? context.brush : context.font, object);
    return true;
}

bool Graphics::isSelected(HGDIOBJ object, const DeviceContext* besides) const {
    return std::any_of(contexts_.begin(), contexts_.end(), [&](const auto& entry) {
        const DeviceContext& each = entry.second;
        return &each != besides && (each.bitmap == object || each.brush == object || each.font == object);
    });
}

bool Graphics::remove(HGDIOBJ object) {
    const auto found = objects_.find(object);
    if (found == objects_.end()) {
        return false;
    }
    if (found->second.isStock) {
        return true;
    }
    if (isSelected(object, nullptr)) {
        return false;
    }
    objects_.erase(found);
    return true;
}

HGDIOBJ Graphics::stock(int index) const {
    const auto found = stock_.find(index);
    return found == stock_.end() ? nullptr : found->second;
}

bool Graphics::brushColor(HBRUSH brush, COLORREF& color) {
    const auto value = reinterpret_cast<ULONG_PTR>(brush);
    if (value < firstHandle) {
        return systemColor(static_cast<int>(value) - 1, color);
    }
    const Brush* const found = find<Brush>(brush);
    color = found != nullptr ? found->color : 0;
    return found != nullptr;
}

HBRUSH Graphics::systemBrush(int index) const {
    const auto found = systemBrushes_.find(index);
    return found == systemBrushes_.end() ? nullptr : static_cast<HBRUSH>(found->second);
}

std::size_t Graphics::count() const {
    const auto own = std::count_if(objects_.begin(), objects_.end(),
                                   [](const auto& entry) { return !entry.second.isStock; });
    return static_cast<std::size_t>(own) + contexts_.size();
}

}  // namespace winlayer
