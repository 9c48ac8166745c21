#include <dlfcn.h>

#include "winlayer/display/display.h"

namespace winlayer {

// Qt is large: a program that shows nothing would spend most of its start on loading it. So it comes with a
// library of its own, at the first wish for a window, and stays.
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
