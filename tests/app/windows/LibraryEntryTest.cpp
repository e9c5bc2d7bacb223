// The library's entry function: which of the loader's calls move the trace provider.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Tracing.h"
#include "platform/Wrap.h"

MORVEX_WRAPPED(RegisterTraceGuidsA)
MORVEX_WRAPPED(UnregisterTraceGuids)

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void * reserved);

namespace {

using RegisterSignature = ULONG(
    WMIDPREQUEST, void *, GUID const *, ULONG, TRACE_GUID_REGISTRATION *, char const *,
    char const *, TRACEHANDLE *);

class LibraryEntryTest : public testing::Test {
protected:
    using Steps = std::vector<std::string>;

    // What one call of the loader sets off.
    Steps Call(DWORD reason) {
        m_Steps.clear();
        if (DllMain(nullptr, reason, nullptr) != TRUE) m_Steps.push_back("refused");
        return m_Steps;
    }

    Steps m_Steps;
    Diversion<RegisterSignature> m_Register{
        wrapped_RegisterTraceGuidsA,
        [this](
            WMIDPREQUEST, void *, GUID const *, ULONG, TRACE_GUID_REGISTRATION *, char const *,
            char const *, TRACEHANDLE * handle) -> ULONG {
            *handle = 1;
            m_Steps.push_back("register");
            return ERROR_SUCCESS;
        }};
    Diversion<ULONG(TRACEHANDLE)> m_Unregister{
        wrapped_UnregisterTraceGuids, [this](TRACEHANDLE) -> ULONG {
            m_Steps.push_back("unregister");
            return ERROR_SUCCESS;
        }};
};

TEST_F(LibraryEntryTest, TheProviderComesAndGoesWithTheProcess) {
    EXPECT_EQ(Call(DLL_PROCESS_ATTACH), Steps{"register"});
    EXPECT_EQ(Call(DLL_PROCESS_DETACH), Steps{"unregister"});
}

TEST_F(LibraryEntryTest, ThreadsAndUnknownReasonsChangeNothing) {
    EXPECT_EQ(Call(DLL_PROCESS_ATTACH), Steps{"register"});
    EXPECT_EQ(Call(DLL_THREAD_ATTACH), Steps{});
    EXPECT_EQ(Call(DLL_THREAD_DETACH), Steps{});
    EXPECT_EQ(Call(17), Steps{});
    EXPECT_EQ(Call(DLL_PROCESS_DETACH), Steps{"unregister"});
}

} // namespace
