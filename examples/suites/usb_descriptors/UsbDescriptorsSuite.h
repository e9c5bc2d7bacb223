// The suite: for each recorded device one test of its structure and one for each group of rules.
//
// Setting Recordings of section Suite names a folder of recordings. Without it the suite reads the
// devices of this machine, where the system shows their descriptors as files; DevicesRoot of the
// same section names another place of that form. With WaitForDevice, a number of seconds, the first
// test waits for a device to be plugged in and checks that one; without Recordings it is the only
// one. With Interactive, true, the operator is asked one question of each kind. Belongs to the test
// thread.
#pragma once

#include <string>
#include <vector>

#include "examples/TestSuite.h"

class UsbDescriptorsSuite : public TestSuite {
public:
    std::string Name() const override { return "USB descriptors"; }
    std::vector<TestCase> Tests() override;
};
