// A small value that one thread sets and another reads, in an object that can still be copied.
//
// It has the size of the plain value and orders nothing else: who needs more than the value itself
// takes a lock.
#pragma once

#include <atomic>

template <typename Value>
class SharedValue {
public:
    SharedValue(Value value) : m_Value(value) { static_assert(sizeof(*this) == sizeof(Value)); }
    SharedValue(SharedValue const & other) : m_Value(other.Get()) {}

    SharedValue & operator=(SharedValue const & other) { return *this = other.Get(); }
    SharedValue & operator=(Value value) {
        m_Value.store(value, std::memory_order_relaxed);
        return *this;
    }

    operator Value() const { return Get(); }

private:
    Value Get() const { return m_Value.load(std::memory_order_relaxed); }

    std::atomic<Value> m_Value;
};
