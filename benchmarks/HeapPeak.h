// How much heap a piece of work has at most in use, over all libraries of the program.
//
// Stands in front of the C library's allocator: include it in one source of a program. One
// measurement at a time, of work on one thread.
#pragma once

#include <algorithm>
#include <cstddef>

#include <malloc.h>

inline bool g_MeasuresHeap = false;
inline long long g_HeapInUse = 0;
inline long long g_HeapPeak = 0;

extern "C" {
void * __libc_malloc(std::size_t size);
void * __libc_calloc(std::size_t count, std::size_t size);
void * __libc_realloc(void * block, std::size_t size);
void __libc_free(void * block);

inline void * NoteBlock(void * block, int sign) {
    if (!g_MeasuresHeap || block == nullptr) return block;
    g_HeapInUse += sign * static_cast<long long>(malloc_usable_size(block));
    g_HeapPeak = std::max(g_HeapPeak, g_HeapInUse);
    return block;
}

__attribute__((visibility("default"))) void * malloc(std::size_t size) {
    return NoteBlock(__libc_malloc(size), 1);
}
__attribute__((visibility("default"))) void * calloc(std::size_t count, std::size_t size) {
    return NoteBlock(__libc_calloc(count, size), 1);
}
__attribute__((visibility("default"))) void * realloc(void * block, std::size_t size) {
    return NoteBlock(__libc_realloc(NoteBlock(block, -1), size), 1);
}
__attribute__((visibility("default"))) void free(void * block) {
    __libc_free(NoteBlock(block, -1));
}
}

// In bytes, beyond what was in use before.
template <typename Work>
double HeapPeakOf(Work const & work) {
    g_HeapInUse = g_HeapPeak = 0;
    g_MeasuresHeap = true;
    work();
    g_MeasuresHeap = false;
    return static_cast<double>(g_HeapPeak);
}
