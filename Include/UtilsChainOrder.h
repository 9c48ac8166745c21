#pragma once
#include <windows.h>

#include <utility>
#include <vector>

#include "UtilsNodeChain.h"
#include "UtilsSearch.h"
#include "UtilsSort.h"

// Sorting and searching of node chains. An order compares two values (UtilsOrder.h); a field extracts the
// value of a node. A view is what an order caches of a value, to make repeated comparisons cheap.

namespace UTILS {

// A chain of nodes as a sequence to sort. Sorting works on views; at the end each value changes nodes once.
template <typename N, typename Order, typename Field>
class ChainSequence {
public:
    ChainSequence(NodeChain<N>& chain, const Order& order, const Field& field)
        : chain_(chain), order_(order) {
        entries_.reserve(chain.Count());
        contents_.reserve(chain.Count());
        for (N* node = chain.First(); node != nullptr; node = node->Next()) {
            entries_.push_back({order.View(field(*node)), node});
        }
        order_.SkipCommon(entries_);
    }

    DWORD Count() const { return static_cast<DWORD>(entries_.size()); }
    int Compare(DWORD a, DWORD b) const { return order_.Compare(entries_[a].view, entries_[b].view); }
    void Exchange(DWORD a, DWORD b) { std::swap(entries_[a], entries_[b]); }
    bool IsTotal() const { return order_.IsTotal(); }

    // Moves the values to the nodes in sorted order.
    void Settle() {
        for (const Entry& entry : entries_) {
            entry.node->ExchangeContent(contents_.emplace_back());
        }
        N* node = chain_.First();
        for (auto& content : contents_) {
            node->ExchangeContent(content);
            node = node->Next();
        }
    }

private:
    struct Entry {
        typename Order::ViewType view;
        N* node;
    };

    NodeChain<N>& chain_;
    const Order& order_;
    std::vector<Entry> entries_;
    std::vector<typename N::Content> contents_;
};

// Sorts a chain ascending by one of the five methods. If a comparison throws, it is unchanged.
template <typename N, typename Order, typename Field>
void SortChain(NodeChain<N>& chain, const Order& order, const Field& field, int method) {
    ChainSequence<N, Order, Field> sequence(chain, order, field);
    SortSequence(sequence, method);
    sequence.Settle();
}

// The index at which to insert a value into a sorted chain.
template <typename N, typename Order, typename Field, typename Value>
DWORD InsertionIndex(const NodeChain<N>& chain, const Order& order, const Field& field, const Value& value) {
    const auto view = order.View(value);
    return InsertionPosition(
        chain.Count(), [&](DWORD index) { return order.Compare(order.View(field(chain.At(index))), view); });
}

// The first position at or after `start` (counted from the last node if the direction is 1) whose value
// matches. A sorted chain uses binary search, unless the order is not total and so does not locate a match.
template <typename N, typename Order, typename Field, typename Value>
DWORD SearchChain(const NodeChain<N>& chain, int direction, bool sorted, const Order& order,
                  const Field& field, const Value& wanted, DWORD start) {
    const DWORD count = chain.Count();
    const auto view = order.View(wanted);
    const auto at = [&](DWORD position) {
        return order.View(field(chain.At(direction == 1 ? count - 1 - position : position)));
    };
    if (sorted && order.IsTotal()) {
        return FindBinary(count, start, [&](DWORD position) {
            const int result = order.Compare(at(position), view);
            return direction == 1 ? -result : result;
        });
    }
    return FindLinear(count, start, [&](DWORD position) { return order.Matches(at(position), view); });
}

}  // namespace UTILS
