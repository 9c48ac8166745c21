#pragma once
#include <QApplication>
#include <map>

#include "winlayer/display/qt_controls.h"
#include "winlayer/display/qt_input.h"
#include "winlayer/windows/peer.h"

namespace winlayer {

// Shows each window of the layer as a Qt widget: controls as the widgets of their kind, so that assistive
// programs see them, all others as a surface. The widgets do not handle input themselves.
class QtDisplay : public Peer {
public:
    explicit QtDisplay(const char* platform);
    ~QtDisplay() override;

    void created(HWND window) override;
    void destroyed(HWND window) override;
    void moved(HWND window) override;
    void restacked(HWND window) override;
    void shown(HWND window, bool visible) override;
    void enabled(HWND window, bool enabled) override;
    void textChanged(HWND window) override;
    void fontChanged(HWND window) override;
    void stateChanged(HWND window) override;
    void focused(HWND window) override;
    void painted(HWND window) override;
    RECT workArea() const override;
    SIZE textExtent(const std::string& text, const LOGFONTA& font, int width) const override;
    void poll() override;
    void wait() override;
    void wake() override;
    bool capture(HWND window, const std::string& file) override;

private:
    void refresh(HWND window);
    void limitSize(const Window& window);
    void followFocus();
    QWidget* widget(HWND window) const;

    QtApplication application_;
    std::map<HWND, QWidget*> widgets_;  // Qt parents own their children; top-level widgets are ours
    QtInput input_;
};

}  // namespace winlayer
