#pragma once
#include <QApplication>
#include <QString>
#include <QWidget>
#include <string>

#include "winlayer/windows/window.h"

namespace winlayer {

// The one application object that Qt asks for, on a platform ("offscreen") or, for null, the user's own.
class QtApplication {
public:
    explicit QtApplication(const char* platform);

private:
    int argumentCount_ = 1;
    char name_[5] = "host";
    char* arguments_[2] = {name_, nullptr};
    QApplication application_;
};

// The font that is drawn for the one that a program asks for.
QFont fontOf(const LOGFONTA& description);

// The widget that shows a window of this class and style. Owned by the parent, if there is one.
QWidget* makeWidget(const Window& window, QWidget* parent);

// Takes over the window's text, font and state.
void refreshWidget(QWidget& widget, const Window& window);

}  // namespace winlayer
