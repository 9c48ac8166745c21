// The layer plays the Windows that its user chooses.
#include "newwindows/second_run.h"

namespace newwindows {

std::optional<int> runAgainAsXp() {
    return {};
}

}  // namespace newwindows
