#include "winlayer/display/qt_input.h"

#include <QKeyEvent>
#include <QTextEdit>
#include <string>
#include <utility>

#include "winlayer/base/system_settings.h"
#include "winlayer/text/code_pages.h"
#include "winlayer/windows/input.h"
#include "winlayer/windows/window_geometry.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {
namespace {

// 0 for a key that dialogs do not use.
UINT virtualKey(int key) {
    constexpr std::pair<int, int> keys[] = {
        {Qt::Key_Tab, VK_TAB},       {Qt::Key_Backtab, VK_TAB},   {Qt::Key_Return, VK_RETURN},
        {Qt::Key_Enter, VK_RETURN},  {Qt::Key_Escape, VK_ESCAPE}, {Qt::Key_Space, VK_SPACE},
        {Qt::Key_Left, VK_LEFT},     {Qt::Key_Up, VK_UP},         {Qt::Key_Right, VK_RIGHT},
        {Qt::Key_Down, VK_DOWN},     {Qt::Key_Shift, VK_SHIFT},   {Qt::Key_Control, VK_CONTROL},
        {Qt::Key_Backspace, VK_BACK}};
    for (const auto& [qt, windows] : keys) {
        if (qt == key) return static_cast<UINT>(windows);
    }
    const bool named = (key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9);
    return named ? static_cast<UINT>(key) : 0;  // Qt and Windows both use the character's code
}

// Qt reports every move and resize, including those that the layer has requested.
void follow(HWND window, const QRect& shown) {
    RECT client{};
    RECT place{};
    GetClientRect(window, &client);
    GetWindowRect(window, &place);
    const POINT origin = clientOrigin(*Windows::current().find(window));
    if (shown != QRect(origin.x, origin.y, client.right, client.bottom)) {
        SetWindowPos(window, nullptr, place.left + shown.x() - origin.x, place.top + shown.y() - origin.y,
                     place.right - place.left + shown.width() - client.right,
                     place.bottom - place.top + shown.height() - client.bottom,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

// When another window is activated, the release of a held key goes there.
void releaseModifiers() {
    for (const UINT modifier : {UINT{VK_SHIFT}, UINT{VK_CONTROL}}) {
        if (Windows::current().keysDown[modifier]) keyUp(modifier);
    }
}

POINT pointOf(const QMouseEvent& event) {
    const QPoint at = event.position().toPoint();
    return {at.x(), at.y()};
}

}  // namespace

void QtInput::watch(QWidget& widget, HWND window) {
    windows_[&widget] = window;
    widget.installEventFilter(this);
    widget.setMouseTracking(true);
    if (auto* text = qobject_cast<QTextEdit*>(&widget)) {
        windows_[text->viewport()] = window;
        text->viewport()->installEventFilter(this);
    }
}

void QtInput::forget(HWND window) {
    std::erase_if(windows_, [&](const auto& entry) {
        if (entry.second != window) return false;
        entry.first->removeEventFilter(this);
        return true;
    });
}

bool QtInput::eventFilter(QObject* object, QEvent* event) try {
    const HWND window = windows_.at(object);
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseMove:
            return mouse(*static_cast<QMouseEvent*>(event), window);
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            return key(*static_cast<QKeyEvent*>(event), event->type() == QEvent::KeyPress);
        case QEvent::ShortcutOverride:
            event->accept();  // disables Qt's own shortcuts
            return true;
        case QEvent::Close:
            requestClose(window);
            event->ignore();
            return true;
        case QEvent::Move:
        case QEvent::Resize:
            if (const auto* widget = qobject_cast<QWidget*>(object); widget->isWindow()) {
                follow(window, widget->geometry());
            }
            return false;
        case QEvent::WindowActivate:
            keepInFront(window);
            return false;
        case QEvent::WindowDeactivate:
            releaseModifiers();
            return false;
        default:
            return false;
    }
} catch (const std::bad_alloc&) {
    return true;  // without memory the control must not get the event either
}

// The desktop lets the user bring a window to the front that a modal dialog has disabled; then the dialog is
// raised again. (Qt's own modality would discard keys for the dialog meanwhile.)
void QtInput::keepInFront(HWND window) const {
    const HWND active = Windows::current().active;
    if (active == window || IsWindowEnabled(window)) return;
    for (const auto& [object, each] : windows_) {
        auto* const widget = qobject_cast<QWidget*>(object);
        if (each != active || widget == nullptr) continue;
        widget->raise();
        widget->activateWindow();
    }
}

bool QtInput::mouse(const QMouseEvent& event, HWND window) {
    if (event.type() == QEvent::MouseMove) {
        mouseMove(window, pointOf(event));
    } else if (event.button() == Qt::LeftButton) {
        (event.type() == QEvent::MouseButtonRelease ? mouseRelease : mousePress)(window, pointOf(event));
    }
    return true;
}

// Auto-repeat repeats only the press of a key.
bool QtInput::key(const QKeyEvent& event, bool down) {
    if (!down && event.isAutoRepeat()) return true;
    const bool alt = (event.modifiers() & Qt::AltModifier) != 0;
    if (const UINT code = virtualKey(event.key())) {
        (down ? keyDown : keyUp)(code, alt);
    } else if (std::string ansi;
               down && fromUtf8(SystemSettings::current(), event.text().toStdString(), ansi)) {
        for (const char each : ansi) character(each, alt);
    }
    return true;
}

}  // namespace winlayer
