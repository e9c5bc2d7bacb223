// A program that tells on standard output what the library logs of the system that the program
// sees, with the registry's two texts set.
#include <cstdio>
#include <stdexcept>
#include <string>

#include "app/Common.h"
#include "log/CMXLog.h"
#include "log/LogBench.h"
#include "platform/RegistryScope.h"

namespace {

class TellingLog : public CMXLog {
protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const *) override {
        char const * const word = status == TEST_STATUS_INFO      ? "INFO"
                                  : status == TEST_STATUS_WARNING ? "WARNING"
                                                                  : "ERROR";
        std::printf("%s %.40s\n", word, text);
        return TS_SUCCESS;
    }
};

void Store(HKEY key, char const * name, std::string const & text) {
    auto const * const data = reinterpret_cast<BYTE const *>(text.c_str());
    auto const size = static_cast<DWORD>(text.size() + 1);
    if (RegSetValueExA(key, name, 0, REG_SZ, data, size) != ERROR_SUCCESS)
        throw std::runtime_error("no value");
}

void StoreSystemTexts() {
    HKEY key = nullptr;
    RegCreateKeyExA(
        HKEY_LOCAL_MACHINE, "Software\\Microsoft\\Windows NT\\CurrentVersion", 0, nullptr, 0,
        KEY_WRITE, nullptr, &key, nullptr);
    Store(key, "ProductName", "P");
    Store(key, "BuildLabEx", "B");
    RegCloseKey(key);
}

} // namespace

int main() {
    RegistryScope const registry;
    StoreSystemTexts();
    LogBench bench;
    TellingLog log;
    Common_DisplayOSVersionInfo(&log);
    std::printf("%s\n", bench.m_Suite.OSVersion().c_str());
    return 0;
}
