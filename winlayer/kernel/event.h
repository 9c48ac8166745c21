#pragma once
#include <condition_variable>
#include <mutex>

#include "winlayer/base/handle_table.h"

namespace winlayer {

class Clock;

// An event: signalled until it is reset or, if automatic, until it has ended one wait.
class EventObject final : public KernelObject {
public:
    EventObject(bool manualReset, bool signalled) : manualReset_(manualReset), signalled_(signalled) {}

    void set();
    void reset();
    // Releases the threads waiting at this moment (one, if automatic) and leaves the event not signalled.
    void pulse();
    // Whether the event was signalled within the time; INFINITE waits without limit. While the machine's
    // clock is stopped, a wait that would block advances the clock by its milliseconds and ends unsignalled
    // at once; one without a limit really waits.
    bool wait(DWORD milliseconds, Clock& clock);

private:
    bool take();

    const bool manualReset_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool signalled_;
    unsigned waiting_ = 0;
    unsigned released_ = 0;    // waits of an automatic event released by a pulse and not yet ended
    unsigned generation_ = 0;  // pulses of a manual event
};

}  // namespace winlayer
