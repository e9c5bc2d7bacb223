// Why an XML file was refused, and where.
#pragma once

#include <string>

#include "platform/Com.h"

struct XmlFailure {
    HRESULT code = S_OK; // S_OK: it was not refused
    std::string reason;  // UTF-8, as is the file
    std::string file;
    // Counted from 1; 0 when the place is not known.
    LONG line = 0;
    LONG column = 0;

    explicit operator bool() const { return code != S_OK; }
};

// A document that is not well formed, by the engine's number of the error.
HRESULT CodeOfXmlError(int error);

// The engine's sentence without its line end.
std::string ReasonOf(char const * message);

// "file(line): reason", with what is known of it.
std::string Sentence(XmlFailure const & failure);

namespace xml_error {

inline constexpr HRESULT FileNotFound = static_cast<HRESULT>(0x800C0006);
inline constexpr HRESULT ReadFault = static_cast<HRESULT>(0x8007001E);
inline constexpr HRESULT FileTooLarge = static_cast<HRESULT>(0x800700DF);
inline constexpr HRESULT DtdProhibited = static_cast<HRESULT>(0xC00CE584);
inline constexpr HRESULT MaxElementDepth = static_cast<HRESULT>(0xC00CEE81);

} // namespace xml_error
