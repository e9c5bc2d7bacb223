// What of an entry's style reaches the page, and that it can be read there.
#include "siblings/quillonlog/reports/EntryLook.h"

#include <gtest/gtest.h>

namespace {

TEST(EntryLookTest, StyleWithoutAnythingKnownIsAClassAlone) {
    EXPECT_EQ(EntryLook::Attributes("i", ""), " class=\"i\"");
    EXPECT_EQ(
        EntryLook::Attributes("i", "position:fixed;content:url(x)\"><script>"), " class=\"i\"");
}

TEST(EntryLookTest, WeightSlantAndUnderlineAreClasses) {
    EXPECT_EQ(
        EntryLook::Attributes("i", "font-weight: bold;font-style:italic;text-decoration:underline"),
        " class=\"i sb si su\"");
    EXPECT_EQ(EntryLook::Attributes("i", "font-weight: normal"), " class=\"i\"");
}

TEST(EntryLookTest, ColorThatCanBeReadStays) {
    EXPECT_EQ(
        EntryLook::Attributes("i", "color:#0000AA"),
        " class=\"i sc\" style=\"--l:#0000aa;--d:#8080d5\"");
}

TEST(EntryLookTest, ColorMovesAwayFromItsGround) {
    EXPECT_EQ(
        EntryLook::Attributes("f", "color:#FFFFFF"),
        " class=\"f sc\" style=\"--l:#737373;--d:#ffffff\"");
    EXPECT_EQ(
        EntryLook::Attributes("f", "color:#000000"),
        " class=\"f sc\" style=\"--l:#000000;--d:#8c8c8c\"");
}

// The library's own form has an equals sign in front of the ground.
TEST(EntryLookTest, GroundOfTheEntryCountsInBoth) {
    EXPECT_EQ(
        EntryLook::Attributes("w", "color:#FF0000;display=inline;background-color:#FFFF00"),
        " class=\"w sc sg\" style=\"--l:#d90000;--d:#d90000;--g:#ffff00\"");
}

TEST(EntryLookTest, ColorsOfAnotherFormAreLeftOut) {
    for (char const * const style :
         {"color:red", "color:#12345", "color:#12345G", "color:#1234567"})
        EXPECT_EQ(EntryLook::Attributes("i", style), " class=\"i\"") << style;
}

} // namespace
