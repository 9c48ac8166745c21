#pragma once
#include <cstddef>
#include <map>
#include <memory>
#include <variant>

#include "winlayer/gdi/surface.h"
#include "winlayer/include/wingdi.h"

namespace winlayer {

struct Bitmap {
    std::shared_ptr<Surface> surface;
    WORD bits = 32;
};
struct Brush {
    COLORREF color = 0;
};
struct Font {
    LOGFONTA description{};
};

// Where drawing goes. Windows' own have their surface; a memory context draws on the bitmap selected into it.
struct DeviceContext {
    std::shared_ptr<Surface> surface;
    bool ofWindow = false;
    HGDIOBJ bitmap = nullptr;
    HGDIOBJ brush = nullptr;
    HGDIOBJ font = nullptr;
    int stretchMode = BLACKONWHITE;
};

// A machine's drawing objects and device contexts. Handles are numbers that are never given twice, so that a
// stale one is known. Thread rule: used by the thread that works with windows.
class Graphics {
public:
    // The current machine's.
    static Graphics& current();

    Graphics();

    // A context on a surface that the window side keeps, until it is closed. False when it is none such.
    HDC open(std::shared_ptr<Surface> surface);
    bool close(HDC context);
    HDC createMemoryContext();
    // False when it is no memory context.
    bool deleteContext(HDC context);
    // Null for a handle that is none, or not of this kind.
    DeviceContext* context(HDC context);

    template <class Object>
    HGDIOBJ add(Object object) {
        return insert({std::move(object), false});
    }
    template <class Object>
    Object* find(HGDIOBJ object) {
        const auto found = objects_.find(object);
        return found == objects_.end() ? nullptr : std::get_if<Object>(&found->second.value);
    }
    // The description of a font; null when it is none.
    const LOGFONTA* font(HFONT font);
    // Whether there is such an object; what it was selected instead of is in `previous`. False also for a
    // bitmap that cannot be selected there.
    bool select(DeviceContext& context, HGDIOBJ object, HGDIOBJ& previous);
    // Stock objects stay, which is a success. False for one that is selected into a context.
    bool remove(HGDIOBJ object);
    // Null for a number without a stock object.
    HGDIOBJ stock(int index) const;
    // The colour of a brush, or of a system colour plus one in its place; false for neither.
    bool brushColor(HBRUSH brush, COLORREF& color);
    // Null for a number without a colour.
    HBRUSH systemBrush(int index) const;

    // Objects and contexts that are open now; stock objects are not counted.
    std::size_t count() const;

private:
    struct Object {
        std::variant<Bitmap, Brush, Font> value;
        bool isStock;
    };

    // Above the numbers that stand for resources and system colours.
    static constexpr ULONG_PTR firstHandle = 0x10000;

    ULONG_PTR nextHandle();
    HGDIOBJ insert(Object object);
    bool isSelected(HGDIOBJ object, const DeviceContext* besides) const;

    std::map<HGDIOBJ, Object> objects_;
    std::map<HDC, DeviceContext> contexts_;
    std::map<int, HGDIOBJ> stock_;
    std::map<int, HGDIOBJ> systemBrushes_;
    HGDIOBJ noBitmap_ = nullptr;  // what a memory context has at the start: one pixel
    ULONG_PTR lastHandle_ = firstHandle;
};

inline Graphics& graphics() {
    return Graphics::current();
}

// The colour of a COLOR_... number; false when there is none.
bool systemColor(int index, COLORREF& color);

}  // namespace winlayer
