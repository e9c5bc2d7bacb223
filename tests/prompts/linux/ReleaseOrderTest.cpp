// The order in which a narrow form gives its temporaries back.
//
// Seen through the heap that the program shares with the library that makes the texts, which is so
// on Linux alone.
#include <gtest/gtest.h>

#include <algorithm>

#include "app/CAppState.h"
#include "prompts/RecordingInput.h"
#include "support/Allocations.h"

namespace {

class ReleaseOrderTest : public testing::Test {
protected:
    ReleaseOrderTest() { CAppState::InitAppState(ApplicationFamilyDefault); }
    ~ReleaseOrderTest() override { CAppState::CleanupAppState(); }

    // Where the temporaries of a question stood: its texts, then its list.
    static std::vector<void const *> Places(RecordingInput const & input) {
        auto places = input.m_TextPlaces;
        std::erase(places, nullptr);
        return places;
    }

    // Those of the places that were released, in the order of their last release.
    static std::vector<void const *>
    Released(AllocationWatch const & watch, std::vector<void const *> const & places) {
        auto released = watch.Released();
        std::erase_if(released, [&](void const * block) {
            return std::find(places.begin(), places.end(), block) == places.end();
        });
        return {released.end() - static_cast<std::ptrdiff_t>(places.size()), released.end()};
    }

    std::string m_First = "first";
    std::string m_Second = "second";
    std::string m_Third = "third";
    std::vector<std::string> m_List = {"one", "two"};
};

TEST_F(ReleaseOrderTest, TheListGoesFirstAndTheTextsFromTheLast) {
    RecordingInput input;
    AllocationWatch watch;
    input.GetSelectionFromListAllowAbort(
        &m_First, &m_Second, &m_Third, &m_List, nullptr, nullptr, 0, nullptr, nullptr);
    watch.End();
    auto expected = Places(input);
    ASSERT_EQ(expected.size(), 4u);
    auto const released = Released(watch, expected);
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(released, expected);
}

TEST_F(ReleaseOrderTest, TextsWithoutAListGoFromTheLast) {
    RecordingInput input;
    AllocationWatch watch;
    input.DisplayInfoToUser(&m_First, 0, true, nullptr, &m_Second, nullptr);
    watch.End();
    auto expected = Places(input);
    ASSERT_EQ(expected.size(), 2u);
    auto const released = Released(watch, expected);
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(released, expected);
}

} // namespace
