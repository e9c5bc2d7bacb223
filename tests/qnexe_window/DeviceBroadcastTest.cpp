// What Windows tells all top-level windows of devices: it reaches a test that waits for it, once,
// whether the host has a window for its operator or none.
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "examples/QNExe/windows/ResourceIds.h"
#include "platform/DeviceServices.h"
#include "platform/Environment.h"
#include "qnexe_window/WindowChild.h"

namespace {

std::wstring ProgramOf(HWND window) {
    DWORD number = 0;
    GetWindowThreadProcessId(window, &number);
    HANDLE const process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, number);
    wchar_t path[MAX_PATH] = {};
    DWORD length = MAX_PATH;
    QueryFullProcessImageNameW(process, 0, path, &length);
    CloseHandle(process);
    return std::filesystem::path(path).filename().wstring();
}

// The system's list holds the windows that a broadcast meets, and no others.
BOOL CALLBACK Tell(HWND window, LPARAM count) {
    if (ProgramOf(window) != L"QNExe.exe") return TRUE;
    ++*reinterpret_cast<int *>(count);
    SendMessageW(window, WM_DEVICECHANGE, DBT_DEVNODES_CHANGED, 0);
    return TRUE;
}

class DeviceBroadcastTest : public WindowChild {
protected:
    // Somebody answers at once, so that no dialog is shown.
    DeviceBroadcastTest() {
        std::string const file = File("answers.json");
        std::ofstream(file, std::ios::binary) << R"({"answers": [{"answer": "ok"}]})";
        SetEnvironment("QN_PROMPTS", file.c_str());
    }
    ~DeviceBroadcastTest() override { ClearEnvironment("QN_PROMPTS"); }

    static std::vector<std::string> Waiting() {
        return {
            "--suite", (ProgramFolder() / "usb_descriptors.dll").string(), "--set",
            "Suite.WaitForDevice=86400"};
    }

    static void TellOfDevices() {
        int windows = 0;
        EnumWindows(Tell, reinterpret_cast<LPARAM>(&windows));
        EXPECT_GT(windows, 0);
    }

    static std::size_t CountIn(std::string const & text) {
        std::string const mark = "Event: DBT_DEVNODES_CHANGED";
        std::size_t count = 0;
        for (auto at = text.find(mark); at != text.npos; at = text.find(mark, at + 1))
            ++count;
        return count;
    }

    std::string Shown() const { return Narrow(Log().RichText()); }
};

TEST_F(DeviceBroadcastTest, ARunOfTheWindowHearsOfItOnce) {
    Open(Waiting());
    Window().Command(ID_RUN_START);
    ASSERT_TRUE(WaitFor([&] { return Shown().find("Plug in a USB") != std::string::npos; }));
    TellOfDevices();
    EXPECT_TRUE(WaitFor([&] { return CountIn(Shown()) > 0; }));
    Window().Command(ID_RUN_ABORT);
    AwaitState(L"Aborted by the operator");
    EXPECT_EQ(CountIn(Shown()), 1u);
    EXPECT_EQ(Close(), 3);
}

TEST_F(DeviceBroadcastTest, ARunOfTheConsoleHearsOfItOnce) {
    auto arguments = Waiting();
    arguments.insert(arguments.end(), {"--report", "json:" + File("run.jsonl")});
    ChildProcess & child = Start(arguments);
    // Nothing else is on disk as soon as it is written.
    auto const journal = [&] { return Contents(File("run.jsonl")); };
    ASSERT_TRUE(WaitFor([&] { return journal().find("Plug in a USB") != std::string::npos; }));
    TellOfDevices();
    EXPECT_TRUE(WaitFor([&] { return CountIn(journal()) > 0; }));
    EXPECT_EQ(CountIn(journal()), 1u);
    child.Kill();
}

TEST_F(DeviceBroadcastTest, BetweenTwoRunsItIsNobodys) {
    OpenWithSuite("passing");
    TellOfDevices();
    RunToState(L"Passed");
    TellOfDevices();
    RunToState(L"Passed");
    EXPECT_EQ(Close(), 0);
}

} // namespace
