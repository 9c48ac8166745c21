#pragma once
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>

// Overriding classes declare these operations "const int"; the const has no effect.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wignored-qualifiers"

namespace UTILS {

// Base of the lock and the event: a name, a stack of lock states and whether the system handle is borrowed.
// The stack holds one 0 (unlocked) and above it a 1 for each Lock without its UnLock.
class CSyncObject {
public:
    virtual ~CSyncObject();

    // Marks the system handle as borrowed: the destructor then leaves it open. UnAttach clears the mark.
    virtual void Attach();
    virtual void UnAttach();

    // Pushes a 1 on the state stack. Result: 1.
    virtual const int Lock();

    // Pops one state. Result: 1; 0 if only the first 0 is left, which is never popped.
    virtual const int UnLock();

    // The state at `index`, counted from the bottom; -1 is the top. Any other index outside the stack throws
    // std::out_of_range.
    virtual const int GetState(int index) const;

    // 1 when the system handle is borrowed, else 0.
    virtual const int IsObjectAttached() const;

    // A copy of the name; empty for an unnamed object.
    virtual std::string GetObjName() const;

    // The name of the object's run-time class, for example "class UTILS::CEvent"; valid for the life of the
    // program.
    virtual const char* derived_class() const;

protected:
    explicit CSyncObject(const std::string& name);
    CSyncObject() noexcept = default;

    // Copy the name, the states and the attached mark, but not the state of the system object.
    CSyncObject(const CSyncObject& other);
    const CSyncObject& operator=(const CSyncObject& other);
    const CSyncObject& Copy(const CSyncObject& other);

    // The number of 1s on the stack. Any thread may read it; only the lock's owner changes it.
    int Depth() const noexcept { return depth_.load(std::memory_order_relaxed); }
    void SetDepth(int depth) noexcept { depth_.store(depth, std::memory_order_relaxed); }
    // Changes the depth atomically; false, and no change, if it is not `from`.
    bool ChangeDepth(int from, int to) noexcept { return depth_.compare_exchange_strong(from, to); }

private:
    void Init(const std::string& name);

    // The depth alone describes a stack of one 0 followed by 1s.
    std::atomic<int> depth_ = 0;
    std::atomic<int> attached_ = 0;
    std::unique_ptr<const std::string> name_;  // null for an empty name, as in most objects
};

// A recursive lock.
class CCriticalSection : public CSyncObject {
public:
    CCriticalSection() noexcept { InitializeCriticalSection(&section_); }
    // A copy is a new, unowned lock with the same recorded states.
    CCriticalSection(const CCriticalSection& other) : CSyncObject(other) {
        InitializeCriticalSection(&section_);
    }
    const CCriticalSection& operator=(const CCriticalSection& other) {
        CSyncObject::operator=(other);
        return *this;
    }
    ~CCriticalSection() override { DeleteCriticalSection(&section_); }

    // Enters the section, waiting while another thread owns it. Result: 1.
    const int Lock() override {
        EnterCriticalSection(&section_);
        owner_.store(ThisThread(), std::memory_order_relaxed);
        ++entries_;
        SetDepth(Depth() + 1);
        return 1;
    }

    // Leaves the section once. Result: 1, even if this thread does not own it; then at most a copied state is
    // popped.
    const int UnLock() override {
        if (owner_.load(std::memory_order_relaxed) != ThisThread()) {
            return DropCopiedState();
        }
        SetDepth(std::max(Depth() - 1, 0));
        unlocked_ = 1;
        if (--entries_ == 0) {
            owner_.store(nullptr, std::memory_order_relaxed);
        }
        LeaveCriticalSection(&section_);
        return 1;
    }

    std::string GetObjName() const override;

private:
    // The address of a thread-local variable identifies a thread without a system call.
    static const void* ThisThread() noexcept {
        static thread_local char mark = 0;
        return &mark;
    }
    int DropCopiedState() noexcept;

    CRITICAL_SECTION section_;
    std::atomic<const void*> owner_ = nullptr;
    int entries_ = 0;   // of the owner; changed only inside the section
    int unlocked_ = 0;  // set by UnLock; changed only inside the section
};

// Locks a section for the scope.
class SectionGuard {
public:
    explicit SectionGuard(CCriticalSection& section) : section_(section) {
        section_.CCriticalSection::Lock();
    }
    ~SectionGuard() { section_.CCriticalSection::UnLock(); }
    SectionGuard(const SectionGuard&) = delete;
    SectionGuard& operator=(const SectionGuard&) = delete;

private:
    CCriticalSection& section_;
};

// A system event. Any thread may signal it; the worker thread tests it without waiting.
class CEvent : public CSyncObject {
public:
    // Creates the event. initiallySignalled and manualReset: 0 or not 0; an empty name makes an unnamed
    // event; security may be null. If the event cannot be created, the handle is null and the operations
    // return 0.
    CEvent(int initiallySignalled = 0, int manualReset = 0, const std::string& name = std::string(),
           LPSECURITY_ATTRIBUTES security = nullptr);

    // A copy uses the same system event through its own handle (inheritable, same access), or borrows the
    // handle if `other` does; states, flags and name are copied.
    CEvent(const CEvent& other);
    const CEvent& operator=(const CEvent& other);

    // Closes the handle unless it is borrowed.
    ~CEvent() override;

    // Signals the event and pushes a 1. Result: the system's; 0, without a call, if a 1 is already there.
    const int Lock() override;

    // Tests the event without waiting. Result: 1 if it was signalled; the signal is then consumed, a state
    // popped and the signal-seen flag set. Otherwise 0.
    const int UnLock() override;

    std::string GetObjName() const override;

    // The system's own operations; each returns the system's result (0 for failure).
    virtual int SetEvent();
    virtual int ResetEvent();
    // Also sets the signal-seen flag, before the pulse.
    virtual int PulseEvent();

    // 1 once UnLock or PulseEvent has seen a signal, until cleared.
    int IsSignalSeen() const noexcept { return signalSeen_.load(); }
    void ClearSignalSeen() noexcept { signalSeen_.store(0); }

    // The system handle, which the event keeps; null if the event could not be created.
    HANDLE GetHandle() const noexcept { return handle_; }

private:
    HANDLE HandleForCopy() const;
    void Close() noexcept;

    HANDLE handle_ = nullptr;
    int manualReset_ = 0;
    std::atomic<int> signalSeen_ = 0;
};

}  // namespace UTILS

#pragma GCC diagnostic pop
