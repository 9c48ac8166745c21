#include "winlayer/display/display.h"

namespace winlayer {

std::unique_ptr<Peer> openDisplay(DisplayKind /*kind*/, std::string& reason) {
    reason = "this program was built without Qt, which draws windows";
    return nullptr;
}

}  // namespace winlayer
