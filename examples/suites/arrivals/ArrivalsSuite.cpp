// A suite that waits for a device: arm, wait for the event, drain the queue.
#include "app/CAppState.h"
#include "examples/TestSuite.h"
#include "messages/CDeviceInterfaceRegistrar.h"
#include "messages/CMessageFilterSetter.h"
#include "messages/CWMDeviceChange.h"
#include "output/CUIUpdate.h"
#include "platform/DeviceServices.h"
#include "platform/Messaging.h"
#include "platform/Synchronization.h"
#include "settings/CIniArgs.h"

namespace {

constexpr GUID UsbDevices = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

// The event is reset before the queue is drained, so that no message comes unseen in between.
bool HasArrived(CMXLog & log) {
    ResetEvent(CAppState::MessageFilterEvent());
    bool arrived = false;
    while (auto const message = CAppState::PopWindowsMessage()) {
        auto const & change = static_cast<CWMDeviceChange const &>(*message);
        log.Write(TEST_STATUS_INFO, "%s", change.GetDetailsStr());
        arrived = arrived || change.EventType() == DBT_DEVICEARRIVAL;
    }
    return arrived;
}

// Waits in slices, so that the operator's abort comes through.
TEST_STATUS WaitForArrival(CMXLog & log) {
    unsigned int seconds = 30;
    CAppState::GetIniArgs().GetArg("Suite", "Seconds", seconds);
    CMessageFilterSetter const filter(WM_DEVICECHANGE);
    CDeviceInterfaceRegistrar const registrar(UsbDevices);
    if (!registrar.IsValid()) {
        log.Write(TEST_STATUS_ABORT, "This system does not announce devices");
        return log.TestStatus();
    }
    log.Write(TEST_STATUS_INFO, "Plug in a USB device within %u seconds", seconds);
    ULONGLONG const end = GetTickCount64() + ULONGLONG{seconds} * 1000;
    while (GetTickCount64() < end) {
        WaitForSingleObject(CAppState::MessageFilterEvent(), 100);
        if (HasArrived(log)) return log.TestStatus();
        CUIUpdate::DoUpdate(false);
    }
    log.Write(TEST_STATUS_FAIL, "No device came within %u seconds", seconds);
    return log.TestStatus();
}

class ArrivalsSuite : public TestSuite {
public:
    std::string Name() const override { return "Arrivals"; }
    std::vector<TestCase> Tests() override { return {{"A device arrives", true, WaitForArrival}}; }
};

} // namespace

MORVEX_TEST_SUITE(ArrivalsSuite)
