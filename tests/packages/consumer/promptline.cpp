// Ends with 0 if nobody chooses a file where there is no window to ask in.
#include "siblings/Promptline.h"
#include "siblings/Keelbase.h"

int main() {
    CSafeString file("");
    return SelectSingleFile(file, L"Choose", nullptr, false) ? 1 : 0;
}
