#pragma once
#include <windows.h>

#include <concepts>
#include <utility>

#include "IOMap.h"
#include "UtilsString.h"

namespace UTILS {

// Pairs of a number and a string, in the order added or, in sorted mode, in the order of keys or values; keys
// may repeat. One pair is current. Positions count from the first pair, with search direction 1 from the
// last; a position not below the size throws std::out_of_range (detail position ":" size) and changes
// nothing. Every value has the map's case and match style. Operations that return a reference return the map.
// Thread rule: as for IOMap.
//
//   UTILS::UtilsStringMap files;
//   files.AddData(7, "IBMBIO.COM");
//   for (DWORD i = 0; i < files.size(); ++i) use(files.GetKey(i), files.GetValue(i));
class UtilsStringMap : public IOMap<UtilsString, int> {
public:
    UtilsStringMap() = default;
    UtilsStringMap(int key, const UtilsString& value) { AddData(key, value); }

    // Adds a pair: at the end, or in order in sorted mode. The current pair's position stays the same.
    UtilsStringMap& AddData(int key, const UtilsString& value);
    // The same, after switching the map to sorted mode in the order of the keys.
    UtilsStringMap& AddDataSorted(int key, const UtilsString& value);

    // Make a pair current.
    UtilsStringMap& SetCurrentData(DWORD index);
    UtilsStringMap& SetCurrentString(DWORD index) { return SetCurrentData(index); }
    template <std::integral Index>
    UtilsStringMap& operator[](Index index) {
        return SetCurrentData(std::in_range<DWORD>(index) ? static_cast<DWORD>(index) : not_found);
    }

    // The key of the current pair or of the one at `index`.
    int GetKey() const { return GetKey(current_); }
    int GetKey(DWORD index) const { return map_.RetrieveKey(index); }
    int RetrieveDataKey() const { return GetKey(); }
    int RetrieveDataKey(DWORD index) const { return GetKey(index); }
    // Its value, owned by the map, or a copy of it.
    const char* GetValue() const { return GetValue(current_); }
    const char* GetValue(DWORD index) const { return map_.RetrieveVal(index).c_str(); }
    const char* RetrieveDataValue() const { return GetValue(); }
    const char* RetrieveDataValue(DWORD index) const { return GetValue(index); }
    operator const char*() const { return GetValue(); }
    UtilsString GetValueAsUString() const { return GetValueAsUString(current_); }
    UtilsString GetValueAsUString(DWORD index) const { return map_.RetrieveValCopy(index); }
    // The length of its value in characters.
    DWORD lengthVal() const { return lengthVal(current_); }
    DWORD lengthVal(DWORD index) const { return map_.RetrieveVal(index).length(); }
    DWORD strlenVal() const { return lengthVal(); }
    DWORD strlenVal(DWORD index) const { return lengthVal(index); }

    // Remove the current pair, the one at `index`, or all. A current position beyond the last pair moves to
    // it.
    UtilsStringMap& RemoveData();
    UtilsStringMap& RemoveData(DWORD index);
    UtilsStringMap& RemoveAllData();
    // Removes the first pair with the key. Result: 1; if there is none, 0, or std::range_error if the throw
    // flag is set (SetThrowIfMissing).
    int RemoveDataUsingKey(int key) { return RemoveConnectionK(key); }

    // The first position at or after `start` whose key is the given one, or whose value equals the text
    // (match style 0) or contains it, under the map's case; not_found (0xEFFFFFFF) when there is none. method
    // 1 sorts by key or value first and uses binary search, any other searches linearly.
    DWORD SearchMapForKey(int key, int method = 0, DWORD start = 0) {
        return map_.SearchKey(key, method, start);
    }
    DWORD SearchMapForVal(const UtilsString& text, int method = 0, DWORD start = 0) {
        return map_.SearchVal(text, method, start);
    }
    // The offset of an occurrence (numbered from 0) of a text in the value of the current pair or of the one
    // at `index`, in characters; not_found when there is none.
    DWORD SearchMapItemVal(const TextArgument& text, DWORD occurrence = 0) const {
        return SearchMapItemVal(current_, text, occurrence);
    }
    DWORD SearchMapItemVal(DWORD index, const TextArgument& text, DWORD occurrence = 0) const {
        return map_.RetrieveVal(index).Search(text, occurrence);
    }

    // Replace every occurrence of a text in the current value, or in all, under the given case: 1 if any was
    // replaced, else 0.
    int ReplaceAllInCurrentDataVal(const TextArgument& text, const TextArgument& replacement, int exact = 1);
    int ReplaceAllInMapVal(const TextArgument& text, const TextArgument& replacement, int exact = 1);

    // Sorts ascending by key (order 1) or by value (any other) under case and match style; for the method see
    // UtilsStringList::Sort.
    UtilsStringMap& Sort(int order, int method = 0);

private:
    int ReplaceAllInVal(DWORD index, const TextArgument& text, const TextArgument& replacement, int exact);
};

}  // namespace UTILS
