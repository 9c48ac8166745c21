#pragma once
#include <atomic>
#include <cstddef>
#include <limits>
#include <mutex>
#include <string>
#include <vector>

#include "winlayer/include/windows.h"

namespace winlayer {

// The call hook, which every function of the layer enters first. It counts calls, records them on request,
// and fails those that the fault plan names. With neither a plan nor a record a call costs one relaxed load.
// Thread rule: any thread may enter; change the plan only while no other thread is inside the layer.
class Gate {
public:
    // The current machine's.
    static Gate& current();

    Gate() = default;
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    ~Gate();

    static constexpr std::size_t always = std::numeric_limits<std::size_t>::max();

    // Fails the k-th call from now on (0 = the next) that can fail, with the Windows error code.
    void failCall(std::size_t k, DWORD error);
    // Fails calls of this function: the first `skip` succeed, the next `count` fail.
    void failFunction(std::string function, DWORD error, std::size_t skip = 0, std::size_t count = always);
    // Starts recording with an empty record.
    void startRecording();
    // Clears the plan and the record.
    void reset();

    // Names of the recorded calls in order, including those that cannot fail.
    std::vector<std::string> calls() const;
    // Number of recorded calls that can fail: the bound of a loop over failCall.
    std::size_t fallibleCalls() const;
    // Number of calls that the plan has failed so far.
    std::size_t failedCalls() const;

    // Called first by each function: 0 to continue, otherwise the error to fail with.
    DWORD enter(const char* function, bool canFail);

    // Call hooks of this process that have a plan or a record: zero in normal operation, where a call checks
    // nothing else.
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
    std::vector<const char*> calls_;  // the names have static lifetime
    std::size_t fallible_ = 0;
    std::size_t failed_ = 0;
};

// The slow path of the three functions below: asks the current machine's hook.
DWORD enterCurrentGate(const char* function, bool canFail);
bool enterCurrentGateOrSetLastError(const char* function);

// For functions that report through the last error: true when the plan fails this call; the last error is
// then set.
inline bool denied(const char* function) {
    return Gate::armed.load(std::memory_order_relaxed) != 0 && enterCurrentGateOrSetLastError(function);
}

// For functions that return the error code itself (the registry's): 0 to continue.
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
