#pragma once
#include <functional>
#include <mutex>
#include <thread>

namespace tools {

// Turns Control-C (and a request to terminate) into a cancel of the running archive operation. The first one
// runs the handler of the moment on a thread of its own and is remembered; the program then ends by itself.
// One object per program, made before any other thread.
class Cancellation {
public:
    Cancellation();
    ~Cancellation();
    Cancellation(const Cancellation&) = delete;
    Cancellation& operator=(const Cancellation&) = delete;

    bool requested() const;
    // Throws Problem(cancelled) when a cancel came.
    void check() const;

    // Keeps a handler in force while it lives. A cancel that came before runs it at once.
    class Scope {
    public:
        Scope(Cancellation& cancellation, std::function<void()> handler);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        Cancellation& cancellation_;
    };

private:
    void wait();

    mutable std::mutex mutex_;
    std::function<void()> handler_;
    bool requested_ = false;
    bool ending_ = false;
    std::thread waiter_;
};

}  // namespace tools
