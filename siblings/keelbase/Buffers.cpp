// Memory: the allocator, the byte buffer and each thread's buffer for formatted texts.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "siblings/Keelbase.h"
#include "siblings/keelbase/FormatBuffer.h"

namespace {

// No request is for nothing: every one has an address of its own.
void * Allocate(std::size_t size) {
    void * const memory = std::malloc(std::max<std::size_t>(size, 1));
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

// A thread's buffer needs no destructor of its own: a text that is formatted when the thread's
// other variables are gone gets a new buffer, which then stays for the rest of the process.
thread_local constinit keelbase::FormatBuffer t_Buffer{nullptr, 0};
thread_local constinit bool t_ThreadEnds = false;

struct ThreadBufferRelease {
    ~ThreadBufferRelease() {
        std::free(t_Buffer.data);
        t_Buffer = {nullptr, 0};
        t_ThreadEnds = true;
    }
};

void ReleaseBufferAtThreadEnd() { static thread_local ThreadBufferRelease release; }

void GrowThreadBuffer(std::size_t size) {
    constexpr std::size_t smallest = 512;
    if (!t_ThreadEnds) ReleaseBufferAtThreadEnd();
    std::size_t const grown = std::max({size, smallest, t_Buffer.size + t_Buffer.size / 2});
    void * const data = Allocate(grown);
    std::free(t_Buffer.data);
    t_Buffer = {data, grown};
}

} // namespace

CSimpleBuffer::~CSimpleBuffer() { std::free(m_Data); }

void * CSimpleBuffer::Get() { return m_Data; }

void * CSimpleBuffer::Get(std::size_t size) {
    if (m_Data == nullptr || m_Size < size) {
        void * const data = Allocate(size);
        std::free(m_Data);
        m_Data = data;
        m_Size = size;
    }
    return m_Data;
}

void * CMemWrapper::AllocateMemory(std::size_t size, bool zeroed) {
    if (!zeroed) return Allocate(size);
    void * const memory = std::calloc(std::max<std::size_t>(size, 1), 1);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void CMemWrapper::ReleaseMemory(void * const memory) { std::free(memory); }

void * GetFormatBuffer(std::size_t size) {
    if (t_Buffer.data == nullptr || t_Buffer.size < size) GrowThreadBuffer(size);
    return t_Buffer.data;
}

keelbase::FormatBuffer keelbase::CurrentFormatBuffer() { return t_Buffer; }
