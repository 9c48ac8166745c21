#include <cstdarg>
#include <memory>

#include "UtilsString.h"

namespace UTILS {

namespace {
// The system allocates these texts and LocalFree frees them.
struct FreeLocal {
    void operator()(char* text) const { LocalFree(text); }
};
using LocalText = std::unique_ptr<char, FreeLocal>;

constexpr DWORD defaultLanguage = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);

LocalText Formatted(DWORD flags, const void* source, DWORD code, va_list* arguments, DWORD& length) {
    char* text = nullptr;
    length = ::FormatMessageA(flags | FORMAT_MESSAGE_ALLOCATE_BUFFER, source, code, defaultLanguage,
                              reinterpret_cast<char*>(&text), 0, arguments);
    return LocalText(text);
}

HMODULE ModuleOrOwn(HMODULE module) {
    return module != nullptr ? module : GetModuleHandleA(nullptr);
}
}  // namespace

int UtilsString::LoadString(HMODULE module, UINT id, int maximum) {
    if (maximum < 0 || maximum == std::numeric_limits<int>::max()) {
        ThrowBadAlloc(condition::incorrectParameter, maximum, header::string);
    }
    UtilsAllocator<char> text(static_cast<DWORD>(maximum) + 1);
    const int count = ::LoadStringA(ModuleOrOwn(module), id, text.GetBuffer(), maximum + 1);
    if (count > 0) {
        Current().AppendExactly(text.GetBuffer(), static_cast<DWORD>(count));
    }
    return count;
}

DWORD UtilsString::SetErrorMsg(DWORD code, int withNumber) {
    if (withNumber != 0) {
        Append("Error Number:  ");
        Append(code);
        Append(" - ");
    }
    DWORD length = 0;
    const LocalText text =
        Formatted(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, nullptr, length);
    Current().AppendExactly(text.get(), length);
    return length;
}

DWORD UtilsString::FormatText(Action action, const char* format, ...) {
    if (format == nullptr) {
        return 0;
    }
    va_list arguments;
    va_start(arguments, format);
    DWORD length = 0;
    const LocalText text = Formatted(FORMAT_MESSAGE_FROM_STRING, format, 0, &arguments, length);
    va_end(arguments);
    if (length != 0) {
        Current().Splice(0, action == Action::replace ? this->length() : 0, nullptr, 0);
        Current().AppendExactly(text.get(), length);
    }
    return length;
}

std::string UtilsString::ResourceText(HMODULE module, UINT id) {
    for (int size = 256;; size *= 2) {
        std::string text(static_cast<std::size_t>(size), '\0');
        const int count = ::LoadStringA(ModuleOrOwn(module), id, text.data(), size);
        // A text that fills the buffer may be truncated; string resources have at most 65,535 characters.
        if (count < size - 2 || size > 0x20000) {
            text.resize(static_cast<std::size_t>(count));
            return text;
        }
    }
}

}  // namespace UTILS
