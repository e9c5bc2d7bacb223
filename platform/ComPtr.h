// A counted reference to a component: holds the object for as long as it lives, or nothing.
//
// To use an empty one is an error of its own: _com_error with E_POINTER. A reference belongs to one
// thread at a time.
#pragma once

#include <cstddef>
#include <utility>

#include "platform/Com.h"
#include "platform/ComError.h"

template <typename Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) {}

    // Takes a reference of its own; null gives an empty one.
    explicit ComPtr(Interface * object) : m_Object(object) { Hold(); }
    ComPtr(ComPtr const & other) : ComPtr(other.m_Object) {}
    ComPtr(ComPtr && other) noexcept : m_Object(std::exchange(other.m_Object, nullptr)) {}
    ComPtr & operator=(ComPtr other) noexcept {
        std::swap(m_Object, other.m_Object);
        return *this;
    }
    ~ComPtr() { Reset(); }

    // Empty afterwards.
    void Reset() {
        if (Interface * const object = std::exchange(m_Object, nullptr)) object->Release();
    }

    // Where an operation puts an object with a reference for the caller. Empty before.
    Interface ** Receive() {
        Reset();
        return &m_Object;
    }
    void ** ReceiveUntyped() { return reinterpret_cast<void **>(Receive()); }

    // Hands the reference over. Empty afterwards.
    Interface * Detach() { return std::exchange(m_Object, nullptr); }

    // Without a reference; null when empty.
    Interface * Get() const { return m_Object; }
    explicit operator bool() const { return m_Object != nullptr; }

    // Throws _com_error E_POINTER when empty.
    Interface * operator->() const {
        if (m_Object == nullptr) throw _com_error(E_POINTER);
        return m_Object;
    }

private:
    void Hold() {
        if (m_Object != nullptr) m_Object->AddRef();
    }

    Interface * m_Object = nullptr;
};

// The object under another interface. Empty for an empty one and for an object of another kind;
// any other failure throws _com_error.
template <typename Wanted, typename Interface>
ComPtr<Wanted> QueryFor(ComPtr<Interface> const & object) {
    ComPtr<Wanted> wanted;
    if (!object) return wanted;
    HRESULT const result = object->QueryInterface(InterfaceId<Wanted>, wanted.ReceiveUntyped());
    if (SUCCEEDED(result)) return wanted;
    wanted.Detach();
    if (result != E_NOINTERFACE) throw _com_error(result);
    return wanted;
}
