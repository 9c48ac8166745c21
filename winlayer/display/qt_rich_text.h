#pragma once
#include <QTextEdit>

#include "winlayer/dialogs/formatted_text.h"

namespace winlayer {

void showRichText(QTextEdit& widget, const RichText& text);

}  // namespace winlayer
