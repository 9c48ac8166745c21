#pragma once
#include <QMouseEvent>
#include <QObject>
#include <QWidget>
#include <map>

#include "winlayer/include/windows.h"

namespace winlayer {

// Passes the user's input on to the layer and keeps it from the widgets, which would act on it themselves.
// Scrolling a text stays theirs: it changes only what is seen.
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
