// Bytes that nobody meant: every one of them ends in findings, none in a crash or an endless loop.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "examples/suites/usb_descriptors/Speeds.h"
#include "tests/usb_descriptors/TestDevice.h"

using namespace usb;

namespace {

std::vector<Bytes> AllRecordings() {
    std::vector<std::filesystem::path> paths;
    for (auto const & entry : std::filesystem::recursive_directory_iterator(RecordingsFolder()))
        if (entry.path().extension() == ".bin") paths.push_back(entry.path());
    std::ranges::sort(paths); // the folder's order is the file system's
    std::vector<Bytes> all;
    for (auto const & path : paths)
        all.push_back(ReadFile(path));
    return all;
}

// Every finding must point at a field inside the recording and hold the value that stands there.
void ExpectSound(Bytes const & bytes) {
    for (auto const & finding : FindingsIn(bytes)) {
        std::uint32_t value = 0;
        for (int i = finding.width; i-- != 0;) {
            std::size_t const at = finding.offset + static_cast<std::size_t>(i);
            value = value << 8 | (at < bytes.size() ? bytes[at] : 0u);
        }
        ASSERT_EQ(finding.value, value) << ToText(finding);
        ASSERT_TRUE(finding.offset < bytes.size() || bytes.empty()) << ToText(finding);
        ASSERT_FALSE(finding.text.empty());
    }
}

class Mutator {
public:
    Bytes Mutate(Bytes bytes) {
        for (auto edits = Below(8) + 1; edits != 0; --edits)
            Edit(bytes);
        return bytes;
    }

    std::size_t Below(std::size_t limit) { return m_Random() % limit; }

private:
    void Edit(Bytes & bytes) {
        if (bytes.empty()) {
            bytes.resize(Below(64), 0x05);
            return;
        }
        auto const at = bytes.begin() + static_cast<std::ptrdiff_t>(Below(bytes.size()));
        auto const value = static_cast<std::uint8_t>(m_Random());
        switch (Below(4)) {
        case 0:
            *at = value;
            break;
        case 1:
            *at = static_cast<std::uint8_t>(*at ^ 1u << Below(8));
            break;
        case 2:
            bytes.erase(at);
            break;
        default:
            bytes.insert(at, value);
        }
    }

    std::mt19937 m_Random{20261120};
};

} // namespace

TEST(MutationTest, EveryPrefixOfEveryRecordingEnds) {
    for (auto const & whole : AllRecordings())
        for (std::size_t size = 0; size <= whole.size(); ++size)
            ExpectSound(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
}

TEST(MutationTest, PrefixOfAGoodRecordingIsNeverGood) {
    for (auto const & entry : std::filesystem::directory_iterator(RecordingsFolder() / "good")) {
        SCOPED_TRACE(entry.path().string());
        Bytes const whole = ReadFile(entry.path());
        // Without its BOS the storage device is a whole recording again.
        std::size_t const withoutStore =
            entry.path().stem() == "super_speed_storage" ? 139 : whole.size();
        for (std::size_t size = 0; size < whole.size(); ++size) {
            if (size == withoutStore) continue;
            Bytes const prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_EQ(FindingsIn(prefix).size(), 1u) << size;
        }
    }
}

TEST(MutationTest, TwentyThousandMutationsEnd) {
    auto const recordings = AllRecordings();
    Mutator mutator;
    for (int i = 0; i < 20000; ++i) {
        Bytes const bytes = mutator.Mutate(recordings[mutator.Below(recordings.size())]);
        ASSERT_NO_FATAL_FAILURE(ExpectSound(bytes)) << "mutation " << i;
        auto const parsed = ParseRecording(bytes);
        if (parsed.device) NamesOf(SpeedsOfAll(*parsed.device));
    }
}

TEST(MutationTest, LongestWalkOfTheSmallestStepsEnds) {
    Bytes bytes = ReadGood("low_speed_mouse");
    while (bytes.size() + 2 <= MaximumRecordingSize)
        bytes.insert(bytes.end(), {2, 0x41});
    EXPECT_EQ(
        FindingsIn(bytes), Fail(
                               "USB 2.0 9.6.3 wTotalLength", 20, 34, 2,
                               "says 34 bytes, the descriptors that are here have 1048558"));
}

TEST(MutationTest, AsManyInterfacesAndAssociationsAsFitEnd) {
    Bytes bytes = ReadGood("low_speed_mouse");
    for (unsigned i = 0; bytes.size() + 17 <= MaximumRecordingSize; ++i)
        bytes.insert(
            bytes.end(),
            {8, 0x0B, 0, 255, 1, 0, 0, 0, 9, 4, static_cast<std::uint8_t>(i), 1, 0, 0xFF, 0, 0, 0});
    ExpectSound(bytes);
}
