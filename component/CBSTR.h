#pragma once
#include <windows.h>

#include <oleauto.h>

#include <string>

// A text for the user: a system wide string with a copy in the ANSI code page made on demand. Copies share
// one block, which goes with its last holder. Nothing here throws: what memory runs out for is a null or
// empty text with the status E_OUTOFMEMORY.
//
//   CBSTR caption;
//   caption.Format("%1: %2!d!", drive, count);
//   SetWindowTextA(window, caption.Text());
class CBSTR {
public:
    // No text at all; status E_FAIL.
    CBSTR() = default;
    // Null makes a null text, which is none, but has the status 0.
    CBSTR(const char* text);
    CBSTR(const CBSTR& other);
    CBSTR(CBSTR&& other) noexcept;
    CBSTR& operator=(CBSTR other) noexcept;
    ~CBSTR() { Release(); }

    // The text in the ANSI code page, null for a null text. It belongs to the block and lives as long.
    const char* Narrow();
    // The same, but an empty text for a null one.
    const char* Text();
    // The wide text, the object's own; null for a null text.
    BSTR Wide() const;
    // 0, E_OUTOFMEMORY, or E_FAIL when there is no text. Of the last operation.
    HRESULT Status() const { return status_; }

    // Loads a string of a module, whole whatever its length. initialSize: bytes of the first buffer. Result:
    // the length that LoadStringA reported, 0 (and an empty text) when there is no such string.
    int LoadString(HINSTANCE module, UINT id, int initialSize);

    // Joins both texts in a new block; a missing one counts as empty.
    friend CBSTR operator+(const CBSTR& left, const CBSTR& right);
    CBSTR& operator+=(const CBSTR& other) { return *this = *this + other; }

    // Replaces the text by a pattern filled with the arguments that follow it. TRUE; FALSE with an empty text
    // when the argument numbers make no sense, and with what was made so far and the rest of the pattern when
    // a specification does not. In the pattern
    //   %n           inserts argument n (1 to 99) as a text (const char*; null: a blank)
    //   %n!spec!     inserts it as a printf-like specification says: flags + # -, width, .precision (each
    //                digits, or * for the next argument, an int) and a letter
    //                  s c d o u x X p      as printf          b  the lowest 8 bits
    //                  e f g G  double, i int: in the form of the user's locale
    //                  D T  const SYSTEMTIME*: date, time; the width of T leaves out seconds (below 6) and
    //                  the marker for morning and afternoon (1 to 8)
    //   \@           inserts the host's product name
    //   \\ \' \"     and \ before a tab or line end insert that character; before anything else
    //                \ and % insert nothing
    // Every argument is used once, none is left out; they are passed in the order of their numbers.
    BOOL Format(const char* pattern, ...);

    // Lets go of the text.
    void Release();

private:
    struct Block;
    static CBSTR Holding(Block* block);

    Block* data_ = nullptr;
    HRESULT status_ = E_FAIL;
};
