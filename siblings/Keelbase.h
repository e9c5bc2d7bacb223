// What the library requires of Keelbase: strings, buffers, memory, exceptions, conversions between
// UTF-8 and wide text, times as text, printf-style formatting and a lock.
//
// Every operation may be called from any thread; an object belongs to one thread at a time unless
// it says otherwise. Running out of memory leaves as std::bad_alloc.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "platform/Synchronization.h"

#if defined(KEELBASE_BUILD)
#define KEELBASE_API MORVEX_SYMBOL_EXPORT
#else
#define KEELBASE_API MORVEX_SYMBOL_IMPORT
#endif

// An owning narrow string; copies are independent. A null text reads as an empty one.
class KEELBASE_API CSafeString {
public:
    CSafeString(char const * text);
    CSafeString(CSafeString const & other);
    CSafeString & operator=(CSafeString const & other);
    ~CSafeString();

    bool empty() const;

    // Never null; valid as long as the object lives.
    char const * get() const;

private:
    char * m_Text;
};

// An owning byte buffer; empty, and all zero, until storage is asked for.
class KEELBASE_API CSimpleBuffer {
public:
    CSimpleBuffer() = default;
    CSimpleBuffer(CSimpleBuffer const &) = delete;
    CSimpleBuffer & operator=(CSimpleBuffer const &) = delete;
    ~CSimpleBuffer();

    // The storage as it stands, null when none was requested yet.
    void * Get();

    // Storage of at least `size` bytes, aligned for any character; earlier contents may be lost.
    void * Get(std::size_t size);

private:
    void * m_Data = nullptr;
    std::size_t m_Size = 0;
};

// The allocator for memory that crosses module borders.
class KEELBASE_API CMemWrapper {
public:
    // Memory of `size` bytes, zeroed when `zeroed`, for ReleaseMemory. Throws std::bad_alloc.
    static void * AllocateMemory(std::size_t size, bool zeroed);
    static void ReleaseMemory(void * const memory);
};

// A buffer of at least `size` bytes for one formatted text, one for each thread. It is never
// freed by the caller, and its text is gone at the thread's next request.
KEELBASE_API void * GetFormatBuffer(std::size_t size);

// The local time as text, in the format of strftime.
KEELBASE_API CSafeString
TimeToString(char const * format, std::chrono::system_clock::time_point const & time);

using WideText = std::unique_ptr<std::wstring, std::function<void(std::wstring const *)>>;
using NarrowText = std::unique_ptr<std::string, std::function<void(std::string const *)>>;

// Conversion between UTF-8 and the platform's wide text. Each maximal ill-formed part of the
// source becomes one U+FFFD. A null pointer gives a null result.
KEELBASE_API WideText Utf8ToUtf16(char const * text);
KEELBASE_API WideText Utf8ToUtf16(std::string const & text);
KEELBASE_API WideText Utf8ToUtf16(std::string const * text);
KEELBASE_API NarrowText Utf16ToUtf8(wchar_t const * text);
KEELBASE_API NarrowText Utf16ToUtf8(std::wstring const & text);

// An exception with a text; only its kinds are thrown.
class KEELBASE_API CQNException : public std::runtime_error {
public:
    CQNException(CQNException const &) = default;
    CQNException & operator=(CQNException const &) = default;
    ~CQNException() override;

protected:
    explicit CQNException(char const * text);
};

// A run-time failure of the library, the operator's abort among them.
class KEELBASE_API CQNRunTimeException : public CQNException {
public:
    CQNRunTimeException();
    explicit CQNRunTimeException(char const * text);
    CQNRunTimeException(CQNRunTimeException const &) = default;
    CQNRunTimeException & operator=(CQNRunTimeException const &) = default;
    ~CQNRunTimeException() override;
};

// A failure of an XML document.
class KEELBASE_API CQNDOMDocException : public CQNException {
public:
    CQNDOMDocException();
    explicit CQNDOMDocException(char const * text);
    CQNDOMDocException(CQNDOMDocException const &) = default;
    CQNDOMDocException & operator=(CQNDOMDocException const &) = default;
    ~CQNDOMDocException() override;
};

// Formats the text and throws CQNRunTimeException with it; a null or empty format throws one
// without a text.
[[noreturn]] KEELBASE_API void ThrowQNRunTime(char const * format);
[[noreturn]] KEELBASE_API void ThrowQNRunTime(char const * format, std::uint32_t value);

// One value behind a format. Its own type decides how a directive reads it: %s and %S take narrow
// and wide text alike, and %u or %X write the address of a text.
// The text behind a pointer is borrowed until the formatting call returns.
class FormatArgument {
public:
    enum class Kind : std::uint8_t {
        None,
        Signed,
        Unsigned,
        WideCharacter,
        Floating,
        Narrow,
        Wide,
        Pointer
    };

    constexpr FormatArgument() = default;
    constexpr FormatArgument(double value)
        : m_Kind(Kind::Floating), m_Bytes(sizeof value), m_Floating(value) {}
    constexpr FormatArgument(float value) : FormatArgument(static_cast<double>(value)) {}
    constexpr FormatArgument(long double value) : FormatArgument(static_cast<double>(value)) {}
    constexpr FormatArgument(char const * text)
        : m_Kind(Kind::Narrow), m_Bytes(sizeof text), m_Pointer(text) {}
    constexpr FormatArgument(wchar_t const * text)
        : m_Kind(Kind::Wide), m_Bytes(sizeof text), m_Pointer(text) {}
    constexpr FormatArgument(std::nullptr_t) : FormatArgument(static_cast<void const *>(nullptr)) {}
    FormatArgument(std::string const & text) : FormatArgument(text.c_str()) {}
    FormatArgument(std::wstring const & text) : FormatArgument(text.c_str()) {}
    FormatArgument(CSafeString const & text) : FormatArgument(text.get()) {}

    // Any other pointer. For a text directive it points to the text that the directive names.
    constexpr FormatArgument(void const * pointer)
        : m_Kind(Kind::Pointer), m_Bytes(sizeof pointer), m_Pointer(pointer) {}

    // Text of these types would be taken for bytes.
    FormatArgument(char16_t const * text) = delete;
    FormatArgument(char32_t const * text) = delete;

    template <typename Number>
    requires(std::is_integral_v<Number> || std::is_enum_v<Number>) constexpr FormatArgument(
        Number value)
        : m_Kind(KindOf<Number>()),
          m_Bytes(sizeof(Number)),
          m_Number(static_cast<std::uint64_t>(value)) {}

    constexpr Kind GetKind() const { return m_Kind; }

    // Width in bytes of the value's type: 1, 2, 4 or 8.
    constexpr unsigned GetBytes() const { return m_Bytes; }

    // A number, sign-extended to 64 bits when its type is signed.
    constexpr std::uint64_t GetNumber() const { return m_Number; }
    constexpr double GetFloating() const { return m_Floating; }
    constexpr void const * GetPointer() const { return m_Pointer; }

private:
    template <typename Number, typename... Types>
    static constexpr bool IsOneOf = (std::is_same_v<Number, Types> || ...);

    template <typename Number>
    static constexpr Kind KindOf() {
        if constexpr (std::is_enum_v<Number>)
            return KindOf<std::underlying_type_t<Number>>();
        else if constexpr (IsOneOf<Number, wchar_t, char16_t, char32_t>)
            return Kind::WideCharacter;
        else
            return std::is_signed_v<Number> ? Kind::Signed : Kind::Unsigned;
    }

    Kind m_Kind = Kind::None;
    std::uint8_t m_Bytes = 0;
    union {
        std::uint64_t m_Number = 0;
        double m_Floating;
        void const * m_Pointer;
    };
};

// Leading characters that a formatted text gets.
struct FormatPadding {
    char fill;
    std::size_t count;
};

// Formats printf-style behind the padding, into `buffer` or, when that is null, into the thread's
// format buffer, and returns the text. `length` (may be null) receives padding, text and
// terminator together, in characters. A value may lie in the buffer that is written.
//
// Every platform and every locale gives the same text, that of the C standard, with the widths
// and the extensions of Windows:
// - Length words: hh h l ll I I32 I64 j z t w L. A number is cut to the width that the directive
//   names: 8 bits (hh), 16 (h), 64 (ll I I64 j z t L), and 32 with any other word or none; a
//   narrower type than that keeps its own width, at least 32.
// - %s, %S: the precision counts characters of the source, none beyond it is read; width counts
//   characters of the result. A null text, and what is no text, reads "(null)". Text that changes
//   its form is converted as by Utf8ToUtf16. %05s pads with zeros.
// - %c, %C: a number is one character in the form that the directive names, a character in that
//   of its own type.
// - %p: 16 upper-case hexadecimal digits. %n takes a value and writes nothing.
// - A directive that ends in no conversion letter gives nothing, takes no value, and the text
//   goes on behind what was read. One that finds no value left gives nothing.
// - A width above 1,000,000 counts as that, and so does a number's precision.
KEELBASE_API char * FormatValues(
    std::size_t * length, CSimpleBuffer * buffer, FormatPadding const & padding,
    char const * format, FormatArgument const * values, std::size_t count);
KEELBASE_API wchar_t * FormatValues(
    std::size_t * length, CSimpleBuffer * buffer, FormatPadding const & padding,
    wchar_t const * format, FormatArgument const * values, std::size_t count);

template <typename Character, typename... Values>
Character * FormatText(
    std::size_t * length, CSimpleBuffer * buffer, FormatPadding const & padding,
    Character const * format, Values const &... values) {
    if constexpr (sizeof...(Values) == 0) {
        return FormatValues(length, buffer, padding, format, nullptr, 0);
    } else {
        FormatArgument const list[] = {FormatArgument(values)...};
        return FormatValues(length, buffer, padding, format, list, sizeof...(Values));
    }
}

// Half the padding of formatted texts, one for the process, 0 at load.
extern KEELBASE_API std::uint32_t m_IndentLevel;

// A printf-style text that owns its storage, indented by twice m_IndentLevel blanks.
template <typename Character>
class CBasicFormattedString {
public:
    CBasicFormattedString() = default;

    template <typename... Values>
    explicit CBasicFormattedString(Character const * format, Values const &... values) {
        FormatPadding const padding{' ', std::size_t{2} * m_IndentLevel};
        m_Text = FormatText(nullptr, &m_Buffer, padding, format, values...);
    }

    // Never null: a text that was not formatted reads as an empty one.
    operator Character const *() const {
        static constexpr Character empty[] = {0};
        return m_Text != nullptr ? m_Text : empty;
    }

private:
    Character * m_Text = nullptr;
    CSimpleBuffer m_Buffer;
};

// A re-entrant lock with the depth of its entries.
class CLockMgr {
public:
    CLockMgr() {
        InitializeCriticalSection(&m_CriticalSection);
        m_Initialized = true;
    }
    ~CLockMgr() {
        m_Initialized = false;
        DeleteCriticalSection(&m_CriticalSection);
    }
    CLockMgr(CLockMgr const &) = delete;
    CLockMgr & operator=(CLockMgr const &) = delete;

    void Lock() {
        EnterCriticalSection(&m_CriticalSection);
        ++m_LockCount;
    }
    void Unlock() {
        --m_LockCount;
        LeaveCriticalSection(&m_CriticalSection);
    }

private:
    CRITICAL_SECTION m_CriticalSection;
    std::uint32_t m_LockCount = 0;
    bool m_Initialized = false;
};

// Holds a lock for a scope and gives it back on every way out.
class CLockScope {
public:
    explicit CLockScope(CLockMgr & lock) : m_Lock(lock) { m_Lock.Lock(); }
    ~CLockScope() { m_Lock.Unlock(); }
    CLockScope(CLockScope const &) = delete;
    CLockScope & operator=(CLockScope const &) = delete;

private:
    CLockMgr & m_Lock;
};
