#include "winlayer/peer.h"

#include "winlayer/machine.h"

namespace winlayer {

// While the machine's clock is stopped, time passes only by what is done on it: a wait for a timer moves it
// there at once.
void Peer::wait(std::optional<std::int64_t> until) {
    Machine& machine = Machine::current();
    if (until && machine.clock.stopped()) {
        machine.clock.advance(std::max<std::int64_t>(0, *until - machine.clock.now()));
        return;
    }
    machine.messages.wait(GetCurrentThreadId(), until);
}

}  // namespace winlayer
