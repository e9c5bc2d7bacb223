// What every component is made of: the count of its references, the interfaces that it answers to,
// and methods that turn a lack of memory into a result.
#pragma once

#include <atomic>
#include <cstddef>
#include <new>

#include "platform/Com.h"

// An object of the interface `Main`, which is Answered... as well: each of them a base of Main.
// Made with one reference, which belongs to the maker; ends with the last.
template <typename Main, typename... Answered>
class ComObject : public Main {
public:
    ComObject() = default;
    ComObject(ComObject const &) = delete;
    ComObject & operator=(ComObject const &) = delete;

    HRESULT QueryInterface(IID const & id, void ** object) final {
        if (object == nullptr) return E_POINTER;
        bool const is = id == InterfaceId<Main> || ((id == InterfaceId<Answered>) || ...)
                        || id == InterfaceId<IUnknown>;
        *object = is ? static_cast<Main *>(this) : QueryOther(id);
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    ULONG AddRef() final { return m_Count.fetch_add(1, std::memory_order_relaxed) + 1; }

    ULONG Release() final {
        ULONG const left = m_Count.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0) delete this;
        return left;
    }

protected:
    virtual ~ComObject() = default;

    // A further interface of the object, without a reference; null when there is none.
    virtual void * QueryOther(IID const &) { return nullptr; }

private:
    std::atomic<ULONG> m_Count = 1;
};

// Runs the body of a method: its result, or E_OUTOFMEMORY.
template <typename Body>
HRESULT AsMethod(Body const & body) {
    try {
        return body();
    } catch (std::bad_alloc const &) {
        return E_OUTOFMEMORY;
    }
}

// Empties an output; false for a null one.
template <typename Output>
bool Clear(Output ** output) {
    if (output != nullptr) *output = nullptr;
    return output != nullptr;
}
