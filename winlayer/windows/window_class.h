#pragma once
#include <map>
#include <memory>
#include <string>

#include "winlayer/include/windows.h"

namespace winlayer {

// A window class. A window keeps its class as it was when the window was created.
struct WindowClass {
    std::string name;  // as registered; case-insensitive
    UINT style = 0;
    WNDPROC procedure = nullptr;
    int windowExtra = 0;  // bytes in each window for the program's data
    HINSTANCE instance = nullptr;
    HICON icon = nullptr;
    HCURSOR cursor = nullptr;
    HBRUSH background = nullptr;
    ATOM atom = 0;
    bool ofSystem = false;  // there from the start, or registered by a system module
};

// The window classes of the process: those of Windows and those that the program registers.
class WindowClasses {
public:
    // Null if the name is taken.
    std::shared_ptr<const WindowClass> add(WindowClass windowClass);
    // `name` may be an atom; null if there is no such class.
    std::shared_ptr<const WindowClass> find(LPCSTR name) const;
    bool remove(LPCSTR name);

private:
    std::map<std::string, std::shared_ptr<const WindowClass>> classes_;
    ATOM nextAtom_ = 0xC000;
};

// The key of a window class or property: the name without case, or an atom as "#number".
std::string atomKey(LPCSTR name);

}  // namespace winlayer
