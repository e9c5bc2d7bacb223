// What a lookup in the argument store costs: no memory while the names are short.
#include <gtest/gtest.h>

#include "settings/CIniArgs.h"
#include "support/Allocations.h"

namespace {

template <typename Value>
std::size_t AllocationsOfRead(CIniArgs & args, std::string const & section, Value preset) {
    std::string const key = "FifteenLetters!";
    AllocationWatch watch;
    bool const found = args.GetArg(section, key, preset);
    watch.End();
    return found ? watch.Allocations() : 1000;
}

TEST(CIniArgsAllocationTest, ReadingUnderShortNamesTakesNoMemory) {
    CIniArgs args;
    args.AddArg("A Section's Name", "key", "1");
    args.AddArg("FifteenLetters.", "fifteenletters!", "0x10");
    std::string const section = "FIFTEENLETTERS.";
    EXPECT_EQ(AllocationsOfRead(args, section, 0LL), 0u);
    EXPECT_EQ(AllocationsOfRead(args, section, 0ULL), 0u);
    EXPECT_EQ(AllocationsOfRead(args, section, false), 0u);
    EXPECT_EQ(AllocationsOfRead<signed char>(args, section, 0), 0u);
    EXPECT_EQ(AllocationsOfRead<std::string *>(args, section, nullptr), 0u);
}

} // namespace
