#pragma once
#include <list>

#include "winlayer/diskette/directory.h"

namespace winlayer {

// The open files of a volume, with the access and sharing of each open.
class OpenFiles {
public:
    struct Open {
        EntryPlace place;
        DWORD access = 0;
        DWORD sharing = 0;
    };
    using Ticket = std::list<Open>::iterator;

    // ERROR_SHARING_VIOLATION if an earlier open does not share this access, or this one not the earlier's.
    DWORD check(const Open& wanted) const;
    Ticket enter(const Open& open) { return open_.insert(open_.end(), open); }
    void leave(Ticket ticket) { open_.erase(ticket); }
    bool isOpen(const EntryPlace& place) const;

private:
    std::list<Open> open_;
};

}  // namespace winlayer
