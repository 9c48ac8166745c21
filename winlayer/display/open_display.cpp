#include <dlfcn.h>

#include "winlayer/display/display.h"

namespace winlayer {

// Qt is large: loading it would take most of the start of a program that shows nothing. So it is in a library
// of its own, which is loaded with the first display and stays loaded.
std::unique_ptr<Peer> openDisplay(DisplayKind kind, std::string& reason) {
    void* const library = dlopen("libwinlayer_qt.so", RTLD_NOW | RTLD_LOCAL);
    void* const open = library != nullptr ? dlsym(library, "winlayerOpenQtDisplay") : nullptr;
    if (open == nullptr) {
        reason = "what draws windows with Qt is missing (" + std::string(dlerror()) + ")";
        return nullptr;
    }
    return std::unique_ptr<Peer>(reinterpret_cast<OpenQtDisplay*>(open)(kind, reason));
}

}  // namespace winlayer
