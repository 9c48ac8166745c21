#include "failing_memory.h"

#include <execinfo.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <utility>

namespace memory {
namespace {

thread_local bool counting = false;
thread_local std::size_t count = 0;
thread_local std::size_t failing = 0;
thread_local std::vector<Calls>* kept = nullptr;
std::atomic<std::ptrdiff_t> blocks = 0;

void keepCalls() {
    const Unfailing unfailing;
    Calls& calls = kept->emplace_back(256);
    calls.resize(static_cast<std::size_t>(backtrace(calls.data(), static_cast<int>(calls.size()))));
}

bool fails() {
    if (counting && kept != nullptr) keepCalls();
    return counting && count++ == failing;
}

void* noted(void* block) {
    if (block != nullptr) ++blocks;
    return block;
}

}  // namespace

void failAfter(std::size_t skip) {
    count = 0;
    failing = skip;
    counting = true;
}

bool stop() {
    counting = false;
    return count > failing;
}

std::vector<Calls> callsOf(const std::function<void()>& run) {
    std::vector<Calls> calls;
    kept = &calls;
    run();
    kept = nullptr;
    return calls;
}

std::ptrdiff_t held() {
    return blocks;
}

Unfailing::Unfailing() : before_(std::exchange(counting, false)) {}

Unfailing::~Unfailing() {
    counting = before_;
}

}  // namespace memory

// The linker leads the calls of the libraries in this program here (--wrap).
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) {
    return memory::fails() ? nullptr : memory::noted(__real_malloc(size));
}
void* __wrap_realloc(void* block, std::size_t size) {
    if (memory::fails()) return nullptr;
    void* const moved = __real_realloc(block, size);
    return block == nullptr ? memory::noted(moved) : moved;
}
void __wrap_free(void* block) {
    if (block != nullptr) --memory::blocks;
    __real_free(block);
}
}

void* operator new(std::size_t size) {
    void* const block = __wrap_malloc(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
// The sanitizers' own would not come here.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return __wrap_malloc(size);
}
void operator delete(void* block) noexcept {
    __wrap_free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    __wrap_free(block);
}
