#pragma once
#include <map>
#include <memory>
#include <string>

#include "winlayer/include/windows.h"

namespace winlayer {

// A window class. A window keeps its class as it was when the window was made.
struct WindowClass {
    std::string name;  // as registered; classes are told apart without case
    UINT style = 0;
    WNDPROC procedure = nullptr;
    int windowExtra = 0;  // bytes that each window carries for its owner
    HINSTANCE instance = nullptr;
    HICON icon = nullptr;
    HCURSOR cursor = nullptr;
    HBRUSH background = nullptr;
    ATOM atom = 0;
    bool ofSystem = false;  // there from the start, or registered by a module of Windows
};

// The window classes of the process: those of Windows itself and what the program registers.
class WindowClasses {
public:
    // Null when there is one of that name already.
    std::shared_ptr<const WindowClass> add(WindowClass windowClass);
    // `name` may be an atom in place of a name; null when there is none.
    std::shared_ptr<const WindowClass> find(LPCSTR name) const;
    bool remove(LPCSTR name);

private:
    std::map<std::string, std::shared_ptr<const WindowClass>> classes_;
    ATOM nextAtom_ = 0xC000;
};

// A name as window classes and properties are told apart by: without case, an atom as "#number".
std::string atomKey(LPCSTR name);

}  // namespace winlayer
