// The machine itself: every Windows announces devices.
#include "tests/usb_descriptors/WaitFixture.h"

std::shared_ptr<void> MakeAnnouncingMachine() { return nullptr; }
