// Critical sections, waitable events and mutexes, sleeping and the high-resolution counter.
//
// A critical section may be entered again by the thread that holds it. What CreateEventA and
// CreateMutexA made is owned by the caller, who gives it to CloseHandle. Every operation may be
// called from any thread.
#pragma once

#include "platform/BaseTypes.h"

#if !defined(_WIN32)

#include <atomic>

struct CRITICAL_SECTION {
    // 0: free, 1: held, 2: held, and others may wait for it.
    std::atomic<int> state;
    // Something that is the holder's alone; null while the section is free.
    std::atomic<void const *> holder;
    // How often the holder has entered besides the first time; belongs to the holder.
    DWORD depth;
};

union LARGE_INTEGER {
    struct {
        DWORD LowPart;
        LONG HighPart;
    } u;
    long long QuadPart;
};

inline constexpr DWORD INFINITE = 0xFFFFFFFF;
inline constexpr DWORD WAIT_OBJECT_0 = 0;
inline constexpr DWORD WAIT_ABANDONED = 0x80;
inline constexpr DWORD WAIT_TIMEOUT = 258;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;

struct _SECURITY_ATTRIBUTES;

MORVEX_PLATFORM_API void InitializeCriticalSection(CRITICAL_SECTION * section);
MORVEX_PLATFORM_API void EnterCriticalSection(CRITICAL_SECTION * section);
MORVEX_PLATFORM_API void LeaveCriticalSection(CRITICAL_SECTION * section);
MORVEX_PLATFORM_API void DeleteCriticalSection(CRITICAL_SECTION * section);

// An event that waiters see until it is reset (manual) or until one of them has seen it. Null with
// ERROR_INVALID_PARAMETER for an event with a name: there is none beyond the process. Null with
// ERROR_NOT_ENOUGH_MEMORY when the process may open no more descriptors.
MORVEX_PLATFORM_API HANDLE CreateEventA(
    _SECURITY_ATTRIBUTES * attributes, BOOL manualReset, BOOL initiallySet, char const * name);

// Zero with ERROR_INVALID_HANDLE: not an event. Setting a set event costs no system call.
MORVEX_PLATFORM_API BOOL SetEvent(HANDLE event);
MORVEX_PLATFORM_API BOOL ResetEvent(HANDLE event);

// A mutex that one thread owns at a time, and may take again. Null with ERROR_INVALID_PARAMETER for
// one with a name, with ERROR_NOT_ENOUGH_MEMORY when the process may open no more descriptors.
MORVEX_PLATFORM_API HANDLE
CreateMutexA(_SECURITY_ATTRIBUTES * attributes, BOOL initiallyOwned, char const * name);

// As CreateMutexA. One with a name is there to be seen, by this process and all others, until its
// last holder closes it or ends in whatever way; it cannot be owned or waited for. Success sets the
// last error: ERROR_ALREADY_EXISTS when the name was held already, else ERROR_SUCCESS.
// A name without a prefix, or with "Local\", is the user's own; "Global\" makes it the machine's.
// Case counts. Null with ERROR_PATH_NOT_FOUND for a name with another '\', with
// ERROR_FILENAME_EXCED_RANGE for one that is too long, with ERROR_INVALID_PARAMETER for an initial
// owner, with ERROR_ACCESS_DENIED and others when the place of the names is out of reach.
MORVEX_PLATFORM_API HANDLE
CreateMutexW(_SECURITY_ATTRIBUTES * attributes, BOOL initiallyOwned, wchar_t const * name);

// Gives up one taking of the mutex. Zero with ERROR_NOT_OWNER on a thread that does not own it,
// with ERROR_INVALID_HANDLE for what is no mutex.
MORVEX_PLATFORM_API BOOL ReleaseMutex(HANDLE mutex);

// Waits up to `milliseconds` (INFINITE: without end): WAIT_OBJECT_0, WAIT_TIMEOUT, or WAIT_FAILED
// with ERROR_INVALID_HANDLE. A mutex is owned from then on; WAIT_ABANDONED says so too, and that
// its owner has ended without giving it up.
MORVEX_PLATFORM_API DWORD WaitForSingleObject(HANDLE object, DWORD milliseconds);

// Zero with ERROR_INVALID_HANDLE: null, closed already or never given out. A thread that waits for
// the object meanwhile goes on waiting.
MORVEX_PLATFORM_API BOOL CloseHandle(HANDLE object);

// 0 milliseconds: lets other threads run.
MORVEX_PLATFORM_API void Sleep(DWORD milliseconds);
MORVEX_PLATFORM_API BOOL QueryPerformanceCounter(LARGE_INTEGER * count);
MORVEX_PLATFORM_API BOOL QueryPerformanceFrequency(LARGE_INTEGER * countsPerSecond);
MORVEX_PLATFORM_API DWORD GetCurrentThreadId();

// The descriptor behind an event, readable while the event is set, for a caller's own event loop.
// The event keeps it: never read from it, never close it. -1: not an event.
MORVEX_PLATFORM_API int MorvexEventDescriptor(HANDLE event);

#endif
