#pragma once
#include <QMouseEvent>
#include <QObject>
#include <QWidget>
#include <map>

#include "winlayer/include/windows.h"

namespace winlayer {

// Passes the user's input to the layer and keeps it from the widgets, which would handle it themselves. They
// only scroll texts, which changes nothing but the view.
class QtInput : public QObject {
public:
    void watch(QWidget& widget, HWND window);
    void forget(HWND window);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void keepInFront(HWND window) const;
    static bool mouse(const QMouseEvent& event, HWND window);
    static bool key(const QKeyEvent& event, bool down);

    std::map<QObject*, HWND> windows_;
};

}  // namespace winlayer
