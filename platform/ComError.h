// A failed call of a component as an exception: its result, its error object, the system's text.
//
// Where the compiler brings <comdef.h> with a class of this name that behaves the same, it is that
// one. An object belongs to one thread at a time; copies share the error object.
#pragma once

#include "platform/Com.h"
#include "platform/SystemText.h"

#if defined(_MSC_VER)

#include <comdef.h>

#elif !defined(_INC_COMDEF)

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

// One type in every module that throws or catches it.
#if defined(_WIN32)
class _com_error {
#else
class MORVEX_SYMBOL_EXPORT _com_error {
#endif
public:
    // Keeps `error` (may be null), with a reference of its own if `addReference` says so, else with
    // the caller's.
    explicit _com_error(
        HRESULT result, IErrorInfo * error = nullptr, bool addReference = false) noexcept
        : m_Result(result), m_Error(error) {
        if (addReference) Hold();
    }

    _com_error(_com_error const & other) noexcept
        : m_Result(other.m_Result), m_Error(other.m_Error) {
        Hold();
    }

    _com_error & operator=(_com_error const & other) noexcept {
        if (this == &other) return *this;
        Clear();
        m_Result = other.m_Result;
        m_Error = other.m_Error;
        m_Message = nullptr;
        Hold();
        return *this;
    }

    virtual ~_com_error() { Clear(); }

    HRESULT Error() const noexcept { return m_Result; }

    // With a reference for the caller; null when there is none.
    IErrorInfo * ErrorInfo() const noexcept {
        Hold();
        return m_Error;
    }

    // The system's text of the result without its line end, made at the first call; else
    // "IDispatch error #%d" or "Unknown error 0x%0lX". Null when there is no memory for it. Valid
    // as long as the object.
    char const * ErrorMessage() const noexcept {
        if (m_Message == nullptr) m_Message = SystemMessage();
        if (m_Message == nullptr) m_Message = NumberMessage();
        return m_Message;
    }

private:
    static constexpr std::uint32_t FirstOwn = 0x80040200;
    static constexpr std::uint32_t BehindOwn = 0x80050000;

    std::uint32_t Code() const noexcept { return static_cast<std::uint32_t>(m_Result); }

    char * SystemMessage() const noexcept {
        constexpr DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM
                                | FORMAT_MESSAGE_IGNORE_INSERTS;
        constexpr DWORD userDefault = 0x400;
        char * text = nullptr;
        ::FormatMessageA(
            flags, nullptr, Code(), userDefault, reinterpret_cast<char *>(&text), 0, nullptr);
        if (text != nullptr) DropLineEnd(text);
        return text;
    }

    static void DropLineEnd(char * text) noexcept {
        std::size_t const length = std::strlen(text);
        if (length == 0 || text[length - 1] != '\n') return;
        text[length - 1] = '\0';
        if (length >= 2 && text[length - 2] == '\r') text[length - 2] = '\0';
    }

    char * NumberMessage() const noexcept {
        constexpr std::size_t size = 32;
        char * const text = static_cast<char *>(::LocalAlloc(LMEM_FIXED, size));
        if (text == nullptr) return nullptr;
        std::uint32_t const low = Code() & 0xFFFF;
        bool const own = Code() >= FirstOwn && Code() < BehindOwn && low != (FirstOwn & 0xFFFF);
        std::snprintf(
            text, size, own ? "IDispatch error #%d" : "Unknown error 0x%0X",
            own ? low - (FirstOwn & 0xFFFF) : Code());
        return text;
    }

    void Hold() const noexcept {
        if (m_Error != nullptr) m_Error->AddRef();
    }

    void Clear() noexcept {
        if (m_Error != nullptr) m_Error->Release();
        if (m_Message != nullptr) ::LocalFree(m_Message);
    }

    HRESULT m_Result;
    IErrorInfo * m_Error;
    mutable char * m_Message = nullptr;
};

#endif
