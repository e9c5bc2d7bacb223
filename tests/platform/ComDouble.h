// The base of doubles of components, on Windows and off it: a double has the methods that are
// called, and the rest of the interface is there where the system declares it.
//
// Doubles count how many of them live, so that a test sees every reference that is not given back.
#pragma once

#include "platform/Xml.h"

// Nobody deletes through an interface; the system's have public destructors all the same. For the
// rest of the source file, in which doubles are made.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

#if defined(_WIN32)
#include "tests/platform/windows/WholeInterfaces.h"
#else
template <typename Interface>
struct WholeOf {
    using Type = Interface;
};
#endif

inline int g_LiveDoubles = 0;

// Made with one reference, which belongs to the maker.
template <typename Main, typename... Answered>
class ComDouble : public WholeOf<Main>::Type {
public:
    ComDouble() { ++g_LiveDoubles; }
    ComDouble(ComDouble const &) = delete;
    ComDouble & operator=(ComDouble const &) = delete;
    virtual ~ComDouble() { --g_LiveDoubles; }

    HRESULT WINAPI QueryInterface(IID const & id, void ** object) override {
        bool const is = id == InterfaceId<Main> || ((id == InterfaceId<Answered>) || ...)
                        || id == InterfaceId<IUnknown>;
        *object = is ? static_cast<Main *>(this) : QueryOther(id);
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG WINAPI AddRef() override { return ++m_Count; }
    ULONG WINAPI Release() override {
        ULONG const left = --m_Count;
        if (left == 0) delete this;
        return left;
    }

    ULONG References() const { return m_Count; }

protected:
    virtual void * QueryOther(IID const &) { return nullptr; }

private:
    ULONG m_Count = 1;
};
