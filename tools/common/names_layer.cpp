// Names on the Windows layer.
#include "tools/common/names.h"
#include "winlayer/text/case_folding.h"

namespace tools {

std::string upperCase(std::string_view text) {
    return winlayer::foldCase(text);
}

}  // namespace tools
