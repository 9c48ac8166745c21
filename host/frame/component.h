#pragma once
#include "host/frame/loaded_module.h"

namespace host {

// A component's library, and the component that it creates for a frame.
class Component {
public:
    // `library` is its path (8-bit). Throws Failure (notInstalled) when it cannot be loaded.
    explicit Component(const std::string& library);
    ~Component() { destroy(); }

    // Has the component show its first page in the frame. Throws Failure when it creates no user interface.
    void create(HWND frame);
    // Destroys the component's pages; no effect when there is none.
    void destroy();
    // Registers the component in the property store, or removes its entry. Throws Failure.
    void registerSelf();
    void unregisterSelf();

private:
    void callRegistration(const char* name);

    LoadedModule module_;
    DWORD_PTR instance_ = 0;
};

}  // namespace host
