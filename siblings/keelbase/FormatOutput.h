// Where a text under construction grows: in memory that the caller lends, and in memory of its own
// once the text does not fit.
//
// Writers hand the place behind the text from one to the next; only that place tells how long the
// text is. The lent memory must outlive the object.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>

namespace keelbase {

template <typename Character>
class FormatOutput {
public:
    FormatOutput(Character * memory, std::size_t size) : m_Begin(memory), m_End(memory + size) {}
    FormatOutput(FormatOutput const &) = delete;
    FormatOutput & operator=(FormatOutput const &) = delete;

    Character * Begin() const { return m_Begin; }

    // The text stands in the memory that was lent.
    bool Fits() const { return m_Heap == nullptr; }

    // Returns the place behind the text with memory for `count` characters: `at`, unless the text
    // had to move.
    Character * Room(Character * at, std::size_t count) {
        return static_cast<std::size_t>(m_End - at) >= count ? at : Grow(at, count);
    }

private:
    Character * Grow(Character * at, std::size_t count) {
        auto const length = static_cast<std::size_t>(at - m_Begin);
        std::size_t const size = std::max(length + count, length + length / 2 + 1024);
        auto heap = std::make_unique_for_overwrite<Character[]>(size);
        std::copy_n(m_Begin, length, heap.get());
        m_Heap = std::move(heap);
        m_Begin = m_Heap.get();
        m_End = m_Begin + size;
        return m_Begin + length;
    }

    Character * m_Begin;
    Character * m_End;
    std::unique_ptr<Character[]> m_Heap;
};

} // namespace keelbase
