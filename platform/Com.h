// What every component speaks: counted interfaces, texts and values that cross them, a thread's
// bracket around their use, and the error object behind a failed call.
//
// An interface pointer that an operation hands out carries a reference of the caller's, who gives
// it back with Release. A text (BSTR) belongs to whoever received it and goes to SysFreeString.
// Counts may change on any thread; what else an object allows, its own header says.
//
// Here without a counterpart on Windows: InterfaceId, the identifier of an interface, known to the
// compiler.
#pragma once

#include "platform/BaseTypes.h"

#if defined(_WIN32)

#include <objbase.h>
#include <ole2.h>
#include <oleauto.h>

#else

using IID = GUID;
using CLSID = GUID;
using VARTYPE = unsigned short;
using VARIANT_BOOL = short;

// Wide characters behind a length in bytes, which lies in the four bytes before the first; a NUL
// follows the last. Null reads as an empty text.
using BSTR = wchar_t *;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154);
inline constexpr HRESULT CO_E_NOTINITIALIZED = static_cast<HRESULT>(0x800401F0);
inline constexpr HRESULT RPC_E_CHANGED_MODE = static_cast<HRESULT>(0x80010106);
inline constexpr HRESULT E_ACCESSDENIED = static_cast<HRESULT>(0x80070005);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057);

inline constexpr bool SUCCEEDED(HRESULT result) { return result >= 0; }
inline constexpr bool FAILED(HRESULT result) { return result < 0; }

inline constexpr DWORD COINIT_MULTITHREADED = 0x0;
inline constexpr DWORD COINIT_APARTMENTTHREADED = 0x2;
inline constexpr DWORD CLSCTX_ALL = 23;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

inline constexpr VARTYPE VT_EMPTY = 0;
inline constexpr VARTYPE VT_NULL = 1;
inline constexpr VARTYPE VT_BSTR = 8;
inline constexpr VARTYPE VT_DISPATCH = 9;

inline constexpr bool operator==(GUID const & a, GUID const & b) {
    if (a.Data1 != b.Data1 || a.Data2 != b.Data2 || a.Data3 != b.Data3) return false;
    for (int i = 0; i != 8; ++i)
        if (a.Data4[i] != b.Data4[i]) return false;
    return true;
}

// Never deleted through this: the last Release ends the object.
struct IUnknown {
    // The same object under another interface, with a reference; null and E_NOINTERFACE when it is
    // not of that kind.
    virtual HRESULT QueryInterface(IID const & id, void ** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;

protected:
    ~IUnknown() = default;
};

// What a value can carry. There is no scripting off Windows.
struct IDispatch : IUnknown {
protected:
    ~IDispatch() = default;
};

struct VARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        VARIANT_BOOL boolVal;
        LONG lVal;
        BSTR bstrVal;
        IDispatch * pdispVal;
        void * pair[2]; // the published size
    };
};
static_assert(sizeof(VARIANT) == 24);

// Why a call has failed, in words.
struct IErrorInfo : IUnknown {
    virtual HRESULT GetDescription(BSTR * text) = 0;

protected:
    ~IErrorInfo() = default;
};

// Whether the object leaves an IErrorInfo behind when a method of this interface fails: S_OK, or
// S_FALSE.
struct ISupportErrorInfo : IUnknown {
    virtual HRESULT InterfaceSupportsErrorInfo(IID const & id) = 0;

protected:
    ~ISupportErrorInfo() = default;
};

// Starts COM on the calling thread: S_OK; S_FALSE when it had started already, in which case too
// CoUninitialize is due; RPC_E_CHANGED_MODE when it had started in the other mode. `reserved` is
// null. The mode has no further effect: there are no apartments.
MORVEX_PLATFORM_API HRESULT CoInitializeEx(void * reserved, DWORD mode);
MORVEX_PLATFORM_API void CoUninitialize();

// A new object of the class, under the interface `id`. `object` is null on failure:
// CO_E_NOTINITIALIZED when neither this thread nor, in the multi-threaded mode, any other has
// started COM; REGDB_E_CLASSNOTREG; E_NOINTERFACE. `outer` is null. The context has no effect.
MORVEX_PLATFORM_API HRESULT CoCreateInstance(
    CLSID const & clsid, IUnknown * outer, DWORD context, IID const & id, void ** object);

// S_OK: an object is in the running state from the start.
MORVEX_PLATFORM_API HRESULT OleRun(IUnknown * object);

// The calling thread's error object, which is taken away by the reader: S_OK, or S_FALSE and null
// when there is none. `reserved` is 0.
MORVEX_PLATFORM_API HRESULT GetErrorInfo(ULONG reserved, IErrorInfo ** error);
MORVEX_PLATFORM_API HRESULT SetErrorInfo(ULONG reserved, IErrorInfo * error);

// A copy of the text up to its NUL. Null for null, and when there is not so much memory.
MORVEX_PLATFORM_API BSTR SysAllocString(wchar_t const * text);
// A copy of so many characters, NULs among them; a null text leaves them unset.
MORVEX_PLATFORM_API BSTR SysAllocStringLen(wchar_t const * text, UINT length);
MORVEX_PLATFORM_API void SysFreeString(BSTR text);
// In characters.
MORVEX_PLATFORM_API UINT SysStringLen(BSTR text);

MORVEX_PLATFORM_API void VariantInit(VARIANT * value);
// Gives back what the value holds and leaves it VT_EMPTY.
MORVEX_PLATFORM_API HRESULT VariantClear(VARIANT * value);

#endif

template <typename Interface>
inline constexpr GUID InterfaceId = Interface::HasNoIdentifier;

#define MORVEX_INTERFACE_ID(Interface, a, b, c, d0, d1, d2, d3, d4, d5, d6, d7)                    \
    template <>                                                                                    \
    inline constexpr GUID InterfaceId<Interface> = {a, b, c, {d0, d1, d2, d3, d4, d5, d6, d7}};

MORVEX_INTERFACE_ID(IUnknown, 0x00000000, 0x0000, 0x0000, 0xC0, 0, 0, 0, 0, 0, 0, 0x46)
MORVEX_INTERFACE_ID(IDispatch, 0x00020400, 0x0000, 0x0000, 0xC0, 0, 0, 0, 0, 0, 0, 0x46)
MORVEX_INTERFACE_ID(
    IErrorInfo, 0x1CF2B120, 0x547D, 0x101B, 0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19)
MORVEX_INTERFACE_ID(
    ISupportErrorInfo, 0xDF0B3D60, 0x548F, 0x101B, 0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19)
