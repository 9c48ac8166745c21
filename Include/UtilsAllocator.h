#pragma once
#include <windows.h>

#include "CSyncObject.h"
#include "StandardFailure.h"
#include "UtilsBlock.h"

namespace UTILS {

// One block of exactly `count` elements with its lock. Refused operations throw std::bad_alloc with a
// message; an exhausted heap throws plain std::bad_alloc. Copying and changing a block hold the lock, so that
// threads may share it; pointers and references into it are valid until the next operation that changes its
// size.
//
//   UTILS::UtilsAllocator<unsigned char> block(512);
//   block.ReAllocateMemory(1024);
template <class T>
class UtilsAllocator {
public:
    // An uninitialised block: it is empty and cannot be reallocated or cleared.
    UtilsAllocator() noexcept = default;

    // `count` elements (1 or more), value-initialised; matrix non-zero marks a block that only
    // ReAllocateMatrix may resize. A count of 0 throws "Inavlid Argument Passed".
    explicit UtilsAllocator(DWORD count, int matrix = 0)
        : block_(Counted(count)), matrix_(matrix != 0 ? 1 : 0), initialised_(1) {}

    // Copies have their own elements and lock.
    UtilsAllocator(const UtilsAllocator& other) {
        const SectionGuard guard(other.lock_);
        CopyUnlocked(other);
    }
    const UtilsAllocator& operator=(const UtilsAllocator& other) {
        if (this != &other) {
            UtilsAllocator copy(other);
            const SectionGuard guard(lock_);
            ExchangeUnlocked(copy);
        }
        return *this;
    }
    virtual ~UtilsAllocator() = default;

    // Resizes to `count` elements; the first ones keep their values, new ones are zero. Refuses, in this
    // order: an uninitialised block, a count of 0, a matrix, a released block; the block is then unchanged.
    const UtilsAllocator& ReAllocateMemory(DWORD count) {
        const SectionGuard guard(lock_);
        CheckReallocation(count);
        ResizeCleared(count);
        return *this;
    }

    // The same for a matrix; refuses any other block.
    const UtilsAllocator& ReAllocateMatrix(DWORD count) {
        const SectionGuard guard(lock_);
        if (initialised_ == 0 || matrix_ == 0) {
            ThrowBadAlloc(condition::incorrectCall, "UtilsAllocator<T>::ReAllocateMatrix", header::allocator);
        }
        CheckCountAndBlock(count);
        ResizeCleared(count);
        return *this;
    }

    // Frees the elements; the block is then null and cannot be reallocated. Refuses a null block.
    const UtilsAllocator& ReleaseMemory() {
        const SectionGuard guard(lock_);
        if (block_.Data() == nullptr) {
            ThrowBadAlloc(condition::invalidArgument, 0, header::allocator);
        }
        block_.Release();
        return *this;
    }

    // Sets every element to zero (to T()). Refuses an uninitialised block.
    const UtilsAllocator& Clear() {
        const SectionGuard guard(lock_);
        CheckInitialised();
        std::fill_n(block_.Data(), block_.Count(), T());
        return *this;
    }

    // The element at `index`; throws std::out_of_range when it is not below the count.
    T& Retrieve(DWORD index) {
        CheckIndex(index);
        return block_.Data()[index];
    }
    const T& Retrieve(DWORD index) const {
        CheckIndex(index);
        return block_.Data()[index];
    }
    T& operator[](DWORD index) { return Retrieve(index); }
    const T& operator[](DWORD index) const { return Retrieve(index); }

    // The first element, owned by the block; null if the block has none.
    T* GetBuffer() noexcept { return block_.Data(); }
    const T* GetBuffer() const noexcept { return block_.Data(); }

    DWORD GetCount() const noexcept { return block_.Count(); }
    int IsMatrix() const noexcept { return matrix_; }
    int IsInitialised() const noexcept { return initialised_; }

    // For an owner with its own lock: the checks of ReAllocateMemory and of Clear, copying, exchanging and
    // the storage itself. None of these takes the block's lock.
    void CheckReallocation(DWORD count) const {
        if (initialised_ == 0) {
            ThrowBadAlloc(condition::incorrectCall, "UtilsAllocator<T>::ReAllocateMemory", header::allocator);
        }
        if (count != 0 && matrix_ != 0) {
            ThrowBadAlloc(condition::incorrectCall, "UtilsAllocator<T>::ReAllocateMemory", header::allocator);
        }
        CheckCountAndBlock(count);
    }
    void CheckInitialised() const {
        if (initialised_ == 0) {
            ThrowBadAlloc(condition::incorrectCall,
                          "Cannot Allocate Memory Internally Without Constructor Initialization",
                          header::allocator);
        }
    }
    void CopyUnlocked(const UtilsAllocator& other) {
        block_ = other.block_;
        matrix_ = other.matrix_;
        initialised_ = other.initialised_;
    }
    void ExchangeUnlocked(UtilsAllocator& other) noexcept {
        block_.Swap(other.block_);
        std::swap(matrix_, other.matrix_);
        std::swap(initialised_, other.initialised_);
    }
    UtilsBlock<T>& Block() noexcept { return block_; }
    const UtilsBlock<T>& Block() const noexcept { return block_; }

private:
    static DWORD Counted(DWORD count) {
        if (count == 0) {
            ThrowBadAlloc(condition::invalidArgument, 0, header::allocator);
        }
        return count;
    }

    void CheckCountAndBlock(DWORD count) const {
        if (count == 0) {
            ThrowBadAlloc(condition::incorrectParameter, 0, header::allocator);
        }
        if (block_.Data() == nullptr) {
            ThrowBadAlloc(condition::invalidArgument, 0, header::allocator);
        }
    }

    void CheckIndex(DWORD index) const {
        if (index >= block_.Count()) {
            ThrowOutOfRange(FailureDetail(index, block_.Count()), header::allocator);
        }
    }

    void ResizeCleared(DWORD count) {
        const DWORD before = block_.Count();
        block_.Resize(count);
        if constexpr (std::is_trivial_v<T>) {
            if (count > before) {
                std::fill_n(block_.Data() + before, count - before, T());
            }
        }
    }

    mutable CCriticalSection lock_;
    UtilsBlock<T> block_;
    int matrix_ = 0;
    int initialised_ = 0;
};

}  // namespace UTILS
