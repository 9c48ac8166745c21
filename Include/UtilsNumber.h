#pragma once
#include <windows.h>

#include <concepts>

namespace UTILS {

// unsigned long where it is a different type from DWORD: on 64-bit systems other than Windows. Operations
// that fill a DWORD also accept it, so that a program with "unsigned long position" compiles everywhere.
template <class T>
concept UnsignedLong = std::same_as<T, unsigned long> && !std::same_as<T, DWORD>;

// Calls `fill` with a DWORD for the number and returns its result. A throw leaves the number unchanged.
template <UnsignedLong Number, class Fill>
decltype(auto) WithDword(Number& number, Fill fill) {
    auto narrow = static_cast<DWORD>(number);
    decltype(auto) result = fill(narrow);
    number = narrow;
    return result;
}

}  // namespace UTILS
