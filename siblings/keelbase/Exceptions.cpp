// The exceptions. Their destructors stand here, so that each type is one and the same in every
// module that throws or catches it.
#include "siblings/Keelbase.h"

CQNException::CQNException(char const * text) : std::runtime_error(text != nullptr ? text : "") {}
CQNException::~CQNException() = default;

CQNRunTimeException::CQNRunTimeException() : CQNException("") {}
CQNRunTimeException::CQNRunTimeException(char const * text) : CQNException(text) {}
CQNRunTimeException::~CQNRunTimeException() = default;

CQNDOMDocException::CQNDOMDocException() : CQNException("") {}
CQNDOMDocException::CQNDOMDocException(char const * text) : CQNException(text) {}
CQNDOMDocException::~CQNDOMDocException() = default;

namespace {

template <typename... Values>
[[noreturn]] void Throw(char const * format, Values... values) {
    if (format == nullptr || *format == '\0') throw CQNRunTimeException();
    CSimpleBuffer buffer;
    throw CQNRunTimeException(FormatText(nullptr, &buffer, FormatPadding{0, 0}, format, values...));
}

} // namespace

void ThrowQNRunTime(char const * format) { Throw(format); }

void ThrowQNRunTime(char const * format, std::uint32_t value) { Throw(format, value); }
