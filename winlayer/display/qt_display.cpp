#include "winlayer/display/qt_display.h"

#include <sys/wait.h>
#include <unistd.h>

#include <QAbstractEventDispatcher>
#include <QFontMetrics>
#include <QPixmap>
#include <QScreen>
#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "winlayer/base/clock.h"
#include "winlayer/base/system_settings.h"
#include "winlayer/display/display.h"
#include "winlayer/text/code_pages.h"
#include "winlayer/windows/window_geometry.h"
#include "winlayer/windows/window_position.h"
#include "winlayer/windows/window_system.h"

namespace winlayer {
namespace {

// The rectangle of a window's widget: the client area of a window with a caption, whose frame the desktop
// draws; the entire window of a child.
QRect placeOf(const Window& window) {
    if (window.isChild()) {
        return {window.place.left, window.place.top, widthOf(window.place), heightOf(window.place)};
    }
    const POINT origin = clientOrigin(window);
    const SIZE size = clientSize(window);
    return {origin.x, origin.y, size.cx, size.cy};
}

// Qt ends the program if the screen does not respond, so another process tries it first.
bool screenAnswers() {
    constexpr unsigned patience = 10;  // seconds
    const pid_t child = fork();
    if (child == 0) {
        alarm(patience);
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString&) {
            if (type == QtFatalMsg) _exit(EXIT_FAILURE);
        });
        int argumentCount = 0;
        const QGuiApplication trial(argumentCount, nullptr);
        _exit(EXIT_SUCCESS);
    }
    int status = 0;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
}

// Why there is no screen; empty if there is one.
std::string whyNoScreen() {
    const char* name = std::getenv("WAYLAND_DISPLAY");
    if (name == nullptr || *name == '\0') name = std::getenv("DISPLAY");
    if (name == nullptr || *name == '\0') return "there is no display";
    return screenAnswers() ? "" : "the display '" + std::string(name) + "' does not answer";
}

}  // namespace

QtDisplay::QtDisplay(const char* platform) : application_(platform) {}

QtDisplay::~QtDisplay() {
    for (const auto& [window, shown] : widgets_) {
        if (shown->parentWidget() == nullptr) {
            shown->deleteLater();
        }
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void QtDisplay::created(HWND window) {
    const auto facts = winlayer::Windows::current().find(window);
    std::unique_ptr<QWidget> unlisted(
        makeWidget(*facts, widget(facts->isChild() ? facts->parent : facts->owner)));
    widgets_[window] = unlisted.get();
    QWidget* const made = unlisted.release();
    input_.watch(*made, window);
    moved(window);
    refresh(window);
    enabled(window, !facts->has(WS_DISABLED));
    made->setVisible(facts->has(WS_VISIBLE));
}

// Deferred, because the widget may be handling an event.
void QtDisplay::destroyed(HWND window) {
    const auto found = widgets_.find(window);
    if (found == widgets_.end()) {
        return;  // it could not be created for lack of memory
    }
    input_.forget(window);
    found->second->hide();
    found->second->deleteLater();
    widgets_.erase(found);
}

void QtDisplay::moved(HWND window) {
    const auto facts = winlayer::Windows::current().find(window);
    QWidget* const moving = widget(window);
    const QRect place = placeOf(*facts);
    if (!facts->isChild() && !facts->has(WS_THICKFRAME)) {
        moving->setFixedSize(place.size());
    } else if (!facts->isChild()) {
        limitSize(*facts);
    }
    moving->setGeometry(place);
}

// The topmost child is first in the list; raising from last to first gives that order.
void QtDisplay::restacked(HWND window) {
    const auto facts = winlayer::Windows::current().find(window);
    if (const auto parent = winlayer::Windows::current().find(facts->parent)) {
        std::for_each(parent->children.rbegin(), parent->children.rend(), [&](HWND child) {
            if (QWidget* shown = widget(child)) shown->raise();
        });
    } else {
        widget(window)->raise();
    }
}

// The desktop must not offer sizes that the window does not allow.
void QtDisplay::limitSize(const Window& window) {
    const SIZE inside = clientSize(window);
    const POINT least = sizeLimits(window).ptMinTrackSize;
    widget(window.handle)
        ->setMinimumSize(least.x - (widthOf(window.place) - inside.cx),
                         least.y - (heightOf(window.place) - inside.cy));
}

void QtDisplay::shown(HWND window, bool visible) {
    const auto facts = winlayer::Windows::current().find(window);
    if (facts->has(WS_THICKFRAME)) limitSize(*facts);
    widget(window)->setVisible(visible);
    followFocus();
}

// A disabled window takes no input but looks the same, and so do its controls: Qt, which would grey them all,
// gets only the state of controls.
void QtDisplay::enabled(HWND window, bool enabled) {
    if (winlayer::Windows::current().find(window)->control != nullptr) {
        widget(window)->setEnabled(enabled);
        followFocus();
    }
}

void QtDisplay::textChanged(HWND window) {
    refresh(window);
}

void QtDisplay::fontChanged(HWND window) {
    refresh(window);
}

void QtDisplay::stateChanged(HWND window) {
    refresh(window);
}

void QtDisplay::focused(HWND /*window*/) {
    followFocus();
}

void QtDisplay::painted(HWND window) {
    widget(window)->update();
}

RECT QtDisplay::workArea() const {
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    return {area.left(), area.top(), area.left() + area.width(), area.top() + area.height()};
}

// The size that a label needs.
SIZE QtDisplay::textExtent(const std::string& text, const LOGFONTA& font, int width) const {
    const QString shown = QString::fromStdString(toUtf8(winlayer::SystemSettings::current(), text));
    const QRect needed = QFontMetrics(fontOf(font))
                             .boundingRect(QRect(0, 0, width, QWIDGETSIZE_MAX),
                                           Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, shown);
    return {needed.width(), needed.height()};
}

void QtDisplay::poll() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

// A stopped clock moves only when it is advanced, so there is no time to wait for.
void QtDisplay::wait() {
    if (winlayer::Clock::current().stopped()) {
        poll();
        Peer::wait();
        return;
    }
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtDisplay::wake() {
    QAbstractEventDispatcher::instance(qApp->thread())->wakeUp();
}

bool QtDisplay::capture(HWND window, const std::string& file) {
    QCoreApplication::processEvents();
    QWidget* shown = widget(window);
    return shown != nullptr && shown->grab().save(QString::fromStdString(file), "PNG");
}

// Qt moves the focus by itself when a widget is hidden or disabled.
void QtDisplay::followFocus() {
    QWidget* const wanted = widget(winlayer::Windows::current().focus);
    if (wanted != nullptr && wanted->isEnabled()) {
        wanted->setFocus();
    } else if (QWidget* const focus = QApplication::focusWidget()) {
        focus->clearFocus();
    }
}

void QtDisplay::refresh(HWND window) {
    refreshWidget(*widget(window), *winlayer::Windows::current().find(window));
}

QWidget* QtDisplay::widget(HWND window) const {
    const auto found = widgets_.find(window);
    return found == widgets_.end() ? nullptr : found->second;
}

}  // namespace winlayer

extern "C" [[gnu::visibility("default")]] winlayer::OpenQtDisplay winlayerOpenQtDisplay;

winlayer::Peer* winlayerOpenQtDisplay(winlayer::DisplayKind kind, std::string& reason) {
    using namespace winlayer;
    if (kind == DisplayKind::Memory) {
        return new QtDisplay("offscreen");
    }
    reason = whyNoScreen();
    return reason.empty() ? new QtDisplay(nullptr) : nullptr;
}
