// A simulated machine: the one that the tests run on may have no USB.
#include "tests/platform/linux/UsbTestbed.h"
#include "tests/usb_descriptors/WaitFixture.h"

std::shared_ptr<void> MakeAnnouncingMachine() { return std::make_shared<UsbTestbed>(); }
