#pragma once
#include <QApplication>
#include <QString>
#include <QWidget>
#include <string>

#include "winlayer/windows/window.h"

namespace winlayer {

// The one application object that Qt requires, on a platform ("offscreen") or, if null, the user's own.
class QtApplication {
public:
    explicit QtApplication(const char* platform);

private:
    int argumentCount_ = 1;
    char name_[5] = "host";
    char* arguments_[2] = {name_, nullptr};
    QApplication application_;
};

// The font drawn for a requested one.
QFont fontOf(const LOGFONTA& description);

// The widget for a window of this class and style. Owned by the parent, if there is one.
QWidget* makeWidget(const Window& window, QWidget* parent);

// Updates the widget with the window's text, font and state.
void refreshWidget(QWidget& widget, const Window& window);

}  // namespace winlayer
