#pragma once
// Definitions of MemObject and Utils; included only by UtilsVector.h.

namespace UTILS {

template <class T>
MemObject<T>::MemObject(const MemObject& other) : UtilsBase<T>(other) {
    CopyFrom(other);
}

template <class T>
const MemObject<T>& MemObject<T>::operator=(const MemObject& other) {
    if (this != &other) {
        MemObject copy(other);
        const SectionGuard guard(lock_);
        Exchange(copy);
    }
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::operator=(MemObject&& other) noexcept {
    if (this != &other) {
        MemObject taken(std::move(other));
        Exchange(taken);
    }
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::operator=(const UtilsAllocator<T>& block) {
    UtilsAllocator<T> copy(block);
    const DWORD count = copy.GetCount();
    if (terminators != 0 && copy.GetBuffer() != nullptr) {
        copy.Block().Resize(Sum(count, terminators));
        std::fill_n(copy.GetBuffer() + count, terminators, T());
    }
    const SectionGuard guard(lock_);
    block_.ExchangeUnlocked(copy);
    length_ = count;
    return *this;
}

template <class T>
void MemObject<T>::CopyFrom(const MemObject& other) {
    const SectionGuard guard(other.lock_);
    block_.CopyUnlocked(other.block_);
    initialSize_ = other.initialSize_;
    length_ = other.length_;
}

template <class T>
DWORD MemObject<T>::Measured(const T* elements, DWORD length) {
    if (elements == nullptr || length != 0) {
        return elements == nullptr ? 0 : length;
    }
    if constexpr (UtilsBase<T>::is_text) {
        std::size_t count = 0;
        if constexpr (sizeof(T) == 1) {
            count = std::strlen(elements);
        } else {
            while (elements[count] != 0) {
                ++count;
            }
        }
        if (count > std::numeric_limits<DWORD>::max()) {
            ThrowBadAlloc(condition::incorrectParameter, count, header::vector);
        }
        return static_cast<DWORD>(count);
    } else {
        return 1;
    }
}

template <class T>
DWORD MemObject<T>::Sum(DWORD left, DWORD right) {
    const std::uint64_t sum = std::uint64_t{left} + right;
    if (sum > std::numeric_limits<DWORD>::max()) {
        ThrowBadAlloc(condition::incorrectParameter, sum, header::allocator);
    }
    return static_cast<DWORD>(sum);
}

template <class T>
bool MemObject<T>::Holds(const T* elements) const noexcept {
    const T* const begin = block_.GetBuffer();
    return begin != nullptr && !std::less<const T*>()(elements, begin) &&
           std::less<const T*>()(elements, begin + block_.GetCount());
}

template <class T>
void MemObject<T>::CheckIndex(DWORD index) const {
    if (index >= Readable()) {
        ThrowOutOfRange(FailureDetail(index, length_), header::vector);
    }
}

template <class T>
void MemObject<T>::CheckPart(DWORD position, DWORD count) const {
    if (count > length_) {
        ThrowOutOfRange(FailureDetail(count, length_), header::vector);
    }
    if (position > length_ - count) {
        ThrowOutOfRange(FailureDetail(position, length_), header::vector);
    }
}

template <class T>
const MemObject<T>& MemObject<T>::Append(const T* elements, DWORD length) {
    return AppendExactly(elements, Measured(elements, length));
}

template <class T>
const MemObject<T>& MemObject<T>::AppendExactly(const T* elements, DWORD length) {
    const SectionGuard guard(lock_);
    AppendLocked(elements, length);
    return *this;
}

template <class T>
void MemObject<T>::AppendLocked(const T* elements, DWORD length) {
    const DWORD before = length_;
    const DWORD size = BlockSize(Sum(before, length));
    length_ = before + length;  // stays increased if the block refuses, not if the heap is exhausted
    block_.CheckReallocation(size);
    length_ = before;
    const bool own = Holds(elements);
    const std::ptrdiff_t offset = own ? elements - block_.GetBuffer() : 0;
    block_.Block().Resize(size);
    length_ = before + length;
    T* const data = block_.GetBuffer();
    std::copy_n(own ? data + offset : elements, length, data + before);
    std::fill_n(data + before + length, terminators, T());
}

template <class T>
const MemObject<T>& MemObject<T>::Insert(const T* elements, DWORD length, DWORD position) {
    return Splice(position, 0, elements, Measured(elements, length));
}

template <class T>
const MemObject<T>& MemObject<T>::Overwrite(const T* elements, DWORD length, DWORD position) {
    const SectionGuard guard(lock_);
    block_.CheckInitialised();
    if (position < Readable()) {
        const DWORD kept = std::min(length, Readable() - position);
        T* const to = block_.GetBuffer() + position;
        if (to <= elements && Holds(elements)) {
            std::copy_n(elements, kept, to);
        } else {
            std::copy_backward(elements, elements + kept, to + kept);
        }
    }
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::Assign(const T* elements, DWORD length) {
    const SectionGuard guard(lock_);
    SpliceLocked(0, length_, elements, length);
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::Splice(DWORD position, DWORD removed, const T* elements, DWORD length) {
    const SectionGuard guard(lock_);
    SpliceLocked(position, removed, elements, length);
    return *this;
}

template <class T>
void MemObject<T>::SpliceLocked(DWORD position, DWORD removed, const T* elements, DWORD length) {
    block_.CheckInitialised();
    CheckPart(position, removed);
    if (length != 0 && Holds(elements)) {
        const std::vector<T> copy(elements, elements + length);
        SpliceLocked(position, removed, copy.data(), length);
        return;
    }
    const DWORD before = length_;
    const DWORD after = Sum(before - removed, length);
    const DWORD size = BlockSize(after);
    const DWORD rest = before - position - removed;
    block_.CheckReallocation(size);
    if (after > before) {
        block_.Block().Resize(size);
        T* const tail = block_.GetBuffer() + position + removed;
        std::move_backward(tail, tail + rest, block_.GetBuffer() + after);
    } else if (after < before) {
        T* const tail = block_.GetBuffer() + position + removed;
        std::move(tail, tail + rest, block_.GetBuffer() + position + length);
    }
    std::copy_n(elements, length, block_.GetBuffer() + position);
    std::fill_n(block_.GetBuffer() + after, terminators, T());
    length_ = after;
    block_.Block().Resize(size);
}

template <class T>
const MemObject<T>& MemObject<T>::Truncate(DWORD count) {
    const SectionGuard guard(lock_);
    CheckPart(0, count);
    SpliceLocked(length_ - count, count, nullptr, 0);
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::TruncateAtPosition(DWORD count, DWORD position) {
    const SectionGuard guard(lock_);
    CheckPart(0, count);
    SpliceLocked(count == length_ ? 0 : position, count, nullptr, 0);
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::Erase() {
    const SectionGuard guard(lock_);
    block_.CheckInitialised();
    block_.CheckReallocation(initialSize_);
    block_.Block().Resize(initialSize_);
    length_ = 0;
    std::fill_n(block_.GetBuffer(), initialSize_, T());
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::Resize(DWORD length) {
    const SectionGuard guard(lock_);
    const DWORD size = BlockSize(length);
    block_.CheckReallocation(size);
    block_.Block().Resize(size);
    const DWORD kept = std::min(length_, length);
    std::fill_n(block_.GetBuffer() + kept, size - kept, T());
    length_ = length;
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::Sort() {
    const SectionGuard guard(lock_);
    UtilsBase<T>::selection_sort(block_.GetBuffer(), Readable());
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::Reverse() {
    const SectionGuard guard(lock_);
    if (length_ + terminators == 0) {
        ThrowBadAlloc(condition::invalidArgument, 0, header::allocator);
    }
    std::reverse(block_.GetBuffer(), block_.GetBuffer() + Readable());
    return *this;
}

template <class T>
const MemObject<T>& MemObject<T>::Xor(const T* key, DWORD keyLength) {
    static_assert(scan::is_byte<T>);
    if (keyLength == 0) {
        ThrowOutOfRange(FailureDetail(0, 0), header::vector);
    }
    const SectionGuard guard(lock_);
    T* const data = block_.GetBuffer();
    const std::size_t count = Readable();
    if (keyLength == 1) {
        const T mask = key[0];
        for (std::size_t i = 0; i < count; ++i) {
            data[i] = static_cast<T>(data[i] ^ mask);
        }
        return *this;
    }
    for (std::size_t start = 0; start < count; start += keyLength) {
        const std::size_t part = std::min<std::size_t>(keyLength, count - start);
        for (std::size_t i = 0; i < part; ++i) {
            data[start + i] = static_cast<T>(data[start + i] ^ key[i]);
        }
    }
    return *this;
}

template <class T>
void MemObject<T>::Swap(MemObject& other) noexcept {
    if (this == &other) {
        return;
    }
    MemObject held;
    held.ExchangeLocked(other);
    held.ExchangeLocked(*this);
    held.ExchangeLocked(other);
}

template <class T>
void MemObject<T>::ExchangeLocked(MemObject& other) noexcept {
    const SectionGuard guard(other.lock_);
    Exchange(other);
}

template <class T>
void MemObject<T>::Exchange(MemObject& other) noexcept {
    block_.ExchangeUnlocked(other.block_);
    std::swap(initialSize_, other.initialSize_);
    std::swap(length_, other.length_);
}

template <class T, class H>
void Utils<T, H>::AddBuffer(const T* elements, DWORD length) {
    MemObject<T> added;
    added.AppendExactly(elements, length);
    const SectionGuard guard(lock_);
    const DWORD count = table_.GetCount();
    table_.Block().Resize(count + 1);
    table_.GetBuffer()[count] = std::move(added);
}

template <class T, class H>
void Utils<T, H>::RemoveBuffer(H index) {
    const DWORD at = Checked(index);
    const DWORD count = table_.GetCount();
    if (count == 1) {
        table_.GetBuffer()[0].Erase();
        return;
    }
    const SectionGuard guard(lock_);
    for (DWORD i = at; i + 1 < count; ++i) {
        table_.GetBuffer()[i] = std::move(table_.GetBuffer()[i + 1]);
    }
    table_.Block().Resize(count - 1);
}

template <class T, class H>
void Utils<T, H>::SetBufferCount(H count) {
    const SectionGuard guard(lock_);
    table_.Block().Resize(count > 0 ? static_cast<DWORD>(count) : 1);
}

template <class T, class H>
void Utils<T, H>::SwapTable(Utils& other) noexcept {
    if (this != &other) {
        const SectionGuard guard(lock_);
        table_.ExchangeUnlocked(other.table_);
    }
}

}  // namespace UTILS
