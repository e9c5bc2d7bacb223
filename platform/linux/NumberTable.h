// Objects under numbers that are handed out as opaque handles.
//
// A number is never given out twice, so a stale handle is unknown and is never followed. A found
// object lives for as long as the finder holds it, even when another thread takes it out meanwhile.
// Every operation may be called from any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>

template <typename Object>
class NumberTable {
public:
    // Numbers rise from behind `start` in steps of `step`.
    NumberTable(std::uintptr_t start, std::uintptr_t step) : m_Step(step), m_Last(start) {}

    std::uintptr_t Add(std::shared_ptr<Object> object) {
        std::scoped_lock const lock(m_Mutex);
        m_Last += m_Step;
        m_Objects.emplace(m_Last, std::move(object));
        return m_Last;
    }

    // Null: unknown.
    std::shared_ptr<Object> Find(std::uintptr_t number) const {
        std::scoped_lock const lock(m_Mutex);
        auto const found = m_Objects.find(number);
        return found == m_Objects.end() ? nullptr : found->second;
    }

    // Takes the object out and hands it over, so that it is freed outside the lock. Null: unknown.
    std::shared_ptr<Object> Remove(std::uintptr_t number) {
        std::scoped_lock const lock(m_Mutex);
        auto const node = m_Objects.extract(number);
        return node ? node.mapped() : nullptr;
    }

private:
    std::uintptr_t const m_Step;
    mutable std::mutex m_Mutex;
    std::unordered_map<std::uintptr_t, std::shared_ptr<Object>> m_Objects;
    std::uintptr_t m_Last;
};
