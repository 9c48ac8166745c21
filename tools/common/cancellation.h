#pragma once
#include <functional>

namespace tools {

// Turns Control-C (and a request to terminate) into a cancel of the running archive operation. A cancel is
// remembered, and the program then ends on its own. One object per program.
class Cancellation {
public:
    Cancellation();
    Cancellation(const Cancellation&) = delete;
    Cancellation& operator=(const Cancellation&) = delete;

    bool requested() const;
    // Throws Problem(cancelled) after a cancel.
    void check() const;

    // Installs a handler during its lifetime, one at a time. After a cancel the handler runs, perhaps
    // repeatedly and on another thread, before the libraries next check for a cancel.
    class Scope {
    public:
        Scope(const Cancellation& cancellation, std::function<void()> handler);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
    };
};

}  // namespace tools
