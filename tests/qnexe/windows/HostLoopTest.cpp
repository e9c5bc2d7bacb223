// Ctrl-C that cannot be watched, and what the window leaves then.
#include "examples/QNExe/HostLoop.h"

#include <system_error>

#include <gtest/gtest.h>

#include "examples/QNExe/HostWindow.h"
#include "platform/Wrap.h"
#include "qnexe/LibraryState.h"

MORVEX_WRAP_API(BOOL, SetConsoleCtrlHandler, (PHANDLER_ROUTINE handler, BOOL add), (handler, add))

namespace {

TEST(HostLoopTest, WithoutALoopNoWindowIsLeftBehind) {
    LibraryState const state;
    {
        Diversion const refused(wrapped_SetConsoleCtrlHandler, [](auto...) { return FALSE; });
        EXPECT_THROW(HostWindow(), std::system_error);
    }
    EXPECT_NO_THROW(HostWindow());
}

} // namespace
