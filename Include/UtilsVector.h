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
// good until the next operation that changes its length.
//
// A pointer argument whose length is 0 is measured: a text up to its zero, anything else as one element; null
// is nothing. Arguments may point into the buffer itself. Positions and counts are in elements. Failures: a
// buffer whose block is not initialised or is a matrix refuses with std::bad_alloc, as do lengths of 2^32 and
// more; the heap's own std::bad_alloc leaves the buffer as it was.
// Thread rule: each operation holds the buffer's lock, so that threads may append to one buffer; a sequence
// of operations is not atomic, and reading through a pointer needs the caller's own lock.
template <class T>
class MemObject : public virtual UtilsBase<T> {
public:
    // An empty buffer. initialSize (1 or more): the elements to which Erase returns the block.
    MemObject() : MemObject(DWORD{1}) {}
    explicit MemObject(DWORD initialSize) : initialSize_(initialSize), block_(initialSize) {}
    // A buffer of the given elements.
    explicit MemObject(const T* elements, DWORD length = 0) : MemObject() { Append(elements, length); }
    MemObject(const MemObject& other);
    // Moving leaves an empty buffer behind and takes no lock: nobody else may know the object moved from.
    MemObject(MemObject&& other) noexcept : UtilsBase<T>(other), block_(DWORD{1}) { Exchange(other); }
    const MemObject& operator=(const MemObject& other);
    const MemObject& operator=(MemObject&& other) noexcept;
    ~MemObject() override = default;

    // Takes over the elements of a block, whatever its state: a block that is not initialised makes a buffer
    // that refuses every change. A text buffer adds its terminator.
    const MemObject& operator=(const UtilsAllocator<T>& block);

    // Adds elements at the end. When the block refuses, the length stays raised, but nothing beyond the block
    // is ever read.
    const MemObject& Append(const T* elements, DWORD length = 0);
    const MemObject& Append(const MemObject& other) { return AppendExactly(other.c_str(), other.length()); }
    // The same with a length that is meant as it stands: 0 adds nothing.
    const MemObject& AppendExactly(const T* elements, DWORD length);

    // Inserts before `position` (at most the length, else std::out_of_range).
    const MemObject& Insert(const T* elements, DWORD length, DWORD position);
    // Overwrites from `position` on; what would fall past the end is dropped.
    const MemObject& Replace(const T* elements, DWORD length, DWORD position) {
        return Overwrite(elements, Measured(elements, length), position);
    }
    // The same with a length that is meant as it stands.
    const MemObject& Overwrite(const T* elements, DWORD length, DWORD position);
    // Makes these elements the whole content; a length of 0 is meant as it stands.
    const MemObject& Assign(const T* elements, DWORD length);
    // Puts `length` elements in the place of `removed` ones; a length of 0 is meant as it stands. Throws
    // std::out_of_range when the removed part does not lie in the buffer.
    const MemObject& Splice(DWORD position, DWORD removed, const T* elements, DWORD length);

    // Removes `count` elements from the end, or from `position` on; a count that reaches beyond the length
    // throws std::out_of_range.
    const MemObject& Truncate(DWORD count);
    const MemObject& TruncateAtPosition(DWORD count, DWORD position);
    // Empties the buffer, returns the block to its initial size and zero-fills it.
    const MemObject& Erase();

    // Sets the length; new elements are zero. For callers that fill the buffer through its pointer.
    const MemObject& Resize(DWORD length);

    // Reorders, or XORs element i with key[i modulo keyLength] (bytes only); an empty key throws
    // std::out_of_range, an empty buffer without terminator refuses to be reversed with std::bad_alloc.
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

    // The first element; the buffer keeps it. Null when the block is not initialised.
    T* GetBuffer() noexcept { return block_.GetBuffer(); }
    const T* GetBuffer() const noexcept { return block_.GetBuffer(); }
    const T* c_str() const noexcept { return block_.GetBuffer(); }

    // Elements in use, without the terminator.
    DWORD length() const noexcept { return length_; }
    DWORD size() const noexcept { return length_; }
    // Elements that the block holds.
    DWORD GetAllocatedCount() const noexcept { return block_.GetCount(); }
    // Elements that may be read: the length, bounded by the block.
    DWORD Readable() const noexcept { return std::min(length_, block_.GetCount()); }

    // Exchanges the contents; the two locks are taken one after the other, never together.
    void Swap(MemObject& other) noexcept;
    // Copies into a buffer that no other thread knows yet: only the lock of `other` is taken.
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

// A table of buffers, one at least. H counts the buffers: int throughout. This is the base of UtilsString
// (T = char), UtilsByte (T = unsigned char), the string list and maps (T = UtilsString) and the file list
// (T = DiskIO). The lists and maps keep their elements in nodes of their own and leave the table as it is
// made here, with one empty buffer; they inherit it for its place in the family, for copying and for the
// classification. Thread rule: changes of the table hold its lock, changes of a buffer the buffer's; no two
// locks at once. A table must not be copied or read while another thread changes the number of its buffers.
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
    // How many buffers there are, and one of them; an index beyond throws std::out_of_range.
    H BufferCount() const noexcept { return static_cast<H>(table_.GetCount()); }
    MemObject<T>& Buffer(H index) { return table_.GetBuffer()[Checked(index)]; }
    const MemObject<T>& Buffer(H index) const { return table_.GetBuffer()[Checked(index)]; }

    // Adds a buffer with a copy of the elements at the end of the table.
    void AddBuffer(const T* elements, DWORD length);
    // Removes a buffer; the only one is emptied instead.
    void RemoveBuffer(H index);
    // Grows the table with empty buffers, or removes those at the end.
    void SetBufferCount(H count);

    // What the three replacing operations do to one buffer. Result: 1 when something was replaced, and then
    // the position in `last`; `next` leaves an occurrence alone that lies at `last`. The texts may lie in the
    // buffer.
    enum class Replacing { first, next, all };
    int ReplaceIn(MemObject<T>& buffer, Replacing which, const T* pattern, DWORD patternCount,
                  const T* replacement, DWORD count, int matchCase, DWORD& last) const;

    // Exchanges the tables. Takes this object's lock: `other` must be the caller's alone.
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
