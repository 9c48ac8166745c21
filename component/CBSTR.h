#pragma once
#include <windows.h>

#include <oleauto.h>

#include <string>

// A text for the user: a wide system string (BSTR), converted to the ANSI code page on demand. Copies share
// one block, freed with the last of them. Nothing throws: when memory runs out, the text is null or empty and
// the status is E_OUTOFMEMORY.
//
//   CBSTR caption;
//   caption.Format("%1: %2!d!", drive, count);
//   SetWindowTextA(window, caption.Text());
class CBSTR {
public:
    // A null text; status E_FAIL.
    CBSTR() = default;
    // A null pointer gives a null text with the status 0.
    CBSTR(const char* text);
    CBSTR(const CBSTR& other);
    CBSTR(CBSTR&& other) noexcept;
    CBSTR& operator=(CBSTR other) noexcept;
    ~CBSTR() { Release(); }

    // The text in the ANSI code page; null for a null text. Owned by the block and valid as long as that.
    const char* Narrow();
    // The same, but an empty text instead of null.
    const char* Text();
    // The wide text, owned by the object; null for a null text.
    BSTR Wide() const;
    // Of the last operation: 0, E_OUTOFMEMORY, or E_FAIL when there is no text.
    HRESULT Status() const { return status_; }

    // Loads a string resource of any length. initialSize: bytes of the first buffer. Result: the length that
    // LoadStringA reported; 0 and an empty text when there is no such string.
    int LoadString(HINSTANCE module, UINT id, int initialSize);

    // Concatenates the texts in a new block; a null text counts as empty.
    friend CBSTR operator+(const CBSTR& left, const CBSTR& right);
    CBSTR& operator+=(const CBSTR& other) { return *this = *this + other; }

    // Replaces the text by a pattern filled in with the arguments after it. TRUE; FALSE with an empty text
    // when the argument numbers are invalid, and with the text so far and the rest of the pattern when a
    // specification is. In the pattern
    //   %n           inserts argument n (1 to 99) as a text (const char*; null: a blank)
    //   %n!spec!     formats it by a printf-like specification: flags + # -, width, .precision (each
    //                digits, or * for the next argument, an int) and a letter
    //                  s c d o u x X p      as printf          b  the lowest 8 bits
    //                  e f g G  double, i int: in the format of the user's locale
    //                  D T  const SYSTEMTIME*: date, time; T with a width below 6 (or none) omits the
    //                  seconds, with 1 to 8 the AM/PM marker
    //   \@           inserts the host's product name
    //   \\ \' \"     and \ before a tab or line end insert that character; before anything else
    //                \ and % insert nothing
    // Each argument is used exactly once; they are passed in the order of their numbers, without gaps.
    BOOL Format(const char* pattern, ...);

    // Releases the text.
    void Release();

private:
    struct Block;
    static CBSTR Holding(Block* block);

    Block* data_ = nullptr;
    HRESULT status_ = E_FAIL;
};
