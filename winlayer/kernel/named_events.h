#pragma once
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "winlayer/kernel/event.h"

namespace winlayer {

// The events of the machine that were made with a name. A name lasts as long as a handle to its event.
class NamedEvents {
public:
    // The current machine's.
    static NamedEvents& current();

    // The event of this name if there is one (`existed`), otherwise a new one. A null or empty name is none.
    std::shared_ptr<EventObject> open(const char* name, bool& existed,
                                      const std::function<std::shared_ptr<EventObject>()>& make);

private:
    std::mutex mutex_;
    std::map<std::string, std::weak_ptr<EventObject>> events_;
};

}  // namespace winlayer
