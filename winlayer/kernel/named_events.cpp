#include "winlayer/kernel/named_events.h"

namespace winlayer {

std::shared_ptr<EventObject> NamedEvents::open(const char* name, bool& existed,
                                               const std::function<std::shared_ptr<EventObject>()>& make) {
    if (name == nullptr || *name == '\0') {
        existed = false;
        return make();
    }
    const std::lock_guard lock(mutex_);
    std::erase_if(events_, [](const auto& entry) { return entry.second.expired(); });
    std::weak_ptr<EventObject>& known = events_[name];
    auto event = known.lock();
    existed = event != nullptr;
    if (!existed) {
        event = make();
        known = event;
    }
    return event;
}

}  // namespace winlayer
