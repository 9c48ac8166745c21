#pragma once
#include <cstddef>
#include <functional>
#include <vector>

// The memory of this program: operator new and what the libraries here take from malloc and realloc are
// counted, and one of these allocations can be made to fail.
namespace memory {

// Fails the allocation that follows `skip` others of this thread.
void failAfter(std::size_t skip);
// Stops failing; true when the allocation came.
bool stop();
// The calls that lead to an allocation, innermost first.
using Calls = std::vector<void*>;
// Those of each allocation that failAfter() counts while `run` runs, in their order.
std::vector<Calls> callsOf(const std::function<void()>& run);
// Blocks that the program holds now.
std::ptrdiff_t held();

// While it lives nothing fails or counts: for what a test itself does within a run.
class Unfailing {
public:
    Unfailing();
    ~Unfailing();
    Unfailing(const Unfailing&) = delete;
    Unfailing& operator=(const Unfailing&) = delete;

private:
    bool before_;
};

}  // namespace memory
