#include "UtilsMap.h"

#include "UtilsStringItem.h"

namespace UTILS {

UtilsStringMap& UtilsStringMap::AddData(int key, const UtilsString& value) {
    AddConnection(key, value);
    return *this;
}

UtilsStringMap& UtilsStringMap::AddDataSorted(int key, const UtilsString& value) {
    SetMode(OrderByKey, 1);
    return AddData(key, value);
}

UtilsStringMap& UtilsStringMap::SetCurrentData(DWORD index) {
    SetCurrentConnection(index);
    return *this;
}

UtilsStringMap& UtilsStringMap::RemoveData() {
    RemoveConnection();
    return *this;
}

UtilsStringMap& UtilsStringMap::RemoveData(DWORD index) {
    RemoveConnection(index);
    return *this;
}

UtilsStringMap& UtilsStringMap::RemoveAllData() {
    RemoveAllConnections();
    return *this;
}

int UtilsStringMap::ReplaceAllInVal(DWORD index, const TextArgument& text, const TextArgument& replacement,
                                    int exact) {
    const int replaced = ReplaceAllInItem(map_.RetrieveVal(index), text, replacement, exact);
    if (replaced != 0) {
        map_.ClearSortedByValue();
    }
    return replaced;
}

int UtilsStringMap::ReplaceAllInCurrentDataVal(const TextArgument& text, const TextArgument& replacement,
                                               int exact) {
    return ReplaceAllInVal(current_, text, replacement, exact);
}

int UtilsStringMap::ReplaceAllInMapVal(const TextArgument& text, const TextArgument& replacement, int exact) {
    int replaced = 0;
    for (DWORD index = 0; index < size(); ++index) {
        replaced |= ReplaceAllInVal(index, text, replacement, exact);
    }
    return replaced;
}

UtilsStringMap& UtilsStringMap::Sort(int order, int method) {
    map_.Sort(order, method);
    return *this;
}

}  // namespace UTILS
