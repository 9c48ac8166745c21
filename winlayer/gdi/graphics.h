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

// A drawing target: a window's context has its own surface, a memory context that of its bitmap.
struct DeviceContext {
    std::shared_ptr<Surface> surface;
    bool ofWindow = false;
    HGDIOBJ bitmap = nullptr;
    HGDIOBJ brush = nullptr;
    HGDIOBJ font = nullptr;
    int stretchMode = BLACKONWHITE;
};

// A machine's drawing objects and device contexts. Handles are numbers that are never reused, so that a stale
// one is recognised. Thread rule: used by the thread that works with windows.
class Graphics {
public:
    // The current machine's.
    static Graphics& current();

    Graphics();

    // A context for a surface that its window keeps. close() is false for any other context.
    HDC open(std::shared_ptr<Surface> surface);
    bool close(HDC context);
    HDC createMemoryContext();
    // False when it is not a memory context.
    bool deleteContext(HDC context);
    // Null if the handle is not that of a context.
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
    // The description of a font; null if it is not a font.
    const LOGFONTA* font(HFONT font);
    // False if there is no such object, or for a bitmap that cannot be selected there. `previous` is the
    // object that was selected before.
    bool select(DeviceContext& context, HGDIOBJ object, HGDIOBJ& previous);
    // True for stock objects, which stay. False for an object that is selected into a context.
    bool remove(HGDIOBJ object);
    // Null for a number that has no stock object.
    HGDIOBJ stock(int index) const;
    // The colour of a brush, or of a system colour number plus one; false for anything else.
    bool brushColor(HBRUSH brush, COLORREF& color);
    // Null for a number that has no colour.
    HBRUSH systemBrush(int index) const;

    // Open objects and contexts; stock objects are not counted.
    std::size_t count() const;

private:
    struct Object {
        std::variant<Bitmap, Brush, Font> value;
        bool isStock;
    };

    // Above the numbers used for resources and system colours.
    static constexpr ULONG_PTR firstHandle = 0x10000;

    ULONG_PTR nextHandle();
    HGDIOBJ insert(Object object);
    bool isSelected(HGDIOBJ object, const DeviceContext* besides) const;

    std::map<HGDIOBJ, Object> objects_;
    std::map<HDC, DeviceContext> contexts_;
    std::map<int, HGDIOBJ> stock_;
    std::map<int, HGDIOBJ> systemBrushes_;
    HGDIOBJ noBitmap_ = nullptr;  // initially selected in a memory context: one pixel
    ULONG_PTR lastHandle_ = firstHandle;
};

inline Graphics& graphics() {
    return Graphics::current();
}

// The colour of a COLOR_... number; false if there is none.
bool systemColor(int index, COLORREF& color);

}  // namespace winlayer
