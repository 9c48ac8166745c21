// The compiler's runtime library calls functions that Windows 98 has only by name, or not at all. Here they
// are implemented with what it has. The library calls each through a pointer that the import libraries name
// "__imp_" and the function's name; the definitions here replace these pointers.
#include <windows.h>

#include <sys/stat.h>

namespace {

// A name for the 8-bit functions; null for null.
class Name {
public:
    explicit Name(LPCWSTR wide) : given_(wide != nullptr) {
        if (given_) WideCharToMultiByte(CP_ACP, 0, wide, -1, text_, MAX_PATH, nullptr, nullptr);
    }
    LPCSTR get() const { return given_ ? text_ : nullptr; }

private:
    bool given_;
    char text_[MAX_PATH + 1]{};
};

// Used by the locks of the C++ library; they have no names.
HANDLE WINAPI createSemaphore(LPSECURITY_ATTRIBUTES security, LONG initial, LONG maximum, LPCWSTR name) {
    return CreateSemaphoreA(security, initial, maximum, Name(name).get());
}

// The C library looks up newer functions in its own module.
HMODULE WINAPI getModuleHandle(LPCWSTR name) {
    return GetModuleHandleA(Name(name).get());
}

HMODULE WINAPI loadLibrary(LPCWSTR name) {
    return LoadLibraryA(Name(name).get());
}

// The streams of the C++ library query the size of their file, with 64-bit times.
int fileFacts(int file, struct _stat64* facts) {
    struct _stati64 old {};
    if (_fstati64(file, &old) != 0) return -1;
    *facts = {};
    facts->st_dev = old.st_dev;
    facts->st_ino = old.st_ino;
    facts->st_mode = old.st_mode;
    facts->st_nlink = old.st_nlink;
    facts->st_rdev = old.st_rdev;
    facts->st_size = old.st_size;
    facts->st_atime = old.st_atime;
    facts->st_mtime = old.st_mtime;
    facts->st_ctime = old.st_ctime;
    return 0;
}

}  // namespace

extern "C" {
decltype(&createSemaphore) importCreateSemaphore __asm__("__imp__CreateSemaphoreW@16") = createSemaphore;
decltype(&getModuleHandle) importGetModuleHandle __asm__("__imp__GetModuleHandleW@4") = getModuleHandle;
decltype(&loadLibrary) importLoadLibrary __asm__("__imp__LoadLibraryW@4") = loadLibrary;
decltype(&fileFacts) importFstat64 __asm__("__imp___fstat64") = fileFacts;
}
