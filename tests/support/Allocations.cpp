// The program's own operator new and delete, which report to the watch.
#include "support/Allocations.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

namespace {

// Of fixed size: the books are kept inside operator new, which must not call itself.
struct Books {
    std::array<void *, 4096> allocated;
    std::array<void *, 4096> released;
    std::size_t allocations;
    std::size_t releases;
    std::size_t granted;
    bool watching;
};

thread_local constinit Books books{};

void NoteAllocation(void * block) {
    if (!books.watching) return;
    if (books.allocations == books.allocated.size()) std::abort();
    books.allocated[books.allocations++] = block;
}

void NoteRelease(void * block) {
    if (!books.watching || block == nullptr) return;
    if (books.releases == books.released.size()) std::abort();
    books.released[books.releases++] = block;
}

bool RunsOut() { return books.watching && books.allocations >= books.granted; }

} // namespace

void * operator new(std::size_t size) {
    void * const block = RunsOut() ? nullptr : std::malloc(std::max<std::size_t>(size, 1));
    if (block == nullptr) throw std::bad_alloc();
    NoteAllocation(block);
    return block;
}

void operator delete(void * block) noexcept {
    NoteRelease(block);
    std::free(block);
}

void operator delete(void * block, std::size_t) noexcept { operator delete(block); }

AllocationWatch::AllocationWatch(std::optional<std::size_t> granted) {
    books.allocations = 0;
    books.releases = 0;
    books.granted = granted.value_or(books.allocated.size());
    books.watching = true;
}

AllocationWatch::~AllocationWatch() { End(); }

void AllocationWatch::End() { books.watching = false; }

std::size_t AllocationWatch::Allocations() const { return books.allocations; }

std::size_t AllocationWatch::Leaks() const {
    auto const begin = books.allocated.begin();
    auto const end = begin + static_cast<std::ptrdiff_t>(books.allocations);
    auto const lastRelease = books.released.begin() + static_cast<std::ptrdiff_t>(books.releases);
    return static_cast<std::size_t>(std::count_if(begin, end, [&](void * block) {
        auto const allocations = std::count(begin, end, block);
        return std::count(books.released.begin(), lastRelease, block) < allocations;
    }));
}

std::vector<void const *> AllocationWatch::Released() const {
    auto const releases = static_cast<std::ptrdiff_t>(books.releases);
    return std::vector<void const *>(books.released.begin(), books.released.begin() + releases);
}
