// The C library's calls on files, made to fail as the test says.
#include "platform/linux/DiskFaults.h"

#include <cerrno>
#include <optional>

#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include "platform/BaseTypes.h"

namespace {

struct Plan {
    DiskCall call;
    int systemError;
    std::size_t granted;
    bool met = false;
};

std::optional<Plan> g_Plan;

// Whether the call is to fail; errno says why.
bool Fails(DiskCall call) {
    if (!g_Plan || g_Plan->call != call) return false;
    if (g_Plan->granted != 0) {
        --g_Plan->granted;
        return false;
    }
    g_Plan->met = true;
    errno = g_Plan->systemError;
    return true;
}

} // namespace

DiskFault::DiskFault(DiskCall call, int systemError, std::size_t granted) {
    g_Plan = {call, systemError, granted};
}

DiskFault::~DiskFault() { g_Plan.reset(); }

bool DiskFault::WasMet() const { return g_Plan->met; }

extern "C" {

MORVEX_SYMBOL_EXPORT ssize_t pread64(int file, void * data, std::size_t size, off64_t offset) {
    if (Fails(DiskCall::Read)) return -1;
    return syscall(SYS_pread64, file, data, size, offset);
}

MORVEX_SYMBOL_EXPORT ssize_t
pwrite64(int file, void const * data, std::size_t size, off64_t offset) {
    if (Fails(DiskCall::Write)) return -1;
    return syscall(SYS_pwrite64, file, data, size, offset);
}

MORVEX_SYMBOL_EXPORT int fdatasync(int file) {
    if (Fails(DiskCall::Sync)) return -1;
    return static_cast<int>(syscall(SYS_fdatasync, file));
}

MORVEX_SYMBOL_EXPORT int ftruncate64(int file, off64_t size) noexcept {
    if (Fails(DiskCall::Truncate)) return -1;
    return static_cast<int>(syscall(SYS_ftruncate, file, size));
}
}
