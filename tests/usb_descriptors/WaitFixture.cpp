// The host and its log.
#include "tests/usb_descriptors/WaitFixture.h"

#include <algorithm>
#include <cstring>

#include "examples/suites/usb_descriptors/UsbDescriptorsSuite.h"
#include "messages/CWindowsMessage.h"
#include "platform/DeviceServices.h"

TS_STATUS
ListeningLog::InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const *) {
    std::string const word = status == TEST_STATUS_INFO    ? "INFO "
                             : status == TEST_STATUS_ABORT ? "ABORT "
                             : status == TEST_STATUS_FAIL  ? "FAIL "
                                                           : "? ";
    m_Lines.push_back(word + text);
    if (m_OnEntry) m_OnEntry(text);
    return TS_SUCCESS;
}

WaitFixture::WaitFixture() {
    CAppState::InitAppState(ApplicationFamilyDefault);
    CAppState::SetIniArgs(m_Args);
    CAppState::TestSuiteLog(&m_Record);
    CUIUpdate::GetUIUpdate()->SetOutputBuffer(&m_Buffer);
    COutputBuffer::InitializeDefaultFormatInfo(CHARFORMAT2A{});
    m_Host.emplace([](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        if (message != WM_DEVICECHANGE) return DefWindowProcA(window, message, wParam, lParam);
        CAppState::PushWindowsMessage(
            ConstructWindowsMessageOnHeap(window, message, wParam, lParam));
        return TRUE;
    });
    CAppState::MainWindowHandle(m_Host->Window());
    m_Record.OpenTest(true);
    m_Log.emplace();
    Set("WaitForDevice", "60");
}

WaitFixture::~WaitFixture() {
    m_Log.reset();
    m_Host.reset();
    CUIUpdate::FreeUIUpdate();
    CAppState::CleanupAppState();
}

TEST_STATUS WaitFixture::Wait(std::function<void()> const & whenAsked) {
    auto const tests = UsbDescriptorsSuite().Tests();
    m_Log->m_Lines.clear();
    m_Log->m_OnEntry = [&](std::string const & text) {
        if (text.rfind("Plug in", 0) == 0) whenAsked();
    };
    TEST_STATUS const status = tests.at(0).run(*m_Log);
    m_Log->m_OnEntry = nullptr;
    return status;
}

void WaitFixture::Announce(WPARAM event, std::string const & name) {
    std::vector<unsigned char> bytes(28 + name.size() + 1);
    DEV_BROADCAST_DEVICEINTERFACE_A record = {};
    record.dbcc_size = static_cast<DWORD>(bytes.size());
    record.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    std::memcpy(bytes.data(), &record, 28);
    std::memcpy(bytes.data() + 28, name.c_str(), name.size() + 1);
    SendMessageA(m_Host->Window(), WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(bytes.data()));
}
