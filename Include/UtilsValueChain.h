#pragma once
#include <windows.h>

#include <memory>
#include <utility>

#include "StandardFailure.h"
#include "UtilsChainOrder.h"
#include "UtilsOrder.h"

namespace UTILS {

// What lists and maps have in common: a chain of nodes with values, the end from which positions count, and
// how values compare. A position that is not below the size throws std::out_of_range (detail position ":"
// size; the header path is the derived class's).
template <typename N, typename T>
class ValueChain {
public:
    DWORD Size() const { return chain_.Count(); }

    // 1 counts positions, and walks linear searches, from the last node; any other value from the first.
    void SetSearchDirection(int direction) { direction_ = direction; }
    int GetSearchDirection() const { return direction_; }
    // Match style 0 compares values as a whole, any other one finds a value equal that contains the other.
    int GetMatchStyle() const { return match_style_; }
    // 1 compares exactly, 0 without regard to case.
    int GetCase() const { return case_; }

protected:
    struct ValueField {
        const T& operator()(const N& node) const { return node.Value(); }
    };

    explicit ValueChain(const char* headerPath) : header_(headerPath) {}

    ValueOrder<T> Comparison() const { return ValueOrder<T>(case_, match_style_); }
    // The index from the first node that a position means.
    DWORD Index(DWORD position) const { return direction_ == 1 ? Size() - 1 - position : position; }
    N& NodeAt(DWORD position) const {
        CheckPosition(position);
        return chain_.At(Index(position));
    }
    void CheckPosition(DWORD position) const {
        if (position >= Size()) {
            ThrowOutOfRange(FailureDetail(position, Size()), header_);
        }
    }

    // The caller's own node with the settings of the chain, ready to be linked.
    std::unique_ptr<N> Styled(std::unique_ptr<N> node) const {
        CopyStyle(node->Value(), case_, match_style_);
        return node;
    }
    void Unlink(DWORD position) {
        CheckPosition(position);
        chain_.Take(Index(position));
    }
    // Also gives every value these settings, where it has such; the values are then in no known order.
    void SetStyle(int exact, int style) {
        ForgetOrder(KnownOrder::ByValue);
        case_ = exact;
        match_style_ = style;
        ApplyStyle();
    }
    void ApplyStyle() {
        for (N* node = chain_.First(); node != nullptr; node = node->Next()) {
            CopyStyle(node->Value(), case_, match_style_);
        }
    }

    void ForgetOrder(KnownOrder order) {
        if (chain_.Order() == order) {
            chain_.SetOrder(KnownOrder::None);
        }
    }

    NodeChain<N> chain_;

private:
    const char* header_;
    int direction_ = 0;
    int match_style_ = 0;
    int case_ = 1;
};

}  // namespace UTILS
