// The program's allocator, replaced by one that counts.
#include "log/Requests.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

std::atomic<bool> counting = false;
std::atomic<int> requests = 0;

void Count() {
    if (counting) ++requests;
}

} // namespace

int RequestsDuring(std::function<void()> const & action) {
    requests = 0;
    counting = true;
    action();
    counting = false;
    return requests;
}

extern "C" {
void * __real_malloc(std::size_t size);
void * __real_calloc(std::size_t count, std::size_t size);
void * __real_realloc(void * memory, std::size_t size);

void * __wrap_malloc(std::size_t size) {
    Count();
    return __real_malloc(size);
}
void * __wrap_calloc(std::size_t count, std::size_t size) {
    Count();
    return __real_calloc(count, size);
}
void * __wrap_realloc(void * memory, std::size_t size) {
    Count();
    return __real_realloc(memory, size);
}
}

void * operator new(std::size_t size) {
    Count();
    void * const memory = __real_malloc(size != 0 ? size : 1);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
void * operator new[](std::size_t size) { return operator new(size); }
void operator delete(void * memory) noexcept { std::free(memory); }
void operator delete[](void * memory) noexcept { std::free(memory); }
void operator delete(void * memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void * memory, std::size_t) noexcept { std::free(memory); }
