#pragma once
#include "winlayer/dialogs/formatted_text.h"
#include "winlayer/include/richedit.h"
#include "winlayer/windows/control.h"

namespace winlayer {

// RICHEDIT, only to show formatted text: it takes text from the program, not from the keyboard.
class RichEditControl : public Control {
public:
    using Control::Control;
    LRESULT message(UINT message, WPARAM wParam, LPARAM lParam) override;

    const RichText& content() const { return content_; }

private:
    LRESULT streamIn(WPARAM format, EDITSTREAM& stream);
    void show(RichText content);

    RichText content_;
};

}  // namespace winlayer
