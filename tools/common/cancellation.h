#pragma once
#include <functional>

#include "winlayer/machine.h"

namespace tools {

// Turns Control-C (and a request to terminate) into a cancel of the running archive operation. A cancel is
// remembered; the program then ends by itself. One object per program.
class Cancellation {
public:
    Cancellation();
    Cancellation(const Cancellation&) = delete;
    Cancellation& operator=(const Cancellation&) = delete;

    bool requested() const;
    // Throws Problem(cancelled) when a cancel came.
    void check() const;

    // Keeps a handler in force while it lives. After a cancel it runs once, when the libraries next look at
    // the current machine's message queue, as they do before every test for a cancel.
    class Scope {
    public:
        Scope(const Cancellation& cancellation, std::function<void()> handler);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        winlayer::MessageQueues& messages_;
    };
};

}  // namespace tools
