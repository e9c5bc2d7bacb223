// The small value that two threads share.
#include "app/SharedValue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>

namespace {

static_assert(sizeof(SharedValue<bool>) == sizeof(bool));
static_assert(sizeof(SharedValue<std::uint32_t>) == sizeof(std::uint32_t));

TEST(SharedValueTest, CopiesTakeTheValueAndStandAlone) {
    SharedValue<std::uint32_t> source = 7;
    SharedValue<std::uint32_t> const copy(source);
    SharedValue<std::uint32_t> assigned = 0;
    assigned = source;
    source = 8;
    EXPECT_EQ(copy, 7u);
    EXPECT_EQ(assigned, 7u);
    EXPECT_EQ(source, 8u);
}

TEST(SharedValueTest, AnotherThreadSeesTheValueInTheEnd) {
    SharedValue<bool> done = false;
    std::thread setter([&] { done = true; });
    while (!done)
        std::this_thread::yield();
    setter.join();
    EXPECT_TRUE(done);
}

} // namespace
