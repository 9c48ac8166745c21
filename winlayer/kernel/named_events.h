#pragma once
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "winlayer/kernel/event.h"

namespace winlayer {

// The machine's named events. A name exists as long as an open handle to its event.
class NamedEvents {
public:
    // The current machine's.
    static NamedEvents& current();

    // The existing event of this name (`existed`) or a new one. A null or empty name makes it unnamed.
    std::shared_ptr<EventObject> open(const char* name, bool& existed,
                                      const std::function<std::shared_ptr<EventObject>()>& make);

private:
    std::mutex mutex_;
    std::map<std::string, std::weak_ptr<EventObject>> events_;
};

}  // namespace winlayer
