// Terminals off Windows.
#include "examples/QNExe/view/Terminal.h"

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

StreamKind KindOf(std::FILE * stream) {
    int const descriptor = fileno(stream);
    if (isatty(descriptor) != 0) return StreamKind::Terminal;
    struct stat status = {};
    bool const isFile = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    return isFile ? StreamKind::File : StreamKind::Other;
}

std::size_t ColumnsOf(std::FILE * stream) {
    winsize size = {};
    bool const known = ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

// Terminals here understand both, unless TERM calls them dumb.
bool EnableControlSequences(std::FILE *) { return true; }
