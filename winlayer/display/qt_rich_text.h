#pragma once
#include <QTextEdit>

#include "winlayer/dialogs/formatted_text.h"

namespace winlayer {

// Shows the text with its fonts, paragraphs and bullets.
void showRichText(QTextEdit& widget, const RichText& text);

}  // namespace winlayer
