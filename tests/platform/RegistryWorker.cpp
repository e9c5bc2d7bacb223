// A process that writes settings for a test: RegistryWorker KEY NAME FIRST COUNT
//
// Below HKEY_CURRENT_USER it writes COUNT values NAME_FIRST, NAME_FIRST+1, ... into KEY, reads each
// back, and then acknowledges it by a line with its number on standard output. Ends with 0, or with
// the number of a step that has failed.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/Registry.h"
#include "platform/RegistryWork.h"

namespace {

LSTATUS WriteOne(std::string const & path, std::string const & name, std::string const & text) {
    HKEY key = nullptr;
    LSTATUS const opened = RegCreateKeyExA(
        HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    if (opened != 0) return opened;
    auto const * const data = reinterpret_cast<BYTE const *>(text.data());
    LSTATUS const result =
        RegSetValueExA(key, name.c_str(), 0, REG_BINARY, data, static_cast<DWORD>(text.size()));
    RegCloseKey(key);
    return result;
}

int Fail(int step, LSTATUS code) {
    std::fprintf(stderr, "step %d gave %ld\n", step, static_cast<long>(code));
    return step;
}

} // namespace

int main(int count, char ** arguments) {
    if (count != 5) return 9;
    std::string const path = arguments[1];
    long const first = std::atol(arguments[3]);
    long const end = first + std::atol(arguments[4]);
    for (long number = first; number != end; ++number) {
        std::string const name = ValueName(arguments[2], number);
        std::string const text = ValueText(name);
        LSTATUS const written = WriteOne(path, name, text);
        if (written != 0) return Fail(1, written);
        auto const read = ReadStoredValue(path, name);
        if (read != text) return Fail(2, 0);
        std::printf("%ld\n", number);
        std::fflush(stdout);
    }
    return 0;
}
