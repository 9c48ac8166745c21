#pragma once
#include <atomic>
#include <cstddef>
#include <map>
#include <mutex>
#include <thread>

#include "winlayer/include/objbase.h"

namespace winlayer {

// What the system's objects need: threads that are ready for them, and a count of those that are alive.
// Thread rule: every operation may be called from any thread.
class Com {
public:
    // The current machine's.
    static Com& current();

    // The calling thread: true when it was not ready before.
    bool addUse();
    void removeUse();
    bool isReady() const;

    // Over all threads; what was not taken back.
    std::size_t uses() const;
    std::size_t objects() const { return objects_; }

    // Makes one of the system's objects with its first reference.
    HRESULT create(REFCLSID classId, REFIID interfaceId, void** object);
    void objectMade() { ++objects_; }
    void objectGone() { --objects_; }

private:
    mutable std::mutex mutex_;
    std::map<std::thread::id, std::size_t> uses_;
    std::atomic<std::size_t> objects_{0};
};

}  // namespace winlayer
