#pragma once
#include <memory>
#include <string>

#include "winlayer/peer.h"

namespace winlayer {

// Where windows are shown: on the user's screen, or in memory alone, for pictures of them.
enum class DisplayKind { Screen, Memory };

// A peer that shows windows; one at a time in a process, on the thread of the windows. Null when there is
// none: the program was built without one, or there is no screen; `reason` then says so in one clause.
std::unique_ptr<Peer> openDisplay(DisplayKind kind, std::string& reason);

}  // namespace winlayer
