#pragma once
#include <atomic>
#include <cstddef>
#include <limits>
#include <mutex>
#include <string>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// The one door through which every function of the layer is entered. It counts and, when asked, records the
// calls, and fails those that the fault plan names. Without a plan and a record a call costs one relaxed
// load. Thread rule: any thread may enter; the plan is changed while no other thread is inside the layer.
class Gate {
public:
    // The current machine's.
    static Gate& current();

    Gate() = default;
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    ~Gate();

    static constexpr std::size_t always = std::numeric_limits<std::size_t>::max();

    // Fails the k-th call from now on that can fail (0 = the next one) with the Windows error code.
    void failCall(std::size_t k, DWORD error);
    // Fails calls of this function: the first `skip` go through, the following `count` fail.
    void failFunction(std::string function, DWORD error, std::size_t skip = 0, std::size_t count = always);
    // Starts recording and counting from nothing.
    void startRecording();
    // Forgets plan and record.
    void reset();

    // Names of the recorded calls in order, those that cannot fail included.
    std::vector<std::string> calls() const;
    // Recorded calls that can fail; the bound of a loop over failCall.
    std::size_t fallibleCalls() const;
    // Calls that the plan has failed since it was made.
    std::size_t failedCalls() const;

    // Entered at the start of each function: 0 to go on, otherwise the error to fail with.
    DWORD enter(const char* function, bool canFail);

    // Gates of this process that hold a plan or a record. Zero in ordinary running, which is all that an
    // entering function then looks at.
    static inline std::atomic<int> armed{0};

private:
    struct FunctionFault {
        std::string function;
        DWORD error;
        std::size_t skip;
        std::size_t count;
    };

    void arm();
    void disarm();
    DWORD plannedError(const char* function);

    mutable std::mutex mutex_;
    bool armed_ = false;
    bool recording_ = false;
    std::size_t countdown_ = always;
    DWORD countdownError_ = 0;
    std::vector<FunctionFault> faults_;
    std::vector<const char*> calls_;  // function names have no end of life
    std::size_t fallible_ = 0;
    std::size_t failed_ = 0;
};

// The slow half of the three below: asks the current machine's gate.
DWORD enterCurrentGate(const char* function, bool canFail);
bool enterCurrentGateOrSetLastError(const char* function);

// For functions that report through the last error: true when the plan fails this call; the last error is
// then set.
inline bool denied(const char* function) {
    return Gate::armed.load(std::memory_order_relaxed) != 0 && enterCurrentGateOrSetLastError(function);
}

// For functions that return the error code itself (the registry's): 0 to go on.
inline DWORD deniedCode(const char* function) {
    return Gate::armed.load(std::memory_order_relaxed) != 0 ? enterCurrentGate(function, true) : 0;
}

// For functions that cannot fail (locks, clocks).
inline void entered(const char* function) {
    if (Gate::armed.load(std::memory_order_relaxed) != 0) {
        enterCurrentGate(function, false);
    }
}

}  // namespace winlayer
