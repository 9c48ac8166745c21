#pragma once
#include <condition_variable>
#include <mutex>

#include "winlayer/base/handle_table.h"

namespace winlayer {

class Clock;

// An event: signalled until someone resets it, or, an automatic one, until one wait has seen it.
class EventObject final : public KernelObject {
public:
    EventObject(bool manualReset, bool signalled) : manualReset_(manualReset), signalled_(signalled) {}

    void set();
    void reset();
    // Lets go whoever waits at this moment (an automatic event: one of them) and leaves it not signalled.
    void pulse();
    // Whether the event was signalled within the time; INFINITE waits for ever. While the machine's clock is
    // stopped time passes only by what is done on it, so a wait that would last moves the clock forward by
    // its milliseconds at once and ends unsignalled; one without a limit really waits.
    bool wait(DWORD milliseconds, Clock& clock);

private:
    bool take();

    const bool manualReset_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool signalled_;
    unsigned waiting_ = 0;
    unsigned released_ = 0;    // waits of an automatic event that a pulse let go and that have not ended yet
    unsigned generation_ = 0;  // pulses of a manual event
};

}  // namespace winlayer
