#pragma once
#include <windows.h>

#include <limits>
#include <vector>

#include "CSyncObject.h"
#include "StandardFailure.h"
#include "UtilsAllocator.h"
#include "UtilsBase.h"

namespace UTILS {

// One buffer: a length and a block of exactly length + terminator count elements (an empty buffer without
// terminator keeps one element). Text buffers always end in a zero. Pointers and references into a buffer are
// valid until the next operation that changes its length.
//
// A pointer argument with length 0 is measured: a text ends at its zero, anything else is one element; null
// is empty. Arguments may point into the buffer itself. Positions and counts are in elements. Failures: a
// buffer whose block is uninitialised or a matrix refuses with std::bad_alloc, as do lengths of 2^32 and
// more; an exhausted heap leaves the buffer unchanged.
// Thread rule: each operation holds the buffer's lock, so that threads may append to one buffer; a sequence
// of operations is not atomic, and reading through a pointer needs the caller's own lock.
template <class T>
class MemObject : public virtual UtilsBase<T> {
public:
    // An empty buffer. initialSize (1 or more): the block size in elements that Erase restores.
    MemObject() : MemObject(DWORD{1}) {}
    explicit MemObject(DWORD initialSize) : initialSize_(initialSize), block_(initialSize) {}
    // A buffer of the given elements.
    explicit MemObject(const T* elements, DWORD length = 0) : MemObject() { Append(elements, length); }
    MemObject(const MemObject& other);
    // Moving leaves the other buffer empty and takes no lock: no other thread may use the other buffer.
    MemObject(MemObject&& other) noexcept : UtilsBase<T>(other), block_(DWORD{1}) { Exchange(other); }
    const MemObject& operator=(const MemObject& other);
    const MemObject& operator=(MemObject&& other) noexcept;
    ~MemObject() override = default;

    // Copies the elements and the state of a block: an uninitialised block makes a buffer that refuses every
    // change. A text buffer adds its terminator.
    const MemObject& operator=(const UtilsAllocator<T>& block);

    // Appends elements. If the block refuses, the length stays increased, but nothing beyond the block is
    // ever read.
    const MemObject& Append(const T* elements, DWORD length = 0);
    const MemObject& Append(const MemObject& other) { return AppendExactly(other.c_str(), other.length()); }
    // The same with an exact length: 0 adds nothing.
    const MemObject& AppendExactly(const T* elements, DWORD length);

    // Inserts before `position` (at most the length, else std::out_of_range).
    const MemObject& Insert(const T* elements, DWORD length, DWORD position);
    // Overwrites from `position` on; elements past the end are dropped.
    const MemObject& Replace(const T* elements, DWORD length, DWORD position) {
        return Overwrite(elements, Measured(elements, length), position);
    }
    // The same with an exact length.
    const MemObject& Overwrite(const T* elements, DWORD length, DWORD position);
    // Replaces the contents; the length is exact.
    const MemObject& Assign(const T* elements, DWORD length);
    // Replaces `removed` elements with `length` others; the length is exact. Throws std::out_of_range if the
    // removed part is not within the buffer.
    const MemObject& Splice(DWORD position, DWORD removed, const T* elements, DWORD length);

    // Removes `count` elements from the end, or at `position`; a range beyond the length throws
    // std::out_of_range.
    const MemObject& Truncate(DWORD count);
    const MemObject& TruncateAtPosition(DWORD count, DWORD position);
    // Empties the buffer, restores the block's initial size and zero-fills it.
    const MemObject& Erase();

    // Sets the length; new elements are zero. For callers that write through the pointer.
    const MemObject& Resize(DWORD length);

    // Sort, reverse, or XOR element i with key[i modulo keyLength] (bytes only). An empty key throws
    // std::out_of_range, reversing an empty buffer without terminator std::bad_alloc.
    const MemObject& Sort();
    const MemObject& Reverse();
    const MemObject& Xor(const T* key, DWORD keyLength);

    // The element at `index`; throws std::out_of_range when it is not below the length.
    T& Retrieve(DWORD index) {
        CheckIndex(index);
        return block_.GetBuffer()[index];
    }
    const T& Retrieve(DWORD index) const {
        CheckIndex(index);
        return block_.GetBuffer()[index];
    }

    // The first element, owned by the buffer; null if the block is uninitialised.
    T* GetBuffer() noexcept { return block_.GetBuffer(); }
    const T* GetBuffer() const noexcept { return block_.GetBuffer(); }
    const T* c_str() const noexcept { return block_.GetBuffer(); }

    // Elements in use, without the terminator.
    DWORD length() const noexcept { return length_; }
    DWORD size() const noexcept { return length_; }
    // Elements that the block holds.
    DWORD GetAllocatedCount() const noexcept { return block_.GetCount(); }
    // Elements that may be read: the length, limited by the block.
    DWORD Readable() const noexcept { return std::min(length_, block_.GetCount()); }

    // Exchanges the contents; the two locks are taken one after the other, never together.
    void Swap(MemObject& other) noexcept;
    // Copies into a buffer that no other thread uses yet: only the lock of `other` is taken.
    void CopyFrom(const MemObject& other);
    friend void swap(MemObject& left, MemObject& right) noexcept { left.Swap(right); }

private:
    static constexpr DWORD terminators = UtilsBase<T>::is_text ? 1 : 0;

    static DWORD Measured(const T* elements, DWORD length);
    static DWORD Sum(DWORD left, DWORD right);
    static DWORD BlockSize(DWORD length) { return std::max<DWORD>(Sum(length, terminators), 1); }

    bool Holds(const T* elements) const noexcept;
    void CheckIndex(DWORD index) const;
    void CheckPart(DWORD position, DWORD count) const;
    void AppendLocked(const T* elements, DWORD length);
    void SpliceLocked(DWORD position, DWORD removed, const T* elements, DWORD length);
    void SetLengthLocked(DWORD length);
    void Exchange(MemObject& other) noexcept;
    void ExchangeLocked(MemObject& other) noexcept;

    mutable CCriticalSection lock_;
    DWORD initialSize_ = 1;
    DWORD length_ = 0;
    UtilsAllocator<T> block_;
};

// A table of at least one buffer. H is the type of the buffer count, always int. The base of UtilsString
// (T = char), UtilsByte (T = unsigned char), the string list and maps (T = UtilsString) and the file list
// (T = DiskIO). Lists and maps keep their elements in nodes and leave the table with its one empty buffer;
// they inherit it to be part of the hierarchy, for copying and for the classification. Thread rule: changes
// of the table hold its lock, changes of a buffer the buffer's; never two locks at once. A table must not be
// copied or read while another thread changes the number of its buffers.
template <class T, class H>
class Utils : public virtual UtilsBase<T> {
public:
    // A table of `buffers` empty buffers; 0 means 1.
    explicit Utils(H buffers = 1) : table_(buffers > 0 ? static_cast<DWORD>(buffers) : 1) {}
    Utils(const Utils& other) : UtilsBase<T>(other), table_(other.table_.GetCount()) {
        for (DWORD i = 0; i < table_.GetCount(); ++i) {
            table_.GetBuffer()[i].CopyFrom(other.table_.GetBuffer()[i]);
        }
    }
    Utils(Utils&& other) noexcept : UtilsBase<T>(other), table_(DWORD{1}) { SwapTable(other); }
    const Utils& operator=(const Utils& other) {
        if (this != &other) {
            Utils copy(other);
            SwapTable(copy);
        }
        return *this;
    }
    const Utils& operator=(Utils&& other) noexcept {
        if (this != &other) {
            Utils taken(std::move(other));
            SwapTable(taken);
        }
        return *this;
    }
    ~Utils() override = default;

protected:
    // The number of buffers, and one of them; an index out of range throws std::out_of_range.
    H BufferCount() const noexcept { return static_cast<H>(table_.GetCount()); }
    MemObject<T>& Buffer(H index) { return table_.GetBuffer()[Checked(index)]; }
    const MemObject<T>& Buffer(H index) const { return table_.GetBuffer()[Checked(index)]; }

    // Appends a buffer with a copy of the elements.
    void AddBuffer(const T* elements, DWORD length);
    // Removes a buffer; the only one is emptied instead.
    void RemoveBuffer(H index);
    // Appends empty buffers, or removes buffers at the end.
    void SetBufferCount(H count);

    // The three replace operations on one buffer. Result: 1 with the position in `last` if any was replaced;
    // `next` does not replace an occurrence at `last`. The texts may point into the buffer.
    enum class Replacing { first, next, all };
    int ReplaceIn(MemObject<T>& buffer, Replacing which, const T* pattern, DWORD patternCount,
                  const T* replacement, DWORD count, int matchCase, DWORD& last) const;

    // Exchanges the tables. Locks only this object: no other thread may use `other`.
    void SwapTable(Utils& other) noexcept;

private:
    DWORD Checked(H index) const {
        if (static_cast<DWORD>(index) >= table_.GetCount()) {
            ThrowOutOfRange(FailureDetail(index, table_.GetCount()), header::vector);
        }
        return static_cast<DWORD>(index);
    }

    mutable CCriticalSection lock_;
    UtilsAllocator<MemObject<T>> table_;
};

}  // namespace UTILS

#include "UtilsVectorBodies.h"
