#pragma once
#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace UTILS {

// The raw storage of one block: exactly `count` elements, without lock or checks. A few small elements are
// stored inline; the count is exact either way. Elements of trivial types are moved as bytes.
template <class T>
class UtilsBlock {
    static constexpr bool trivial = std::is_trivial_v<T>;
    static constexpr std::size_t inline_bytes =
        trivial ? 16 : (std::is_nothrow_move_constructible_v<T> ? sizeof(T) : 0);
    static constexpr DWORD inline_count = static_cast<DWORD>(inline_bytes / sizeof(T));

public:
    UtilsBlock() noexcept = default;

    // `count` elements, each value-initialised. Throws std::bad_alloc.
    explicit UtilsBlock(DWORD count) : data_(Allocate(count)), count_(count) {
        Construct(data_, count, [](T* at, DWORD n) { std::uninitialized_value_construct_n(at, n); });
    }
    UtilsBlock(const UtilsBlock& other) { CopyFrom(other); }
    UtilsBlock(UtilsBlock&& other) noexcept { Take(other); }
    UtilsBlock& operator=(const UtilsBlock& other) {
        if (this != &other) {
            UtilsBlock copy(other);
            *this = std::move(copy);
        }
        return *this;
    }
    UtilsBlock& operator=(UtilsBlock&& other) noexcept {
        if (this != &other) {
            Release();
            Take(other);
        }
        return *this;
    }
    ~UtilsBlock() { Release(); }

    T* Data() noexcept { return data_; }
    const T* Data() const noexcept { return data_; }
    DWORD Count() const noexcept { return count_; }

    // Resizes to `count` elements; the first ones keep their values, new ones of trivial types are
    // uninitialised. Throws std::bad_alloc; the block is then unchanged.
    void Resize(DWORD count) {
        if (count == count_) {
            return;
        }
        if constexpr (trivial) {
            ResizeBytes(count);
        } else {
            ResizeObjects(count);
        }
    }

    // Destroys the elements and frees the block; it is then null.
    void Release() noexcept {
        if (data_ != nullptr) {
            std::destroy_n(data_, count_);
            Free(data_);
            data_ = nullptr;
            count_ = 0;
        }
    }

    void Swap(UtilsBlock& other) noexcept {
        UtilsBlock held(std::move(other));
        other = std::move(*this);
        *this = std::move(held);
    }

private:
    T* Inline() noexcept { return std::launder(reinterpret_cast<T*>(inline_)); }
    bool IsInline() const noexcept {
        return static_cast<const void*>(data_) == static_cast<const void*>(inline_);
    }

    static std::size_t Bytes(DWORD count) {
        if (count > static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(T)) {
            throw std::bad_alloc();
        }
        return count * sizeof(T);
    }

    T* Allocate(DWORD count) {
        if (count <= inline_count) {
            return Inline();
        }
        if constexpr (trivial) {
            void* const heap = std::malloc(Bytes(count));
            if (heap == nullptr) {
                throw std::bad_alloc();
            }
            return static_cast<T*>(heap);
        } else {
            return std::allocator<T>().allocate(count);
        }
    }

    void Free(T* data) noexcept {
        if (static_cast<const void*>(data) == static_cast<const void*>(inline_)) {
            return;
        }
        if constexpr (trivial) {
            std::free(data);
        } else {
            std::allocator<T>().deallocate(data, count_);
        }
    }

    // Runs `fill`; frees the storage if it throws.
    template <class Fill>
    void Construct(T* data, DWORD count, Fill fill) {
        if constexpr (trivial) {
            fill(data, count);
        } else {
            struct Undo {
                UtilsBlock* block;
                T* data;
                DWORD count;
                ~Undo() {
                    if (block != nullptr && data != block->Inline()) {
                        std::allocator<T>().deallocate(data, count);
                    }
                }
            } undo{this, data, count};
            fill(data, count);
            undo.block = nullptr;
        }
    }

    void CopyFrom(const UtilsBlock& other) {
        if (other.data_ != nullptr) {
            T* const data = Allocate(other.count_);
            Construct(data, other.count_,
                      [&](T* at, DWORD n) { std::uninitialized_copy_n(other.data_, n, at); });
            data_ = data;
            count_ = other.count_;
        }
    }

    void Take(UtilsBlock& other) noexcept {
        if (other.data_ == nullptr) {
            return;
        }
        count_ = other.count_;
        if (other.IsInline()) {
            data_ = Inline();
            std::uninitialized_move_n(other.data_, count_, data_);
            other.Release();
        } else {
            data_ = std::exchange(other.data_, nullptr);
            other.count_ = 0;
        }
    }

    void ResizeBytes(DWORD count) {
        if (!IsInline() && count > inline_count) {
            void* const heap = std::realloc(static_cast<void*>(data_), Bytes(count));
            if (heap == nullptr) {
                throw std::bad_alloc();
            }
            data_ = static_cast<T*>(heap);
        } else {
            T* const data = Allocate(count);
            if (data != data_) {
                std::memcpy(static_cast<void*>(data), data_, sizeof(T) * std::min(count, count_));
                Free(data_);
                data_ = data;
            }
        }
        count_ = count;
    }

    void ResizeObjects(DWORD count) {
        UtilsBlock resized;
        const DWORD kept = std::min(count, count_);
        if (count <= inline_count && IsInline()) {
            ResizeInPlace(count);
            return;
        }
        T* const data = resized.Allocate(count);
        resized.Construct(data, count, [&](T* at, DWORD n) {
            std::uninitialized_value_construct_n(at + kept, n - kept);
            try {
                MoveOrCopy(kept, at);
            } catch (...) {
                std::destroy_n(at + kept, n - kept);
                throw;
            }
        });
        resized.data_ = data;
        resized.count_ = count;
        *this = std::move(resized);
    }

    void ResizeInPlace(DWORD count) {
        if (count < count_) {
            std::destroy_n(data_ + count, count_ - count);
        } else {
            std::uninitialized_value_construct_n(data_ + count_, count - count_);
        }
        count_ = count;
    }

    void MoveOrCopy(DWORD kept, T* to) {
        if constexpr (std::is_nothrow_move_constructible_v<T> || !std::is_copy_constructible_v<T>) {
            std::uninitialized_move_n(data_, kept, to);
        } else {
            std::uninitialized_copy_n(data_, kept, to);
        }
    }

    T* data_ = nullptr;
    DWORD count_ = 0;
    alignas(T) std::byte inline_[inline_count == 0 ? 1 : inline_bytes];
};

}  // namespace UTILS
