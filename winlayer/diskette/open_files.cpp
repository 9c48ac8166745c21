#include "winlayer/diskette/open_files.h"

#include <algorithm>

namespace winlayer {
namespace {

bool shares(DWORD sharing, DWORD access) {
    return ((access & GENERIC_READ) == 0 || (sharing & FILE_SHARE_READ) != 0) &&
           ((access & GENERIC_WRITE) == 0 || (sharing & FILE_SHARE_WRITE) != 0);
}

// An open for neither reading nor writing conflicts with no other.
bool agree(const OpenFiles::Open& a, const OpenFiles::Open& b) {
    return a.access == 0 || b.access == 0 || (shares(a.sharing, b.access) && shares(b.sharing, a.access));
}

}  // namespace

DWORD OpenFiles::check(const Open& wanted) const {
    const bool admitted = std::all_of(open_.begin(), open_.end(), [&](const Open& open) {
        return !(open.place == wanted.place) || agree(open, wanted);
    });
    return admitted ? NO_ERROR : ERROR_SHARING_VIOLATION;
}

bool OpenFiles::isOpen(const EntryPlace& place) const {
    return std::any_of(open_.begin(), open_.end(), [&](const Open& open) { return open.place == place; });
}

}  // namespace winlayer
