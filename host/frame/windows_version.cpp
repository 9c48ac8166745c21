#include "host/frame/windows_version.h"

#include "host/frame/frame_resources.h"
#include "host/frame/text.h"
#include "newwindows/known_version.h"

namespace host {

std::string warningOfUnknownWindows() {
    return newwindows::runsOnKnownWindows() ? std::string() : resourceString(STRING_UNKNOWN_WINDOWS);
}

}  // namespace host
