// The layer's user chooses the Windows version.
#include "newwindows/second_run.h"

namespace newwindows {

std::optional<int> runAgainAsXp() {
    return {};
}

}  // namespace newwindows
