// Terminals on Windows: consoles.
#include "examples/QNExe/view/Terminal.h"

#include <io.h>
#include <windows.h>

namespace {

HANDLE HandleOf(std::FILE * stream) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

} // namespace

StreamKind KindOf(std::FILE * stream) {
    DWORD mode = 0;
    HANDLE const handle = HandleOf(stream);
    if (GetConsoleMode(handle, &mode) != 0) return StreamKind::Terminal;
    return GetFileType(handle) == FILE_TYPE_DISK ? StreamKind::File : StreamKind::Other;
}

std::size_t ColumnsOf(std::FILE * stream) {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (GetConsoleScreenBufferInfo(HandleOf(stream), &info) == 0) return 80;
    return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

bool EnableControlSequences(std::FILE * stream) {
    DWORD mode = 0;
    HANDLE const handle = HandleOf(stream);
    if (GetConsoleMode(handle, &mode) == 0) return false;
    SetConsoleOutputCP(CP_UTF8);
    return SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}
