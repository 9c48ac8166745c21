#pragma once
#include <memory>
#include <string>

#include "winlayer/windows/peer.h"

namespace winlayer {

// Where windows are shown: on the user's screen, or in memory alone, for pictures of them.
enum class DisplayKind { Screen, Memory };

// A peer that shows windows; one at a time in a process, on the thread of the windows. Null when there is
// none: the library that draws is not there, or there is no screen; `reason` then says so in one clause.
std::unique_ptr<Peer> openDisplay(DisplayKind kind, std::string& reason);

// The one function of the library that draws: the same, the caller owns the peer.
using OpenQtDisplay = Peer*(DisplayKind kind, std::string& reason);

}  // namespace winlayer
