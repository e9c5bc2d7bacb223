// Mutexes: an owner and the depth of its takings, and an eventfd that is readable while there is
// none.
#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/Synchronization.h"
#include "platform/linux/Deadline.h"
#include "platform/linux/Handles.h"
#include "platform/linux/Signal.h"

namespace {

class Mutex;

// What a thread owns; at the thread's end the rest is abandoned.
class OwnedMutexes {
public:
    OwnedMutexes() = default;
    OwnedMutexes(OwnedMutexes const &) = delete;
    OwnedMutexes & operator=(OwnedMutexes const &) = delete;
    ~OwnedMutexes();

    void Reserve() { m_Mutexes.reserve(m_Mutexes.size() + 1); }
    void Add(std::shared_ptr<Mutex> mutex) { m_Mutexes.push_back(std::move(mutex)); }
    void Remove(Mutex const * mutex) {
        std::erase_if(m_Mutexes, [mutex](auto const & owned) { return owned.get() == mutex; });
    }

private:
    std::vector<std::shared_ptr<Mutex>> m_Mutexes;
};

OwnedMutexes & Owned() {
    thread_local OwnedMutexes owned;
    return owned;
}

class Mutex : public HandleObject, public std::enable_shared_from_this<Mutex> {
public:
    Mutex() {
        if (m_Free.IsOpen()) m_Free.Set();
    }

    bool IsOpen() const { return m_Free.IsOpen(); }

    DWORD Wait(DWORD milliseconds) override {
        Deadline const deadline(milliseconds);
        pollfd readable{m_Free.Descriptor(), POLLIN, 0};
        DWORD result = WAIT_TIMEOUT;
        while (!Take(result) && deadline.Poll(&readable, 1)) {
        }
        return result;
    }

    // False: the calling thread does not own it.
    bool Release() {
        // The last holder of an object that was closed meanwhile must not end it under its lock.
        auto const self = shared_from_this();
        std::scoped_lock const lock(m_Mutex);
        if (m_Depth == 0 || m_Owner != GetCurrentThreadId()) return false;
        if (--m_Depth == 0) {
            Owned().Remove(this);
            m_Free.Set();
        }
        return true;
    }

    void Abandon() {
        std::scoped_lock const lock(m_Mutex);
        m_Depth = 0;
        m_Abandoned = true;
        m_Free.Set();
    }

private:
    bool Take(DWORD & result) {
        OwnedMutexes & owned = Owned();
        owned.Reserve();
        std::scoped_lock const lock(m_Mutex);
        DWORD const thread = GetCurrentThreadId();
        if (m_Depth != 0 && m_Owner != thread) return false;
        if (m_Depth++ == 0) {
            m_Owner = thread;
            m_Free.Reset();
            owned.Add(shared_from_this());
        }
        result = std::exchange(m_Abandoned, false) ? WAIT_ABANDONED : WAIT_OBJECT_0;
        return true;
    }

    std::mutex m_Mutex;
    Signal m_Free;
    DWORD m_Owner = 0;
    unsigned m_Depth = 0;
    bool m_Abandoned = false;
};

OwnedMutexes::~OwnedMutexes() {
    for (auto const & mutex : m_Mutexes)
        mutex->Abandon();
}

HANDLE Refuse(DWORD error) {
    SetLastError(error);
    return nullptr;
}

} // namespace

HANDLE CreateMutexA(_SECURITY_ATTRIBUTES *, BOOL initiallyOwned, char const * name) {
    if (name != nullptr) return Refuse(ERROR_INVALID_PARAMETER);
    auto mutex = std::make_shared<Mutex>();
    if (!mutex->IsOpen()) return Refuse(ERROR_NOT_ENOUGH_MEMORY);
    if (initiallyOwned != FALSE) mutex->Wait(0);
    return AddHandle(std::move(mutex));
}

BOOL ReleaseMutex(HANDLE handle) {
    auto const mutex = FindHandleAs<Mutex>(handle);
    if (!mutex) return FALSE;
    if (mutex->Release()) return TRUE;
    SetLastError(ERROR_NOT_OWNER);
    return FALSE;
}
