// The byte buffer, the allocator, the thread's buffer and the narrow string.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>

#include <gtest/gtest.h>

#include "siblings/Keelbase.h"

// A sanitizer's allocator is to answer an impossible request as any other does.
extern "C" MORVEX_SYMBOL_EXPORT char const * __asan_default_options();
extern "C" MORVEX_SYMBOL_EXPORT char const * __tsan_default_options();
char const * __asan_default_options() { return "allocator_may_return_null=1"; }
char const * __tsan_default_options() { return "allocator_may_return_null=1"; }

namespace {

TEST(CSimpleBufferTest, AllZeroIsTheEmptyState) {
    CSimpleBuffer buffer;
    unsigned char const zeros[sizeof buffer] = {};
    EXPECT_EQ(std::memcmp(&buffer, zeros, sizeof buffer), 0);
    EXPECT_EQ(buffer.Get(), nullptr);
}

TEST(CSimpleBufferTest, GivesWritableStorageOfTheSizeAskedFor) {
    CSimpleBuffer buffer;
    void * const storage = buffer.Get(1000);
    ASSERT_NE(storage, nullptr);
    std::memset(storage, 0x5A, 1000);
    EXPECT_EQ(buffer.Get(), storage);
    EXPECT_EQ(static_cast<unsigned char *>(storage)[999], 0x5A);
}

TEST(CSimpleBufferTest, KeepsItsStorageForASmallerRequest) {
    CSimpleBuffer buffer;
    void * const storage = buffer.Get(100);
    EXPECT_EQ(buffer.Get(10), storage);
    std::memset(buffer.Get(100), 1, 100);
    EXPECT_EQ(buffer.Get(), storage);
}

TEST(CSimpleBufferTest, GrowsForALargerRequest) {
    CSimpleBuffer buffer;
    buffer.Get(10);
    std::memset(buffer.Get(100'000), 1, 100'000);
    EXPECT_EQ(static_cast<char *>(buffer.Get())[99'999], 1);
}

TEST(CSimpleBufferTest, HasStorageAfterARequestForNothing) {
    CSimpleBuffer buffer;
    EXPECT_NE(buffer.Get(0), nullptr);
}

TEST(CSimpleBufferTest, IsAlignedForAnyCharacter) {
    CSimpleBuffer buffer;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer.Get(7)) % alignof(std::max_align_t), 0u);
}

TEST(CSimpleBufferTest, AnImpossibleRequestThrowsAndLeavesTheStorage) {
    CSimpleBuffer buffer;
    void * const storage = buffer.Get(16);
    std::size_t const volatile size = std::numeric_limits<std::size_t>::max() / 2;
    EXPECT_THROW(buffer.Get(size), std::bad_alloc);
    EXPECT_EQ(buffer.Get(), storage);
}

TEST(CMemWrapperTest, ZeroesWhatIsAskedForZeroed) {
    auto * const memory = static_cast<unsigned char *>(CMemWrapper::AllocateMemory(256, true));
    EXPECT_TRUE(std::all_of(memory, memory + 256, [](unsigned char byte) { return byte == 0; }));
    CMemWrapper::ReleaseMemory(memory);
}

TEST(CMemWrapperTest, GivesWritableMemoryThatIsNotZeroed) {
    void * const memory = CMemWrapper::AllocateMemory(256, false);
    ASSERT_NE(memory, nullptr);
    std::memset(memory, 0x5A, 256);
    CMemWrapper::ReleaseMemory(memory);
}

TEST(CMemWrapperTest, ARequestForNothingHasAnAddress) {
    for (bool const zeroed : {true, false}) {
        void * const memory = CMemWrapper::AllocateMemory(0, zeroed);
        EXPECT_NE(memory, nullptr);
        CMemWrapper::ReleaseMemory(memory);
    }
}

TEST(CMemWrapperTest, ExhaustionThrows) {
    std::size_t const volatile size = std::numeric_limits<std::size_t>::max() / 2;
    EXPECT_THROW(CMemWrapper::AllocateMemory(size, true), std::bad_alloc);
    EXPECT_THROW(CMemWrapper::AllocateMemory(size, false), std::bad_alloc);
}

TEST(CMemWrapperTest, ReleasingNothingIsHarmless) { CMemWrapper::ReleaseMemory(nullptr); }

TEST(GetFormatBufferTest, GivesAtLeastTheSizeAskedFor) {
    for (std::size_t const size : {1u, 511u, 513u, 10'000u, 1'000'000u}) {
        SCOPED_TRACE(size);
        auto * const buffer = static_cast<unsigned char *>(GetFormatBuffer(size));
        std::memset(buffer, 0x5A, size);
        EXPECT_EQ(buffer[size - 1], 0x5A);
    }
}

TEST(GetFormatBufferTest, IsOneBufferWhileNothingLargerIsAskedFor) {
    void * const buffer = GetFormatBuffer(5000);
    EXPECT_EQ(GetFormatBuffer(1), buffer);
    EXPECT_EQ(GetFormatBuffer(5000), buffer);
}

TEST(GetFormatBufferTest, EachThreadHasItsOwn) {
    auto * const mine = static_cast<char *>(GetFormatBuffer(64));
    std::strcpy(mine, "mine");
    char * other = nullptr;
    std::thread([&] {
        other = static_cast<char *>(GetFormatBuffer(64));
        std::strcpy(other, "theirs");
        EXPECT_NE(other, mine);
    }).join();
    EXPECT_STREQ(mine, "mine");
    EXPECT_EQ(GetFormatBuffer(64), mine);
}

// Destroyed after the thread's buffer, as it is made before that.
struct FormatsAtTheEnd {
    ~FormatsAtTheEnd() { std::fputs(FormatText(nullptr, nullptr, {0, 0}, "end %u", 1u), stderr); }
};

void FormatAndExit() {
    static thread_local FormatsAtTheEnd last;
    GetFormatBuffer(64);
    std::exit(0);
}

TEST(GetFormatBufferDeathTest, StillServesWhatRunsWhileTheThreadEnds) {
    EXPECT_EXIT(FormatAndExit(), testing::ExitedWithCode(0), "end 1");
}

TEST(CSafeStringTest, OwnsACopyOfItsText) {
    char source[] = "text";
    CSafeString const string(source);
    source[0] = 'X';
    EXPECT_STREQ(string.get(), "text");
    EXPECT_FALSE(string.empty());
}

TEST(CSafeStringTest, ANullTextReadsAsAnEmptyOne) {
    CSafeString const string(nullptr);
    EXPECT_TRUE(string.empty());
    EXPECT_STREQ(string.get(), "");
}

TEST(CSafeStringTest, AnEmptyTextIsEmpty) {
    CSafeString const string("");
    EXPECT_TRUE(string.empty());
    EXPECT_STREQ(string.get(), "");
}

TEST(CSafeStringTest, CopiesAreIndependent) {
    CSafeString copy(nullptr);
    {
        CSafeString const original("original");
        CSafeString const built(original);
        copy = built;
        EXPECT_NE(copy.get(), original.get());
        EXPECT_NE(built.get(), original.get());
    }
    EXPECT_STREQ(copy.get(), "original");
}

TEST(CSafeStringTest, ACopyOfANullTextReadsAsEmpty) {
    CSafeString const null(nullptr);
    CSafeString copy("full");
    copy = null;
    EXPECT_TRUE(copy.empty());
    EXPECT_TRUE(CSafeString(null).empty());
}

TEST(CSafeStringTest, SurvivesAssignmentToItself) {
    CSafeString string("text");
    CSafeString const & same = string;
    string = same;
    EXPECT_STREQ(string.get(), "text");
}

TEST(CSafeStringTest, HoldsOneTextPointer) {
    EXPECT_EQ(sizeof(CSafeString), sizeof(char *));
    EXPECT_FALSE(std::is_copy_constructible_v<CSimpleBuffer>);
}

} // namespace
