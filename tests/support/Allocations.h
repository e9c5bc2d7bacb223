// Watches the program's heap, and makes it run out on demand.
//
// One watch at a time; only the thread that made it is watched.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

class AllocationWatch {
public:
    // `granted` is how many allocations succeed before every further one throws std::bad_alloc.
    explicit AllocationWatch(std::optional<std::size_t> granted = std::nullopt);
    ~AllocationWatch();
    AllocationWatch(AllocationWatch const &) = delete;
    AllocationWatch & operator=(AllocationWatch const &) = delete;

    // Stops watching, so that the test's own memory does not count.
    void End();

    std::size_t Allocations() const;

    // Blocks that were allocated under the watch and not released under it.
    std::size_t Leaks() const;

    // The blocks released under the watch, in order.
    std::vector<void const *> Released() const;
};
