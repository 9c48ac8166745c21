#include "winlayer/include/shellapi.h"

#include "winlayer/base/gate.h"
#include "winlayer/base/last_error.h"
#include "winlayer/shell/shell.h"

namespace winlayer {
namespace {

constexpr INT_PTR firstSuccess = 33;

std::string textOf(LPCSTR text) {
    return text != nullptr ? text : "";
}

// The last error for a result.
DWORD errorOf(INT_PTR result) {
    return result >= firstSuccess     ? NO_ERROR
           : result == SE_ERR_NOASSOC ? ERROR_NO_ASSOCIATION
                                      : static_cast<DWORD>(result);
}

}  // namespace
}  // namespace winlayer

using namespace winlayer;

HINSTANCE WINAPI ShellExecuteA(HWND /*window*/, LPCSTR operation, LPCSTR file, LPCSTR parameters,
                               LPCSTR directory, int show) try {
    if (denied(__func__)) {
        const auto error = static_cast<INT_PTR>(GetLastError());
        return reinterpret_cast<HINSTANCE>(error < firstSuccess ? error : 0);
    }
    const ShellRequest request = {textOf(operation), textOf(file), textOf(parameters), textOf(directory),
                                  show};
    const INT_PTR result = winlayer::Shell::current().execute(request);
    succeeded(errorOf(result));
    return reinterpret_cast<HINSTANCE>(result);
} catch (const std::bad_alloc&) {
    return outOfMemory(nullptr);
}
