// The operations that these tests divert.
#include "platform/Com.h"
#include "platform/SystemText.h"
#include "tests/platform/Wrap.h"

MORVEX_WRAP_API(HRESULT, CoInitializeEx, (void * reserved, DWORD mode), (reserved, mode))
MORVEX_WRAP_API(void, CoUninitialize, (), ())
MORVEX_WRAP_API(
    HRESULT, CoCreateInstance,
    (CLSID const & clsid, IUnknown * outer, DWORD context, IID const & id, void ** object),
    (clsid, outer, context, id, object))
MORVEX_WRAP_API(HRESULT, OleRun, (IUnknown * object), (object))
MORVEX_WRAP_API(HRESULT, GetErrorInfo, (ULONG reserved, IErrorInfo ** error), (reserved, error))
MORVEX_WRAP_API(BSTR, SysAllocString, (wchar_t const * text), (text))
MORVEX_WRAP_API(
    DWORD, FormatMessageA,
    (DWORD flags, void const * source, DWORD code, DWORD language, char * buffer, DWORD size,
     __builtin_va_list * arguments),
    (flags, source, code, language, buffer, size, arguments))
MORVEX_WRAP_API(HLOCAL, LocalAlloc, (UINT flags, std::size_t bytes), (flags, bytes))
