// Which files are read, in which order, and what is said when there are none.
#include "examples/suites/usb_descriptors/RecordingFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/usb_descriptors/TestFolder.h"

using namespace usb;

namespace {

std::vector<std::string> NamesOf(std::vector<RecordingFile> const & files) {
    std::vector<std::string> names;
    for (auto const & file : files)
        names.push_back(file.name);
    return names;
}

using Names = std::vector<std::string>;

} // namespace

TEST(RecordingFilesTest, RecordingsAreReadInTheOrderOfTheirNames) {
    TestFolder folder;
    folder.Write("c.bin", {3, 0, 26, 13, 10});
    folder.Write("a.bin", {});
    folder.Write("b.bin", {2});
    EXPECT_EQ(
        ReadRecordings(folder.Path()),
        (std::vector<RecordingFile>{
            {"a.bin", {}, ""}, {"b.bin", {2}, ""}, {"c.bin", {3, 0, 26, 13, 10}, ""}}));
}

TEST(RecordingFilesTest, FoldersBelowAreReadToo) {
    TestFolder folder;
    folder.Write("mouse.bin", {1});
    folder.Write("faulty/two/mouse.bin", {2});
    folder.Write("good/mouse.bin", {3});
    EXPECT_EQ(
        ReadRecordings(folder.Path()), (std::vector<RecordingFile>{
                                           {"faulty/two/mouse.bin", {2}, ""},
                                           {"good/mouse.bin", {3}, ""},
                                           {"mouse.bin", {1}, ""}}));
}

TEST(RecordingFilesTest, OtherFilesAreLeftAlone) {
    TestFolder folder;
    folder.Write("mouse.bin", {1});
    folder.Write("mouse.txt", {2});
    folder.Write("bin", {3});
    folder.Write("folder.bin/notes.txt", {4});
    EXPECT_EQ(NamesOf(ReadRecordings(folder.Path())), Names{"mouse.bin"});
}

TEST(RecordingFilesTest, FileAboveTheLimitIsReadOneByteTooFar) {
    TestFolder folder;
    folder.Write("large.bin", Bytes(MaximumRecordingSize + 5000));
    folder.Write("limit.bin", Bytes(MaximumRecordingSize));
    auto const files = ReadRecordings(folder.Path());
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].bytes.size(), MaximumRecordingSize + 1);
    EXPECT_EQ(files[0].problem, "");
    EXPECT_EQ(files[1].bytes.size(), MaximumRecordingSize);
}

TEST(RecordingFilesTest, PathWithOtherLettersOpens) {
    TestFolder folder;
    folder.Write(PathOf("Ger\xC3\xA4te/Ma\xC3\xB6s.bin"), {7});
    auto const files = ReadRecordings(PathOf(folder.Text() + "/Ger\xC3\xA4te"));
    EXPECT_EQ(files, (std::vector<RecordingFile>{{"Ma\xC3\xB6s.bin", {7}, ""}}));
}

TEST(RecordingFilesTest, FolderThatDoesNotExistIsToldWithWhatToDo) {
    TestFolder folder;
    EXPECT_EQ(
        ThrownBy([&] { ReadRecordings(folder.Path() / "none"); }),
        "The folder of recordings does not exist: " + folder.Text()
            + "/none. Give an existing folder as Recordings of section Suite.");
}

TEST(RecordingFilesTest, FileIsNoFolder) {
    TestFolder folder;
    folder.Write("mouse.bin", {1});
    EXPECT_EQ(
        ThrownBy([&] { ReadRecordings(folder.Path() / "mouse.bin"); }),
        "The folder of recordings does not exist: " + folder.Text()
            + "/mouse.bin. Give an existing folder as Recordings of section Suite.");
}

TEST(RecordingFilesTest, FolderWithoutRecordingsIsToldWithWhatToDo) {
    TestFolder folder;
    folder.Write("notes.txt", {1});
    EXPECT_EQ(
        ThrownBy([&] { ReadRecordings(folder.Path()); }),
        "The folder of recordings holds no recording: " + folder.Text()
            + ". Put recordings there, named *.bin, or give another folder as Recordings of "
              "section Suite.");
}

TEST(RecordingFilesTest, MachineDevicesAreReadInTheOrderOfTheirNames) {
    TestFolder root;
    root.Write("usb1/descriptors", {1});
    root.Write("1-2/descriptors", {2});
    root.Write("1-2:1.0/bInterfaceNumber", {'0'});
    EXPECT_EQ(
        ReadMachineDevices(root.Path()),
        (std::vector<RecordingFile>{{"1-2", {2}, ""}, {"usb1", {1}, ""}}));
}

TEST(RecordingFilesTest, MachineDevicesBringTheirBos) {
    TestFolder root;
    root.Write("2-1/descriptors", {1, 2});
    root.Write("2-1/bos_descriptors", {3, 4});
    EXPECT_EQ(
        ReadMachineDevices(root.Path()), (std::vector<RecordingFile>{{"2-1", {1, 2, 3, 4}, ""}}));
}

TEST(RecordingFilesTest, MachineWithoutUsbHasNoDevices) {
    TestFolder root;
    EXPECT_EQ(ReadMachineDevices(root.Path()), std::vector<RecordingFile>());
    EXPECT_EQ(ReadMachineDevices(root.Path() / "none"), std::vector<RecordingFile>());
}

TEST(RecordingFilesTest, FileThatCannotBeReadIsToldWithTheOthers) {
    TestFolder root;
    // A folder in a file's place fails to be read on every platform and for every user.
    std::filesystem::create_directories(root.Path() / "1-1" / "descriptors");
    root.Write("1-2/descriptors", {2});
    auto const files = ReadMachineDevices(root.Path());
    ASSERT_EQ(NamesOf(files), (Names{"1-1", "1-2"}));
    EXPECT_THAT(files[0].problem, testing::StartsWith("the file cannot be read: "));
    EXPECT_EQ(files[1], (RecordingFile{"1-2", {2}, ""}));
}
