// The smallest host: a window and its loop on one thread, one test on another, an exit code.
#include <thread>

#include "app/CAppState.h"
#include "app/CLimitSingleExecute.h"
#include "app/Common.h"
#include "log/CMXLog.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "platform/Messaging.h"
#include "settings/CIniArgs.h"
#include "siblings/QuillonLog.h"

namespace {

constexpr UINT End = WM_APP + 1;

// The library rings after each change. A log on the console is shown already; what else came in is
// taken out, so that it does not grow.
LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == CUIUpdate::UpdateMessage)
        COutputBuffer::DeleteDataTable(CUIUpdate::GetBuffer()->GetText());
    else if (message == End)
        PostQuitMessage(0);
    else
        return DefWindowProcA(window, message, wParam, lParam);
    return 0;
}

// No pixel of it is seen: it is where the library's messages arrive.
HWND MakeWindow() {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = Receive;
    windowClass.lpszClassName = "SmallestHost";
    RegisterClassA(&windowClass);
    return CreateWindowExA(
        0, windowClass.lpszClassName, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
}

// What the library wants to stand before a suite starts.
struct State {
    explicit State(HWND window) {
        CAppState::InitAppState(EApplicationFamily{});
        CAppState::SetIniArgs(settings);
        CAppState::MainWindowHandle(window);
        CAppState::TestSuiteLog(&record);
        COutputBuffer::InitializeDefaultFormatInfo(CHARFORMAT2A{});
        CUIUpdate::GetUIUpdate(window)->SetOutputBuffer(&output);
    }
    State(State const &) = delete;
    State & operator=(State const &) = delete;
    ~State() {
        CUIUpdate::FreeUIUpdate();
        CLimitSingleExecute::FreeSingleExecute();
        CAppState::CleanupAppState();
    }

    CIniArgs settings;
    COutputBuffer output;
    CTestSuiteLog record;
};

// The engine's part: the record is opened before the log starts a test, and closed behind it.
void RunTest(CMXLog & log, CTestSuiteLog & record) {
    record.OpenTest(true);
    log.InitTest();
    log.StartTest("A sum", 0);
    if (2 + 2 != 4) log.Write(TEST_STATUS_FAIL, "The sum is wrong");
    log.StopTest(log.TestStatus());
    record.CloseTest();
}

void RunSuite(State & state) {
    CMXLog * log = nullptr;
    CMXUserInput * input = nullptr;
    if (Common_InitTestSuite(
            log, TS_LOG_CONSOLE, input, "SmallestHost", &state.output, false, nullptr, true)
        == TS_SUCCESS)
        RunTest(*log, state.record);
    Common_EndTestSuite(log, input);
}

} // namespace

int main() {
    HWND const window = MakeWindow();
    State state(window);
    state.record.m_RequireTests = true;
    std::thread tests([&] {
        RunSuite(state);
        PostMessageA(window, End, 0, 0);
    });
    for (MSG message; GetMessageA(&message, nullptr, 0, 0) > 0;)
        DispatchMessageA(&message);
    tests.join();
    return state.record.SuitePassed() ? 0 : 1;
}
