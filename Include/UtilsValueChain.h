#pragma once
#include <windows.h>

#include <memory>
#include <utility>

#include "StandardFailure.h"
#include "UtilsChainOrder.h"
#include "UtilsOrder.h"

namespace UTILS {

// The common part of lists and maps: a chain of nodes with values, the end from which positions count, and
// how values compare. A position not below the size throws std::out_of_range (detail position ":" size; the
// header path is the derived class's).
template <typename N, typename T>
class ValueChain {
public:
    DWORD Size() const { return chain_.Count(); }

    // 1 counts positions and searches from the last node, any other value from the first.
    void SetSearchDirection(int direction) { direction_ = direction; }
    int GetSearchDirection() const { return direction_; }
    // Match style 0 compares complete values, any other treats values as equal if one contains the other.
    int GetMatchStyle() const { return match_style_; }
    // 1 compares exactly, 0 ignores case.
    int GetCase() const { return case_; }

protected:
    struct ValueField {
        const T& operator()(const N& node) const { return node.Value(); }
    };

    explicit ValueChain(const char* headerPath) : header_(headerPath) {}

    ValueOrder<T> Comparison() const { return ValueOrder<T>(case_, match_style_); }
    // Converts a position to an index from the first node.
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

    // Applies the settings of the chain to a new node and returns it.
    std::unique_ptr<N> Styled(std::unique_ptr<N> node) const {
        CopyStyle(node->Value(), case_, match_style_);
        return node;
    }
    void Unlink(DWORD position) {
        CheckPosition(position);
        chain_.Take(Index(position));
    }
    // Also applies these settings to every value that has them; the values are then in no known order.
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
