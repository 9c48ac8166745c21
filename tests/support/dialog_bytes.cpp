#include "support/dialog_bytes.h"

namespace {

class Bytes {
public:
    Bytes& word(int value) {
        bytes_.push_back(static_cast<BYTE>(value));
        bytes_.push_back(static_cast<BYTE>(value >> 8));
        return *this;
    }
    Bytes& dword(DWORD value) {
        return word(static_cast<int>(value & 0xFFFF)).word(static_cast<int>(value >> 16));
    }
    // Bytes of a text stand for the characters of the same number.
    Bytes& text(const char* text) {
        for (; *text != 0; ++text) {
            word(static_cast<BYTE>(*text));
        }
        return word(0);
    }
    void align() { bytes_.resize((bytes_.size() + 3) / 4 * 4); }
    std::vector<BYTE> take() { return std::move(bytes_); }

private:
    std::vector<BYTE> bytes_;
};

void addControl(Bytes& bytes, const ControlDescription& control, bool extended) {
    bytes.align();
    const DWORD style = control.style | WS_CHILD;
    if (extended) {
        bytes.dword(0).dword(0).dword(style);
    } else {
        bytes.dword(style).dword(0);
    }
    bytes.word(control.x).word(control.y).word(control.width).word(control.height);
    if (extended) {
        bytes.dword(control.id);
    } else {
        bytes.word(control.id);
    }
    if (control.windowClass != 0) {
        bytes.word(0xFFFF).word(control.windowClass);
    } else {
        bytes.text(control.className);
    }
    bytes.text(control.title).word(0);
}

}  // namespace

std::vector<BYTE> dialogBytes(const DialogDescription& dialog, bool extended) {
    Bytes bytes;
    if (extended) {
        bytes.word(1).word(0xFFFF).dword(0).dword(dialog.exStyle).dword(dialog.style);
    } else {
        bytes.dword(dialog.style).dword(dialog.exStyle);
    }
    bytes.word(static_cast<int>(dialog.controls.size()));
    bytes.word(dialog.x).word(dialog.y).word(dialog.width).word(dialog.height);
    bytes.word(0).word(0).text(dialog.title);
    if ((dialog.style & DS_SETFONT) != 0) {
        bytes.word(8);
        if (extended) {
            bytes.word(400).word(0);
        }
        bytes.text("MS Sans Serif");
    }
    for (const ControlDescription& control : dialog.controls) {
        addControl(bytes, control, extended);
    }
    return bytes.take();
}
