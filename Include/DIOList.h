#pragma once
#include <windows.h>

#include "UtilsList.h"
#include "diskio.h"

namespace UTILS {

// A list of files and devices. It owns them: a DiskIO is copied on the way in (its handle duplicated) and
// closed when it is removed or the list goes. Copies of the list copy every element. Positions are those of
// IOList.
class DIOList : public IOList<DiskIO> {
public:
    using IOList<DiskIO>::operator[];

    // The current element, or the one at the position, which becomes current. It stays the list's own until
    // it is removed. Throws std::out_of_range when there is none.
    DiskIO& GetIO() { return RetrieveData(); }
    const DiskIO& GetIO() const { return RetrieveData(); }
    DiskIO& GetIO(DWORD position) { return RetrieveData(position); }
};

}  // namespace UTILS
