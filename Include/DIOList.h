#pragma once
#include <windows.h>

#include "UtilsList.h"
#include "diskio.h"

namespace UTILS {

// A list that owns files and devices: a DiskIO is copied when it is added (its handle duplicated) and closed
// when it is removed or the list is destroyed. Copying the list copies every element. Positions as in IOList.
class DIOList : public IOList<DiskIO> {
public:
    using IOList<DiskIO>::operator[];

    // The current element, or the one at the position, which becomes current. The list owns it until it is
    // removed. Throws std::out_of_range when there is none.
    DiskIO& GetIO() { return RetrieveData(); }
    const DiskIO& GetIO() const { return RetrieveData(); }
    DiskIO& GetIO(DWORD position) { return RetrieveData(position); }
};

}  // namespace UTILS
