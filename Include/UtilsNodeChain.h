#pragma once
#include <windows.h>

#include <memory>
#include <utility>
#include <vector>

#include "CSyncObject.h"

namespace UTILS {

// The order that a chain is known to be in.
enum class KnownOrder { None, ByValue, ByKey };

// The doubly linked nodes of one list or map, indexed from 0. Owns its nodes. Besides the two ends it
// remembers the middle node and the last one found, so that finding a node takes at most a quarter of the
// count in steps, and a neighbour of the last one a single step. N is copied by its content, has Next(), and
// leaves its links `next_` and `previous_` to this class. Thread rule: linking, unlinking and finding a node
// hold the chain's lock; the caller protects a node that was found.
template <typename N>
class NodeChain {
public:
    NodeChain() = default;
    NodeChain(const NodeChain& other) {
        Append(other);
        SetOrder(other.Order());
    }
    NodeChain& operator=(const NodeChain& other) {
        if (this != &other) {
            NodeChain copy(other);
            Exchange(copy);
        }
        return *this;
    }
    // Leaves the other chain empty; no other thread may use it.
    NodeChain(NodeChain&& other) noexcept { Exchange(other); }
    NodeChain& operator=(NodeChain&& other) noexcept {
        NodeChain taken(std::move(other));
        Exchange(taken);
        return *this;
    }
    ~NodeChain() { Clear(); }

    DWORD Count() const {
        const SectionGuard guard(lock_);
        return count_;
    }
    N* First() const {
        const SectionGuard guard(lock_);
        return first_;
    }

    // The order set last; linking or unlinking a node resets it to None.
    KnownOrder Order() const {
        const SectionGuard guard(lock_);
        return order_;
    }
    void SetOrder(KnownOrder order) {
        const SectionGuard guard(lock_);
        order_ = order;
    }

    // The node at an index, which must be below the count.
    N& At(DWORD index) const {
        const SectionGuard guard(lock_);
        return Walk(index);
    }

    // Inserts a node before the one at the index; at the end if the index is the count.
    void Insert(std::unique_ptr<N> node, DWORD index) {
        const SectionGuard guard(lock_);
        N* const next = index < count_ ? &Walk(index) : nullptr;
        Link(node.release(), next, index);
    }

    void Append(std::unique_ptr<N> node) {
        const SectionGuard guard(lock_);
        Link(node.release(), nullptr, count_);
    }

    // Appends copies of all nodes of `other`, which may be this chain. If a copy fails, nothing is appended.
    void Append(const NodeChain& other) {
        std::vector<std::unique_ptr<N>> copies;
        copies.reserve(other.Count());
        for (const N* node = other.First(); node != nullptr; node = node->Next()) {
            copies.push_back(std::make_unique<N>(*node));
        }
        for (auto& copy : copies) {
            Append(std::move(copy));
        }
    }

    // Removes the node at an index, which must be below the count; the caller then owns it.
    std::unique_ptr<N> Take(DWORD index) {
        const SectionGuard guard(lock_);
        N& node = Walk(index);
        Unlink(node, index);
        return std::unique_ptr<N>(&node);
    }

    // Unlinks the nodes under the lock and destroys them after releasing it.
    void Clear() {
        N* node = Release();
        while (node != nullptr) {
            const std::unique_ptr<N> removed(std::exchange(node, node->next_));
        }
    }

private:
    struct Place {
        N* node = nullptr;
        DWORD index = 0;

        DWORD StepsTo(DWORD other) const { return index < other ? other - index : index - other; }
    };

    // Starts from the nearest node whose index is known.
    N& Walk(DWORD index) const {
        Place place{first_, 0};
        for (const Place& start : {Place{middle_, count_ / 2}, Place{last_, count_ - 1}, found_}) {
            if (start.node != nullptr && start.StepsTo(index) < place.StepsTo(index)) {
                place = start;
            }
        }
        for (; place.index < index; ++place.index) {
            place.node = place.node->next_;
        }
        for (; place.index > index; --place.index) {
            place.node = place.node->previous_;
        }
        found_ = place;
        return *place.node;
    }

    void Link(N* node, N* next, DWORD index) {
        N* const previous = next == nullptr ? last_ : next->previous_;
        node->next_ = next;
        node->previous_ = previous;
        (previous == nullptr ? first_ : previous->next_) = node;
        (next == nullptr ? last_ : next->previous_) = node;
        if (next != nullptr) {
            found_ = {node, index};
        }
        order_ = KnownOrder::None;
        const DWORD middle = count_ / 2;
        if (count_++ == 0) {
            middle_ = node;
        } else {
            SettleMiddle(index <= middle ? middle + 1 : middle);
        }
    }

    void Unlink(N& node, DWORD index) {
        DWORD middle = count_ / 2;
        if (&node == middle_) {
            middle_ = node.next_ == nullptr ? node.previous_ : node.next_;
        }
        if (index < middle || (index == middle && node.next_ == nullptr)) {
            --middle;
        }
        (node.previous_ == nullptr ? first_ : node.previous_->next_) = node.next_;
        (node.next_ == nullptr ? last_ : node.next_->previous_) = node.previous_;
        found_ = {node.next_, index};
        order_ = KnownOrder::None;
        if (--count_ > 0) {
            SettleMiddle(middle);
        }
    }

    // middle_ is now at `index`; moves it to the actual middle.
    void SettleMiddle(DWORD index) {
        for (; index < count_ / 2; ++index) {
            middle_ = middle_->next_;
        }
        for (; index > count_ / 2; --index) {
            middle_ = middle_->previous_;
        }
    }

    // Leaves the chain empty; the caller owns the returned node and those linked to it.
    N* Release() {
        const SectionGuard guard(lock_);
        last_ = middle_ = nullptr;
        found_ = {};
        count_ = 0;
        order_ = KnownOrder::None;
        return std::exchange(first_, nullptr);
    }

    void Exchange(NodeChain& copy) noexcept {  // with a chain that no other thread uses
        const SectionGuard guard(lock_);
        std::swap(count_, copy.count_);
        std::swap(first_, copy.first_);
        std::swap(last_, copy.last_);
        std::swap(middle_, copy.middle_);
        std::swap(found_, copy.found_);
        std::swap(order_, copy.order_);
    }

    mutable CCriticalSection lock_;
    DWORD count_ = 0;
    N* first_ = nullptr;
    N* last_ = nullptr;
    N* middle_ = nullptr;  // at index count / 2
    mutable Place found_;
    KnownOrder order_ = KnownOrder::None;
};

}  // namespace UTILS
