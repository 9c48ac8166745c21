#pragma once
#include <memory>
#include <string>

#include "winlayer/windows/peer.h"

namespace winlayer {

// Where windows are shown: on the user's screen, or only in memory, for screenshots.
enum class DisplayKind { Screen, Memory };

// A display backend that shows windows; one at a time per process, used on the windows' thread. Null if the
// Qt library or a screen is missing; `reason` then says so in one clause.
std::unique_ptr<Peer> openDisplay(DisplayKind kind, std::string& reason);

// The Qt library's only function: the same, but the caller owns the backend.
using OpenQtDisplay = Peer*(DisplayKind kind, std::string& reason);

}  // namespace winlayer
