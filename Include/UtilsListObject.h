#pragma once
#include <windows.h>

#include <memory>
#include <utility>

#include "UtilsBase.h"
#include "UtilsValueChain.h"

namespace UTILS {

// A list node: a value and links to two neighbours. A copy has a copy of the value and no neighbours. Thread
// rule: the node's lock is held while the value is copied or exchanged.
template <typename T>
class Node : public virtual UtilsBase<T> {
public:
    using Content = std::unique_ptr<T>;

    explicit Node(const T& value) : value_(std::make_unique<T>(value)) {}
    Node(const Node& other) : UtilsBase<T>(), value_(other.CopyValue()) {}
    Node& operator=(const Node&) = delete;

    T& Value() { return *value_; }
    const T& Value() const { return *value_; }
    Content CopyValue() const {
        const SectionGuard guard(lock_);
        return std::make_unique<T>(*value_);
    }
    // Exchanges the pointers to the values, so that each value keeps its address.
    void ExchangeContent(Content& content) {
        const SectionGuard guard(lock_);
        std::swap(value_, content);
    }

    Node* Next() const { return next_; }
    Node* Previous() const { return previous_; }

private:
    friend class NodeChain<Node>;

    mutable CCriticalSection lock_;
    Content value_;
    Node* next_ = nullptr;
    Node* previous_ = nullptr;
};

// A doubly linked list that owns its values. New values go to its end. Position 0 is the first node, with
// search direction 1 the last; sorting is always ascending from the first node to the last. A position not
// below the size throws std::out_of_range (detail position ":" size) and changes nothing. Thread rule: each
// linking and each copy of a value is atomic; a whole sort, search or copy of the list is not.
template <typename T>
class ListObject : public virtual UtilsBase<T>, public ValueChain<Node<T>, T> {
    using Chain = ValueChain<Node<T>, T>;
    using ValueField = typename Chain::ValueField;

public:
    ListObject() : Chain(header::list) {}

    using Chain::Size;
    bool IsSorted() const { return this->chain_.Order() == KnownOrder::ByValue; }
    // To be called before a value is changed in place: the list no longer counts as sorted.
    void ClearSorted() { this->ForgetOrder(KnownOrder::ByValue); }

    // Match style and case are copied into every value that has such settings, present or added later.
    void SetMatchStyle(int style) { this->SetStyle(this->GetCase(), style); }
    void SetCase(int exact) { this->SetStyle(exact, this->GetMatchStyle()); }

    // Adds a copy of the value at the end.
    void Append(const T& value) { this->chain_.Append(NewNode(value)); }
    // Adds copies of all values of a list, which may be this one.
    void Append(const ListObject& other) {
        this->chain_.Append(other.chain_);
        this->ApplyStyle();
    }
    // Adds a copy before the value at the position; after the last value if the position is the size.
    void Insert(const T& value, DWORD position) {
        const DWORD size = Size();
        if (position > size) {
            this->CheckPosition(position);
        }
        this->chain_.Insert(NewNode(value), this->GetSearchDirection() == 1 ? size - position : position);
    }
    // Inserts a copy in ascending order, after its equals; a list not known to be sorted is sorted first
    // (method 0).
    void AddSorted(const T& value) {
        Sort(SortAutomatic);
        this->chain_.Insert(NewNode(value),
                            InsertionIndex(this->chain_, this->Comparison(), ValueField{}, value));
        this->chain_.SetOrder(KnownOrder::ByValue);
    }

    T& Retrieve(DWORD position) { return this->NodeAt(position).Value(); }
    const T& Retrieve(DWORD position) const { return this->NodeAt(position).Value(); }
    // A copy of a value, made under its node's lock.
    T RetrieveCopy(DWORD position) const { return *this->NodeAt(position).CopyValue(); }

    void Remove(DWORD position) { this->Unlink(position); }
    void RemoveAll() { this->chain_.Clear(); }

    // Sorts ascending under case and match style. method: 0 chooses by the size, 1 exchange sort, 2 Shell
    // sort, 3 and 4 quicksort; any other does nothing. An empty or sorted list is left alone.
    void Sort(int method) {
        if (IsSortMethod(method) && Size() > 0 && !IsSorted()) {
            SortChain(this->chain_, this->Comparison(), ValueField{}, method);
            this->chain_.SetOrder(KnownOrder::ByValue);
        }
    }

    // The first position at or after `start` whose value equals the wanted one (match style 0) or contains
    // it; not_found (0xEFFFFFFF) when there is none. method 1 sorts the list first and uses binary search,
    // any other searches linearly.
    DWORD SearchList(const T& wanted, int method, DWORD start) {
        if (method == 1) {
            Sort(SortAutomatic);
        }
        return SearchChain(this->chain_, this->GetSearchDirection(), method == 1, this->Comparison(),
                           ValueField{}, wanted, start);
    }

private:
    std::unique_ptr<Node<T>> NewNode(const T& value) const {
        return this->Styled(std::make_unique<Node<T>>(value));
    }
};

}  // namespace UTILS
