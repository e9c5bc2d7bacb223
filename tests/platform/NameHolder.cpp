// A process that takes a named mutex for a test: NameHolder NAME [hold]
//
// Tells on standard output whether it was the first, and holds the name until it is killed or for
// two minutes; without "hold" it ends at once.
#include <cstdio>
#include <string>

#include "platform/Synchronization.h"

namespace {

std::string What(HANDLE mutex) {
    DWORD const error = GetLastError();
    if (mutex == nullptr) return std::to_string(error);
    return error == ERROR_ALREADY_EXISTS ? "second" : "first";
}

} // namespace

int main(int count, char ** arguments) {
    if (count < 2) return 9;
    std::string const name = arguments[1];
    HANDLE const mutex =
        CreateMutexW(nullptr, FALSE, std::wstring(name.begin(), name.end()).c_str());
    std::string const line = What(mutex) + '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
    if (count > 2) Sleep(120'000);
    return 0;
}
