#pragma once
#include <windows.h>

#include <algorithm>

#include "StandardFailure.h"
#include "UtilsMapObject.h"
#include "UtilsVector.h"

namespace UTILS {

// Pairs of a key and a value, one of them current. In unsorted mode pairs are appended and searched linearly;
// in sorted mode they are kept in the order of the keys or of the values and use binary search. A new map is
// in unsorted mode and reports a missing key or value by its result, not by an exception. A position not
// below the size throws std::out_of_range. Derived classes may override any virtual operation. Thread rule:
// as for MapObject; the current position and the mode are not protected.
template <typename T, typename K>
class IOMap : public Utils<T, K> {
public:
    IOMap() = default;

    // Adds a pair: at the end, or in order in sorted mode. The first form first sets the map's match style
    // and case. Result: the map.
    virtual const IOMap& AddConnection(const K& key, const T& value, int matchStyle, int exact) {
        SetMatchStyle(matchStyle);
        SetCase(exact);
        return AddConnection(key, value);
    }
    virtual const IOMap& AddConnection(const K& key, const T& value) {
        if (sorted_mode_ != 0) {
            map_.AddSorted(key, value, order_);
        } else {
            map_.Append(key, value);
        }
        return *this;
    }

    // Remove the first pair with the key, the current pair, the pair at a position, the first pair with the
    // value; a current position beyond the last pair is moved back to it. Result: 1; if no pair has the key
    // or value, 0, or std::range_error if the throw flag is set.
    virtual int RemoveConnectionK(const K& key) {
        return RemoveFound(FindKey(key, "IOMap<T,K>::RemoveConnectionK"));
    }
    virtual int RemoveConnection() {
        ClampCurrent();
        map_.Remove(current_);
        ClampCurrent();
        return 1;
    }
    virtual int RemoveConnection(DWORD position) {
        SetCurrentConnection(position);
        return RemoveConnection();
    }
    virtual int RemoveConnection(const T& value) {
        return RemoveFound(FindVal(value, "IOMap<T,K>::RemoveConnection"));
    }
    // Result: the empty map.
    virtual const IOMap& RemoveAllConnections() {
        map_.RemoveAll();
        current_ = 0;
        return *this;
    }

    // Makes the pair at the position the current one. Result: the map.
    virtual const IOMap& SetCurrentConnection(DWORD position) {
        CheckPosition(position);
        current_ = position;
        return *this;
    }
    virtual DWORD size() const { return map_.Size(); }

    // The current pair's value, owned by the map.
    virtual const T& RetrieveVal() const { return map_.RetrieveVal(current_); }
    // Look up the first pair with the key (RetrieveValK, RetrieveKey) or value and copy its value or key, as
    // stored, to the output. In sorted mode a map in the other order is sorted first. Result: the pair's
    // position; if no pair has the key or value, not_found (0xEFFFFFFF) with the output unchanged, or
    // std::range_error if the throw flag is set. The current pair stays the same.
    virtual DWORD RetrieveValK(const K& key, T& value) {
        return CopyVal(FindKey(key, "IOMap<T,K>::RetrieveValK"), value);
    }
    virtual DWORD RetrieveVal(const T& wanted, T& value) {
        return CopyVal(FindVal(wanted, "IOMap<T,K>::RetrieveVal"), value);
    }
    virtual DWORD RetrieveKeyV(const T& value, K& key) {
        return CopyKey(FindVal(value, "IOMap<T,K>::RetrieveKeyV"), key);
    }
    // The current pair's key.
    virtual const K& RetrieveKey() const { return map_.RetrieveKey(current_); }
    virtual DWORD RetrieveKey(const K& wanted, K& key) {
        return CopyKey(FindKey(wanted, "IOMap<T,K>::RetrieveKey"), key);
    }

    // 1 counts positions from the last pair, any other value from the first. The current position keeps its
    // number.
    virtual void SetSearchDirection(int direction) { map_.SetSearchDirection(direction); }
    // Match style 0 compares complete values, any other treats values as equal if one contains the other;
    // case 1 is exact, 0 ignores case. Both are also copied into every value.
    virtual void SetMatchStyle(int style) { map_.SetMatchStyle(style); }
    virtual void SetCase(int exact) { map_.SetCase(exact); }
    // order: 1 by key, any other by value; sorted: 0 appends and searches linearly, any other value keeps
    // that order. Existing pairs are sorted when the order is first needed.
    virtual void SetMode(int order, int sorted) {
        order_ = order;
        sorted_mode_ = sorted;
    }

    int GetMatchStyle() const { return map_.GetMatchStyle(); }
    int GetCase() const { return map_.GetCase(); }
    // Not 0: removals and lookups of a missing key or value throw std::range_error.
    void SetThrowIfMissing(int flag) { throw_if_missing_ = flag; }
    int GetThrowIfMissing() const { return throw_if_missing_; }

protected:
    void CheckPosition(DWORD position) const {
        if (position >= map_.Size()) {
            ThrowOutOfRange(FailureDetail(position, map_.Size()), header::map);
        }
    }

    MapObject<K, T> map_;
    int order_ = OrderByKey;
    int sorted_mode_ = 0;
    int throw_if_missing_ = 0;
    DWORD current_ = 0;

private:
    int SearchMethod() const { return sorted_mode_ != 0 ? 1 : 0; }
    DWORD FindKey(const K& key, const char* operation) {
        return Found(map_.SearchKey(key, SearchMethod(), 0), operation);
    }
    DWORD FindVal(const T& value, const char* operation) {
        return Found(map_.SearchVal(value, SearchMethod(), 0), operation);
    }
    DWORD Found(DWORD position, const char* operation) const {
        if (position == not_found && throw_if_missing_ != 0) {
            ThrowRangeError(operation, header::ioMap);
        }
        return position;
    }
    int RemoveFound(DWORD position) {
        if (position == not_found) {
            return 0;
        }
        map_.Remove(position);
        ClampCurrent();
        return 1;
    }
    DWORD CopyVal(DWORD position, T& value) const {
        if (position != not_found) {
            value = map_.RetrieveVal(position);
        }
        return position;
    }
    DWORD CopyKey(DWORD position, K& key) const {
        if (position != not_found) {
            key = map_.RetrieveKey(position);
        }
        return position;
    }
    void ClampCurrent() { current_ = map_.Size() == 0 ? 0 : std::min(current_, map_.Size() - 1); }
};

}  // namespace UTILS
