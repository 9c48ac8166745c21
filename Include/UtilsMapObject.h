#pragma once
#include <windows.h>

#include <memory>
#include <utility>

#include "UtilsBase.h"
#include "UtilsValueChain.h"

namespace UTILS {

enum MapOrder : int { OrderByValue = 0, OrderByKey = 1 };

// A map node: a key, a value and links to two neighbours. A copy has copies of key and value and no
// neighbours. Thread rule: the node's lock is held while the value is copied or exchanged.
template <typename K, typename T>
class MapNode : public virtual UtilsBase<T> {
public:
    struct Content {
        K key{};
        std::unique_ptr<T> value;
    };

    MapNode(const K& key, const T& value) : content_{key, std::make_unique<T>(value)} {}
    MapNode(const MapNode& other) : UtilsBase<T>(), content_(other.CopyContent()) {}
    MapNode& operator=(const MapNode&) = delete;

    const K& Key() const { return content_.key; }
    T& Value() { return *content_.value; }
    const T& Value() const { return *content_.value; }
    Content CopyContent() const {
        const SectionGuard guard(lock_);
        return {content_.key, std::make_unique<T>(*content_.value)};
    }
    // Exchanges the keys and the pointers to the values, so that each value keeps its address.
    void ExchangeContent(Content& content) {
        const SectionGuard guard(lock_);
        std::swap(content_, content);
    }

    MapNode* Next() const { return next_; }
    MapNode* Previous() const { return previous_; }

private:
    friend class NodeChain<MapNode>;

    mutable CCriticalSection lock_;
    Content content_;
    MapNode* next_ = nullptr;
    MapNode* previous_ = nullptr;
};

// A doubly linked list that owns pairs of a key and a value; a key may occur in several pairs. New pairs go
// to its end. Position 0 is the first node, with search direction 1 the last; sorting, by key or by value, is
// always ascending from the first node to the last. A position not below the size throws std::out_of_range
// (detail position ":" size) and changes nothing. Thread rule: each linking and each copy of a value is
// atomic; a whole sort, search or copy of the map is not.
template <typename K, typename T>
class MapObject : public virtual UtilsBase<T>, public ValueChain<MapNode<K, T>, T> {
    using Chain = ValueChain<MapNode<K, T>, T>;
    using ValueField = typename Chain::ValueField;

public:
    MapObject() : Chain(header::map) {}

    using Chain::Size;
    // order: 1 by key, any other by value.
    bool IsSorted(int order) const { return this->chain_.Order() == Known(order); }
    // To be called before a value is changed in place: the map no longer counts as sorted by value.
    void ClearSortedByValue() { this->ForgetOrder(KnownOrder::ByValue); }

    // Match style and case are copied into every value that has such settings, present or added later.
    void SetMatchStyle(int style) { this->SetStyle(this->GetCase(), style); }
    void SetCase(int exact) { this->SetStyle(exact, this->GetMatchStyle()); }

    void Append(const K& key, const T& value) { this->chain_.Append(NewNode(key, value)); }
    // Inserts a pair in ascending order of keys (order 1) or values, after its equals; a map not known to be
    // sorted in that order is sorted first (method 0).
    void AddSorted(const K& key, const T& value, int order) {
        Sort(order, SortAutomatic);
        const DWORD index = order == OrderByKey
                                ? InsertionIndex(this->chain_, ScalarOrder<K>(), KeyField{}, key)
                                : InsertionIndex(this->chain_, this->Comparison(), ValueField{}, value);
        this->chain_.Insert(NewNode(key, value), index);
        this->chain_.SetOrder(Known(order));
    }

    const K& RetrieveKey(DWORD position) const { return this->NodeAt(position).Key(); }
    T& RetrieveVal(DWORD position) { return this->NodeAt(position).Value(); }
    const T& RetrieveVal(DWORD position) const { return this->NodeAt(position).Value(); }
    // A copy of a value, made under its node's lock.
    T RetrieveValCopy(DWORD position) const { return *this->NodeAt(position).CopyContent().value; }

    void Remove(DWORD position) { this->Unlink(position); }
    void RemoveAll() { this->chain_.Clear(); }

    // Sorts ascending by key (order 1) or by value under case and match style. method: 0 chooses by the size,
    // 1 exchange sort, 2 Shell sort, 3 and 4 quicksort; any other does nothing. A map that is empty or sorted
    // in that order is left alone.
    void Sort(int order, int method) {
        if (!IsSortMethod(method) || Size() == 0 || IsSorted(order)) {
            return;
        }
        if (order == OrderByKey) {
            SortChain(this->chain_, ScalarOrder<K>(), KeyField{}, method);
        } else {
            SortChain(this->chain_, this->Comparison(), ValueField{}, method);
        }
        this->chain_.SetOrder(Known(order));
    }

    // The first position at or after `start` whose key is the wanted one, or whose value equals the wanted
    // one (match style 0) or contains it; not_found (0xEFFFFFFF) when there is none. method 1 sorts by key or
    // value first and uses binary search, any other searches linearly.
    DWORD SearchKey(const K& wanted, int method, DWORD start) {
        return Search(OrderByKey, ScalarOrder<K>(), KeyField{}, wanted, method, start);
    }
    DWORD SearchVal(const T& wanted, int method, DWORD start) {
        return Search(OrderByValue, this->Comparison(), ValueField{}, wanted, method, start);
    }

private:
    struct KeyField {
        const K& operator()(const MapNode<K, T>& node) const { return node.Key(); }
    };

    template <typename ItemOrder, typename Field, typename Item>
    DWORD Search(int order, const ItemOrder& itemOrder, const Field& field, const Item& wanted, int method,
                 DWORD start) {
        if (method == 1) {
            Sort(order, SortAutomatic);
        }
        return SearchChain(this->chain_, this->GetSearchDirection(), method == 1, itemOrder, field, wanted,
                           start);
    }
    static KnownOrder Known(int order) {
        return order == OrderByKey ? KnownOrder::ByKey : KnownOrder::ByValue;
    }
    std::unique_ptr<MapNode<K, T>> NewNode(const K& key, const T& value) const {
        return this->Styled(std::make_unique<MapNode<K, T>>(key, value));
    }
};

}  // namespace UTILS
