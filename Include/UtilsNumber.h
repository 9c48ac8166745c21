#pragma once
#include <windows.h>

#include <concepts>

namespace UTILS {

// unsigned long where it is not the same type as DWORD: on 64-bit systems other than Windows. Operations that
// fill a DWORD take one too, so that a program that says "unsigned long position" builds everywhere.
template <class T>
concept UnsignedLong = std::same_as<T, unsigned long> && !std::same_as<T, DWORD>;

// What `fill` gives, which is called with a DWORD in place of the number. A throw leaves the number as it is.
template <UnsignedLong Number, class Fill>
decltype(auto) WithDword(Number& number, Fill fill) {
    auto narrow = static_cast<DWORD>(number);
    decltype(auto) result = fill(narrow);
    number = narrow;
    return result;
}

}  // namespace UTILS
