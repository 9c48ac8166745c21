#pragma once
#include <atomic>
#include <cstddef>
#include <map>
#include <mutex>
#include <thread>

#include "winlayer/include/objbase.h"

namespace winlayer {

// The COM state of the process: threads initialised for COM, and the number of objects alive. Thread rule:
// any thread may call every operation.
class Com {
public:
    // The current machine's.
    static Com& current();

    // For the calling thread; true if it was not initialised before.
    bool addUse();
    void removeUse();
    bool isReady() const;

    // Uses not yet removed, over all threads.
    std::size_t uses() const;
    std::size_t objects() const { return objects_; }

    // Creates an object of the system with one reference.
    HRESULT create(REFCLSID classId, REFIID interfaceId, void** object);
    void objectMade() { ++objects_; }
    void objectGone() { --objects_; }

private:
    mutable std::mutex mutex_;
    std::map<std::thread::id, std::size_t> uses_;
    std::atomic<std::size_t> objects_{0};
};

}  // namespace winlayer
