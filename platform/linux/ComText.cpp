// Texts and values that cross interfaces.
//
// In front of a text's first character lie eight bytes, the last four of them its length in bytes.
#include "platform/linux/ComText.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <new>

namespace {

constexpr std::size_t Head = 8;
constexpr std::size_t LengthAt = 4;

bool IsContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

bool IsAscii(std::string_view text) {
    unsigned char all = 0;
    for (char const byte : text)
        all = static_cast<unsigned char>(all | static_cast<unsigned char>(byte));
    return all < 0x80;
}

std::size_t CountCharacters(std::string_view utf8) {
    return utf8.size() - static_cast<std::size_t>(std::ranges::count_if(utf8, IsContinuation));
}

wchar_t * DecodeAll(std::string_view utf8, wchar_t * to) {
    for (std::size_t i = 0; i < utf8.size();) {
        auto const lead = static_cast<unsigned char>(utf8[i++]);
        std::uint32_t character = lead < 0x80 ? lead : lead < 0xE0 ? lead & 0x1F : lead & 0x0F;
        if (lead >= 0xF0) character = lead & 0x07;
        while (i < utf8.size() && IsContinuation(utf8[i]))
            character = character << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3F);
        *to++ = static_cast<wchar_t>(character);
    }
    return to;
}

void Encode(std::uint32_t character, std::string & to) {
    bool const isNone = character > 0x10FFFF || (character >= 0xD800 && character < 0xE000);
    std::uint32_t const c = isNone ? 0xFFFD : character;
    auto const put = [&to](std::uint32_t byte) { to += static_cast<char>(byte); };
    if (c < 0x80) return put(c);
    if (c < 0x800) {
        put(0xC0 | c >> 6);
    } else {
        if (c < 0x10000) {
            put(0xE0 | c >> 12);
        } else {
            put(0xF0 | c >> 18);
            put(0x80 | (c >> 12 & 0x3F));
        }
        put(0x80 | (c >> 6 & 0x3F));
    }
    put(0x80 | (c & 0x3F));
}

} // namespace

BSTR NewText(std::string_view utf8) {
    bool const plain = IsAscii(utf8);
    std::size_t const length = plain ? utf8.size() : CountCharacters(utf8);
    BSTR const text = SysAllocStringLen(nullptr, static_cast<UINT>(length));
    if (text == nullptr) throw std::bad_alloc();
    if (plain)
        std::ranges::copy(utf8, text);
    else
        DecodeAll(utf8, text);
    return text;
}

std::string Narrow(wchar_t const * text) {
    std::string utf8;
    for (; text != nullptr && *text != L'\0'; ++text)
        Encode(static_cast<std::uint32_t>(*text), utf8);
    return utf8;
}

BSTR SysAllocString(wchar_t const * text) {
    if (text == nullptr) return nullptr;
    std::size_t const length = std::wcslen(text);
    if (length > UINT32_MAX / sizeof(wchar_t)) return nullptr;
    return SysAllocStringLen(text, static_cast<UINT>(length));
}

BSTR SysAllocStringLen(wchar_t const * text, UINT length) {
    std::size_t const bytes = length * sizeof(wchar_t);
    if (bytes > UINT32_MAX - Head - sizeof(wchar_t)) return nullptr;
    char * const storage = static_cast<char *>(std::malloc(Head + bytes + sizeof(wchar_t)));
    if (storage == nullptr) return nullptr;
    auto const stored = static_cast<std::uint32_t>(bytes);
    std::memcpy(storage + LengthAt, &stored, sizeof stored);
    auto * const characters = static_cast<wchar_t *>(static_cast<void *>(storage + Head));
    if (text != nullptr) std::memcpy(characters, text, bytes);
    characters[length] = L'\0';
    return characters;
}

void SysFreeString(BSTR text) {
    if (text != nullptr) std::free(static_cast<char *>(static_cast<void *>(text)) - Head);
}

UINT SysStringLen(BSTR text) {
    if (text == nullptr) return 0;
    std::uint32_t bytes = 0;
    std::memcpy(&bytes, static_cast<char *>(static_cast<void *>(text)) - LengthAt, sizeof bytes);
    return static_cast<UINT>(bytes / sizeof(wchar_t));
}

void VariantInit(VARIANT * value) { *value = VARIANT{}; }

HRESULT VariantClear(VARIANT * value) {
    if (value->vt == VT_BSTR) SysFreeString(value->bstrVal);
    if (value->vt == VT_DISPATCH && value->pdispVal != nullptr) value->pdispVal->Release();
    value->vt = VT_EMPTY;
    return S_OK;
}
