// The suite as a host meets it: its tests by name, and what each of them leaves in the log.
#include "examples/suites/usb_descriptors/UsbDescriptorsSuite.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "settings/CIniArgs.h"
#include "siblings/QuillonLog.h"
#include "tests/usb_descriptors/TestFolder.h"

namespace {

using Lines = std::vector<std::string>;

// A sink that keeps its entries as lines: a word for the status, then the text.
class LineLog : public CMXLog {
public:
    Lines TakeLines() { return std::exchange(m_Lines, {}); }

protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const *) override {
        m_Lines.push_back(WordOf(status) + text);
        return TS_SUCCESS;
    }

private:
    static std::string WordOf(TEST_STATUS status) {
        switch (status) {
        case TEST_STATUS_INFO:
            return "INFO ";
        case TEST_STATUS_WARNING:
            return "WARNING ";
        case TEST_STATUS_FAIL:
            return "FAIL ";
        case TEST_STATUS_ABORT:
            return "ABORT ";
        default:
            return "? ";
        }
    }

    Lines m_Lines;
};

class UsbDescriptorsSuiteTest : public testing::Test {
protected:
    UsbDescriptorsSuiteTest() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::SetIniArgs(m_Args);
        CAppState::TestSuiteLog(&m_Record);
        CUIUpdate::GetUIUpdate()->SetOutputBuffer(&m_Buffer);
        COutputBuffer::InitializeDefaultFormatInfo(CHARFORMAT2A{});
    }
    ~UsbDescriptorsSuiteTest() override {
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
    }

    void Set(char const * key, std::string const & value) { m_Args.AddArg("Suite", key, value); }

    void Record(char const * name, Bytes const & bytes) { m_Folder.Write(name, bytes); }

    Lines Names() {
        Set("Recordings", m_Folder.Text());
        Lines names;
        for (auto const & test : UsbDescriptorsSuite().Tests())
            names.push_back(test.name);
        return names;
    }

    // Runs the tests as a host does, without its lines for start and stop. A test without entries
    // is its name alone.
    Lines Run() {
        Set("Recordings", m_Folder.Text());
        Lines all;
        LineLog log;
        for (auto const & test : UsbDescriptorsSuite().Tests()) {
            auto & record = m_Record.OpenTest(test.isActualTest);
            log.ClearTestStatus();
            log.InitTest();
            log.StartTest(test.name, 0);
            log.TakeLines();
            TEST_STATUS const result = log.StopTest(test.run(log));
            Lines const lines = log.TakeLines();
            all.push_back(test.name + (result == TEST_STATUS_SUCCESS ? ": passed" : ": failed"));
            all.insert(all.end(), lines.begin(), lines.end());
            m_Unexpected += record.UnknownCount();
            m_Record.CloseTest();
        }
        EXPECT_EQ(m_Unexpected, 0u);
        return all;
    }

    // What the suite logs when it lists its tests, of which there are none.
    static Lines LinesOfListing() {
        LineLog log;
        CAppState::Log(&log);
        log.GlobalLogExists(true);
        EXPECT_EQ(UsbDescriptorsSuite().Tests().size(), 0u);
        CAppState::Log(nullptr);
        return log.TakeLines();
    }

    void WriteLimits(TestFolder const & folder, std::string const & text) {
        std::filesystem::copy_file(USB_DESCRIPTORS_SCHEMA, folder.Path() / "suite.xsd");
        folder.Write("suite.xml", Bytes(text.begin(), text.end()));
        Set("Folder", folder.Text());
    }

    TestFolder m_Folder;
    CIniArgs m_Args;
    COutputBuffer m_Buffer;
    CTestSuiteLog m_Record;
    unsigned long m_Unexpected = 0;
};

} // namespace

TEST_F(UsbDescriptorsSuiteTest, SuiteHasItsName) {
    EXPECT_EQ(UsbDescriptorsSuite().Name(), "USB descriptors");
}

TEST_F(UsbDescriptorsSuiteTest, DeviceHasOneTestForEachGroupOfRules) {
    Record("mouse.bin", ReadGood("low_speed_mouse"));
    EXPECT_EQ(
        Names(), (Lines{
                     "f1d0:0001 Structure",
                     "f1d0:0001 Device descriptor",
                     "f1d0:0001 Configuration descriptors",
                     "f1d0:0001 Interface descriptors",
                     "f1d0:0001 Endpoint descriptors",
                 }));
}

TEST_F(UsbDescriptorsSuiteTest, AssociationsAndStoreAreTestedWhereTheyAre) {
    Record("a.bin", ReadGood("high_speed_camera"));
    Record("b.bin", ReadGood("super_speed_storage"));
    EXPECT_EQ(
        Names(), (Lines{
                     "f1d0:0006 Structure",
                     "f1d0:0006 Device descriptor",
                     "f1d0:0006 Configuration descriptors",
                     "f1d0:0006 Interface descriptors",
                     "f1d0:0006 Endpoint descriptors",
                     "f1d0:0006 Interface association descriptors",
                     "f1d0:0007 Structure",
                     "f1d0:0007 Device descriptor",
                     "f1d0:0007 Configuration descriptors",
                     "f1d0:0007 Interface descriptors",
                     "f1d0:0007 Endpoint descriptors",
                     "f1d0:0007 BOS descriptors",
                 }));
}

TEST_F(UsbDescriptorsSuiteTest, DevicesOfOneKindBearTheirRecordingsNames) {
    Record("left.bin", ReadGood("low_speed_mouse"));
    Record("right.bin", ReadGood("low_speed_mouse"));
    auto const names = Names();
    ASSERT_EQ(names.size(), 10u);
    EXPECT_EQ(names[0], "f1d0:0001 (left.bin) Structure");
    EXPECT_EQ(names[5], "f1d0:0001 (right.bin) Structure");
}

TEST_F(UsbDescriptorsSuiteTest, EveryTestIsATrueTest) {
    Record("mouse.bin", ReadGood("low_speed_mouse"));
    Set("Recordings", m_Folder.Text());
    for (auto const & test : UsbDescriptorsSuite().Tests())
        EXPECT_TRUE(test.isActualTest);
}

TEST_F(UsbDescriptorsSuiteTest, GoodDeviceLeavesNoEntry) {
    Record("mouse.bin", ReadGood("low_speed_mouse"));
    EXPECT_EQ(
        Run(), (Lines{
                   "f1d0:0001 Structure: passed",
                   "f1d0:0001 Device descriptor: passed",
                   "f1d0:0001 Configuration descriptors: passed",
                   "f1d0:0001 Interface descriptors: passed",
                   "f1d0:0001 Endpoint descriptors: passed",
               }));
}

TEST_F(UsbDescriptorsSuiteTest, VerboseRunTellsWhatWasRead) {
    CAppState::QNLogVerbosityLevel(Verbose);
    Record("mouse.bin", ReadGood("low_speed_mouse"));
    EXPECT_EQ(
        Run(), (Lines{
                   "f1d0:0001 Structure: passed",
                   "INFO Recording mouse.bin, 52 bytes",
                   "INFO Everything in it is right at low speed or full speed",
                   "f1d0:0001 Device descriptor: passed",
                   "f1d0:0001 Configuration descriptors: passed",
                   "f1d0:0001 Interface descriptors: passed",
                   "f1d0:0001 Endpoint descriptors: passed",
               }));
}

TEST_F(UsbDescriptorsSuiteTest, BrokenRuleFailsTheTestOfItsGroup) {
    Record("storage.bin", ReadFile(RecordingsFolder() / "faulty" / "bulk_packet_size.bin"));
    EXPECT_EQ(
        Run(), (Lines{
                   "f1d0:0104 Structure: passed",
                   "f1d0:0104 Device descriptor: passed",
                   "f1d0:0104 Configuration descriptors: passed",
                   "f1d0:0104 Interface descriptors: passed",
                   "f1d0:0104 Endpoint descriptors: failed",
                   "FAIL USB 2.0 9.6.6 wMaxPacketSize at offset 0x002F is 0x0140: endpoint 0x02, "
                   "bulk: takes 8, 16, 32 or 64 at full speed; 512 at high speed",
               }));
}

TEST_F(UsbDescriptorsSuiteTest, AdviceNotTakenIsAWarningThatPasses) {
    Record(
        "modem.bin",
        ReadFile(RecordingsFolder() / "faulty" / "association_without_device_class.bin"));
    EXPECT_EQ(
        Run(), (Lines{
                   "f1d0:0102 Structure: passed",
                   "f1d0:0102 Device descriptor: passed",
                   "f1d0:0102 Configuration descriptors: passed",
                   "f1d0:0102 Interface descriptors: passed",
                   "f1d0:0102 Endpoint descriptors: passed",
                   "f1d0:0102 Interface association descriptors: passed",
                   "WARNING USB 3.2 9.6.4 bDeviceClass at offset 0x0004 is 0x00: a device with "
                   "interface associations should have the class, subclass and protocol 0xEF, "
                   "0x02, 0x01",
               }));
}

TEST_F(UsbDescriptorsSuiteTest, RecordingWithoutADeviceIsOneFailedTest) {
    Record("100% empty.bin", {});
    EXPECT_EQ(
        Run(), (Lines{
                   "100% empty.bin Structure: failed",
                   "FAIL USB 2.0 9.6.1 bLength at offset 0x0000 is 0x00: the recording has 0 "
                   "bytes, a device descriptor alone has 18",
               }));
}

TEST_F(UsbDescriptorsSuiteTest, FindingsAboveOneHundredAreCountedAlone) {
    Bytes bytes = ReadGood("low_speed_mouse");
    for (int i = 0; i < 150; ++i)
        bytes.insert(bytes.end(), {2, 3});
    bytes[20] = 34 + 44;
    bytes[21] = 1;
    Record("strings.bin", bytes);
    auto const lines = Run();
    ASSERT_EQ(lines.size(), 5u + 101u);
    EXPECT_EQ(
        lines[100], "FAIL USB 2.0 9.4.3 bDescriptorType at offset 0x00FB is 0x03: a descriptor of "
                    "this type is no part of a configuration");
    EXPECT_EQ(lines[101], "FAIL 50 further findings are not shown");
    EXPECT_EQ(lines[102], "f1d0:0001 Device descriptor: passed");
}

TEST_F(UsbDescriptorsSuiteTest, UnreadableRecordingIsAbortedAndFails) {
    std::filesystem::create_directories(m_Folder.Path() / "1-1" / "descriptors");
    Set("DevicesRoot", m_Folder.Text());
    auto const tests = UsbDescriptorsSuite().Tests();
    ASSERT_EQ(tests.size(), 1u);
    EXPECT_EQ(tests[0].name, "1-1 Structure");
    LineLog log;
    m_Record.OpenTest(true);
    log.InitTest();
    EXPECT_EQ(tests[0].run(log) & TEST_STATUS_ABORT, TEST_STATUS_ABORT);
    EXPECT_THAT(
        log.TakeLines(), testing::ElementsAre(testing::StartsWith(
                             "ABORT Recording 1-1: the file cannot be read: ")));
}

TEST_F(UsbDescriptorsSuiteTest, FolderThatDoesNotExistIsToldInTheLogToo) {
    Set("Recordings", m_Folder.Text() + "/none");
    LineLog log;
    CAppState::Log(&log);
    log.GlobalLogExists(true);
    std::string const thrown = ThrownBy([] { UsbDescriptorsSuite().Tests(); });
    CAppState::Log(nullptr);
    EXPECT_EQ(
        thrown, "The folder of recordings does not exist: " + m_Folder.Text()
                    + "/none. Give an existing folder as Recordings of section Suite.");
    EXPECT_EQ(log.TakeLines(), (Lines{"ABORT " + thrown}));
}

TEST_F(UsbDescriptorsSuiteTest, WithoutAFolderTheDevicesOfTheMachineAreRead) {
    m_Folder.Write("1-1/descriptors", ReadGood("low_speed_mouse"));
    Set("DevicesRoot", m_Folder.Text());
    auto const tests = UsbDescriptorsSuite().Tests();
    ASSERT_EQ(tests.size(), 5u);
    EXPECT_EQ(tests[0].name, "f1d0:0001 Structure");
}

TEST_F(UsbDescriptorsSuiteTest, FolderWinsOverTheDevicesOfTheMachine) {
    Record("mouse.bin", ReadGood("low_speed_mouse"));
    Set("DevicesRoot", m_Folder.Text() + "/none");
    EXPECT_EQ(Names().size(), 5u);
}

TEST_F(UsbDescriptorsSuiteTest, MachineWithoutDevicesHasNoTests) {
    Set("DevicesRoot", m_Folder.Text());
    EXPECT_EQ(UsbDescriptorsSuite().Tests().size(), 0u);
}

TEST_F(UsbDescriptorsSuiteTest, ARunWithoutTestsSaysWhy) {
    Set("DevicesRoot", m_Folder.Text());
    EXPECT_EQ(
        LinesOfListing(),
        (Lines{
            "INFO There is nothing to test: no device shows its descriptors in " + m_Folder.Text()
            + ". Connect one, or give a folder of *.bin files as Recordings of "
              "section Suite."}));
    TestFolder const folder;
    WriteLimits(folder, "<suite><devices><device vendor='ffff'/></devices></suite>");
    m_Folder.Write("1-1/descriptors", ReadGood("low_speed_mouse"));
    EXPECT_EQ(
        LinesOfListing(), (Lines{"INFO There is nothing to test: the suite's limits name none of "
                                 "the devices (1)."}));
}

TEST_F(UsbDescriptorsSuiteTest, SystemThatShowsNoDescriptorsAsksForRecordings) {
    Set("DevicesRoot", "");
    EXPECT_EQ(
        ThrownBy([] { UsbDescriptorsSuite().Tests(); }),
        "There is nothing to test: this system does not show its devices' descriptors as files, "
        "and no recordings were given. Give a folder of *.bin files as Recordings of section "
        "Suite.");
}

TEST_F(UsbDescriptorsSuiteTest, LimitsChooseDevicesAndGroupsAndEndTheRun) {
    Record("mouse.bin", ReadGood("low_speed_mouse"));
    std::string const text = "<suite><devices><device vendor='f1d0' product='0001'/></devices>"
                             "<groups><group name='Device descriptor'/></groups>"
                             "<timeouts><run seconds='0'/></timeouts></suite>";
    TestFolder const folder;
    WriteLimits(folder, text);
    EXPECT_EQ(Names(), (Lines{"f1d0:0001 Structure", "f1d0:0001 Device descriptor"}));
    EXPECT_THAT(Run(), testing::Contains("ABORT The run's time of 0 seconds is over"));
}

TEST_F(UsbDescriptorsSuiteTest, BadLimitsAreOneEntryAndTheEnd) {
    std::string const text = "<suite limit='1'/>";
    TestFolder const folder;
    WriteLimits(folder, text);
    LineLog log;
    CAppState::Log(&log);
    log.GlobalLogExists(true);
    std::string const thrown = ThrownBy([] { UsbDescriptorsSuite().Tests(); });
    CAppState::Log(nullptr);
    EXPECT_THAT(thrown, testing::HasSubstr("suite.xml("));
    EXPECT_EQ(log.TakeLines(), (Lines{"ABORT " + thrown}));
}
