#include "winlayer/base/gate.h"

namespace winlayer {

Gate::~Gate() {
    disarm();
}

void Gate::arm() {
    if (!armed_) {
        armed_ = true;
        armed.fetch_add(1, std::memory_order_relaxed);
    }
}

void Gate::disarm() {
    if (armed_) {
        armed_ = false;
        armed.fetch_sub(1, std::memory_order_relaxed);
    }
}

void Gate::failCall(std::size_t k, DWORD error) {
    const std::lock_guard lock(mutex_);
    countdown_ = k;
    countdownError_ = error;
    arm();
}

void Gate::failFunction(std::string function, DWORD error, std::size_t skip, std::size_t count) {
    const std::lock_guard lock(mutex_);
    faults_.push_back({std::move(function), error, skip, count});
    arm();
}

void Gate::startRecording() {
    const std::lock_guard lock(mutex_);
    recording_ = true;
    calls_.clear();
    fallible_ = 0;
    arm();
}

void Gate::reset() {
    const std::lock_guard lock(mutex_);
    recording_ = false;
    countdown_ = always;
    faults_.clear();
    calls_.clear();
    fallible_ = 0;
    failed_ = 0;
    disarm();
}

std::vector<std::string> Gate::calls() const {
    const std::lock_guard lock(mutex_);
    return {calls_.begin(), calls_.end()};
}

std::size_t Gate::fallibleCalls() const {
    const std::lock_guard lock(mutex_);
    return fallible_;
}

std::size_t Gate::failedCalls() const {
    const std::lock_guard lock(mutex_);
    return failed_;
}

DWORD Gate::enter(const char* function, bool canFail) {
    const std::lock_guard lock(mutex_);
    if (recording_) {
        calls_.push_back(function);
        fallible_ += canFail ? 1 : 0;
    }
    const DWORD error = canFail ? plannedError(function) : 0;
    failed_ += error != 0 ? 1 : 0;
    return error;
}

// Each fault counts every call, even one that another fault fails, so that two plans do not shift each other.
DWORD Gate::plannedError(const char* function) {
    DWORD error = 0;
    if (countdown_ != always) {
        if (countdown_ == 0) {
            error = countdownError_;
            countdown_ = always;
        } else {
            --countdown_;
        }
    }
    for (FunctionFault& fault : faults_) {
        if (fault.function != function) {
            continue;
        }
        if (fault.skip > 0) {
            --fault.skip;
        } else if (fault.count > 0) {
            fault.count -= fault.count == always ? 0 : 1;
            error = error != 0 ? error : fault.error;
        }
    }
    return error;
}

DWORD enterCurrentGate(const char* function, bool canFail) {
    return Gate::current().enter(function, canFail);
}

bool enterCurrentGateOrSetLastError(const char* function) {
    const DWORD error = enterCurrentGate(function, true);
    if (error != 0) {
        SetLastError(error);
    }
    return error != 0;
}

}  // namespace winlayer
