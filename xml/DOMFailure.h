// How failures leave the document: as an exception with a text, or as the failed call itself.
#pragma once

#include "platform/ComError.h"
#include "platform/ComPtr.h"
#include "siblings/Keelbase.h"

// Formats the text and throws CQNDOMDocException with it; a null or empty format throws one without
// a text.
template <typename... Values>
[[noreturn]] void ThrowQNDOMDoc(char const * format, Values const &... values) {
    if (format == nullptr || *format == '\0') throw CQNDOMDocException();
    CSimpleBuffer buffer;
    throw CQNDOMDocException(FormatText(nullptr, &buffer, FormatPadding{0, 0}, format, values...));
}

// The number fills both fields of such a text: "... (status=0x%08X (%lu))".
[[noreturn]] inline void ThrowWithStatus(char const * format, HRESULT status) {
    auto const number = static_cast<std::uint32_t>(status);
    ThrowQNDOMDoc(format, number, number);
}

// Throws CQNDOMDocException with the text for a failed call.
inline void CheckRead(HRESULT result, char const * text) {
    if (FAILED(result)) ThrowQNDOMDoc(text);
}

// Throws _com_error for a failed call of a method that the interface `id` declares, with the error
// object, if `object` says that it leaves one behind for that interface.
void CheckCall(HRESULT result, IUnknown * object, IID const & id);

template <typename Declaring, typename Interface>
void CheckCall(HRESULT result, ComPtr<Interface> const & object) {
    CheckCall(result, object.Get(), InterfaceId<Declaring>);
}
