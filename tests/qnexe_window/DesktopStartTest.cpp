// The program as the desktop starts it: without options, console and streams.
#include <gtest/gtest.h>

#include "qnexe_window/KeptPlace.h"
#include "qnexe_window/WindowChild.h"

namespace {

// A process with nothing of this one's.
class DesktopProcess {
public:
    explicit DesktopProcess(std::wstring line) {
        STARTUPINFOW start = {};
        start.cb = sizeof start;
        PROCESS_INFORMATION made = {};
        auto const program = (ProgramFolder() / "QNExe.exe").wstring();
        CreateProcessW(
            program.c_str(), line.data(), nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr,
            nullptr, &start, &made);
        CloseHandle(made.hThread);
        m_Process = made.hProcess;
    }
    DesktopProcess(DesktopProcess const &) = delete;
    DesktopProcess & operator=(DesktopProcess const &) = delete;
    ~DesktopProcess() {
        if (!HasEnded()) TerminateProcess(m_Process, 1);
        CloseHandle(m_Process);
    }

    bool HasEnded() const { return WaitForSingleObject(m_Process, 0) == WAIT_OBJECT_0; }

    DWORD Code() const {
        DWORD code = 0;
        GetExitCodeProcess(m_Process, &code);
        return code;
    }

private:
    HANDLE m_Process;
};

class DesktopStartTest : public testing::Test {
protected:
    DesktopStartTest() { ForgetPlace(); }
    ~DesktopStartTest() override { ForgetPlace(); }
};

TEST_F(DesktopStartTest, WithoutOptionsTheWindowIsShown) {
    auto const before = MainWindows();
    DesktopProcess const program(L"QNExe.exe");
    RemoteWindow const window = NewWindow(before, [&] { return program.HasEnded(); });
    ASSERT_TRUE(window) << "ended with " << program.Code();
    PostMessageW(window.Handle(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(WaitFor([&] { return program.HasEnded(); }));
    EXPECT_EQ(program.Code(), 2u);
}

TEST_F(DesktopStartTest, WithOptionsOnlyTheOptionShowsIt) {
    auto const before = MainWindows();
    DesktopProcess const program(L"QNExe.exe --version");
    EXPECT_FALSE(NewWindow(before, [&] { return program.HasEnded(); }));
    EXPECT_EQ(program.Code(), 0u);
}

} // namespace
