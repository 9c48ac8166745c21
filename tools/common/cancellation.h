#pragma once
#include <functional>

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

    // Keeps a handler in force while it lives, one at a time. After a cancel it runs, perhaps more than once
    // and on another thread, before a test for a cancel that the libraries make while they work.
    class Scope {
    public:
        Scope(const Cancellation& cancellation, std::function<void()> handler);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };
};

}  // namespace tools
