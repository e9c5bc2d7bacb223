// A buffer for which memory runs out: what has come in stays as it was, and nobody is locked out.
#include <chrono>
#include <future>
#include <new>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "output/COutputBuffer.h"
#include "output/Transcript.h"
#include "support/Allocations.h"

namespace {

using namespace std::chrono_literals;

// Long enough to need memory of its own.
std::wstring const kText(100, L'x');

using State = std::tuple<unsigned long long, Lines>;

class OutputMemoryTest : public testing::Test {
protected:
    OutputMemoryTest() { COutputBuffer::InitializeDefaultFormatInfo(Record(CFM_FACE, 0)); }

    // A stack of two formats, and a table without room for one more entry.
    void Fill() {
        m_Buffer.Clear();
        m_Buffer.AddFormat(CFormatInfo(0x0000FFul));
        m_Buffer.AddFormat(CFormatInfo(true, 700));
        COutputBuffer::DeleteDataTable(m_Buffer.GetText());
    }

    // What is in force and what has come in.
    State TakeState() {
        auto const depth = m_Buffer.FormatDepth();
        return {depth, Take(m_Buffer)};
    }

    // True: `operation` got through with so much memory.
    template <typename Operation>
    bool Try(std::size_t granted, Operation const & operation) {
        AllocationWatch const watch(granted);
        try {
            operation();
        } catch (std::bad_alloc const &) {
            return false;
        }
        return true;
    }

    // Frees the lock if it is held, so that a test that fails does not hang.
    bool IsLocked() {
        auto other = std::async(std::launch::async, [this] {
            m_Buffer.Lock();
            m_Buffer.Unlock();
        });
        bool const isLocked = other.wait_for(10s) == std::future_status::timeout;
        if (isLocked) m_Buffer.Unlock();
        return isLocked;
    }

    // Lets the operation run out of memory at each of its allocations in turn, until it gets
    // through. `prepare` comes before each attempt.
    template <typename Prepare, typename Operation>
    void RunOut(Prepare const & prepare, Operation const & operation) {
        prepare();
        State const before = TakeState();
        std::size_t granted = 0;
        for (;; ++granted) {
            ASSERT_LT(granted, 100u);
            prepare();
            if (Try(granted, operation)) break;
            ASSERT_FALSE(IsLocked());
            EXPECT_EQ(TakeState(), before) << "after " << granted << " allocations";
        }
        EXPECT_GT(granted, 0u);
        EXPECT_FALSE(IsLocked());
    }

    template <typename Operation>
    void RunOut(Operation const & operation) {
        RunOut([this] { Fill(); }, operation);
    }

    COutputBuffer m_Buffer;
};

TEST_F(OutputMemoryTest, ATextIsAddedWholeOrNotAtAll) {
    RunOut([this] { m_Buffer.AddText(kText); });
}

TEST_F(OutputMemoryTest, ATextJoinsWholeOrNotAtAll) {
    RunOut(
        [this] {
            Fill();
            m_Buffer.AddText(std::wstring(L"first"));
        },
        [this] { m_Buffer.AddText(kText); });
}

TEST_F(OutputMemoryTest, AFormatIsPushedAndAddedOrNeither) {
    RunOut([this] { m_Buffer.AddFormat(CFormatInfo(0x00FF00ul)); });
}

TEST_F(OutputMemoryTest, ATextWithAFormatIsPushedAndAddedOrNeither) {
    RunOut([this] { m_Buffer.AddItem(kText, CFormatInfo(0x00FF00ul)); });
}

TEST_F(OutputMemoryTest, AFormatThatCannotBeRestoredIsNotPopped) {
    RunOut([this] { m_Buffer.RemoveFormat(1); });
}

TEST_F(OutputMemoryTest, AFormatThatCannotBeReadIsNotPopped) {
    CFormatInfo out;
    RunOut([&] { m_Buffer.GetCurrentFormat(out, 1); });
}

TEST_F(OutputMemoryTest, AResetThatCannotBeAddedLeavesTheStack) {
    RunOut([this] { m_Buffer.SetDefaultFormatInfo(); });
}

TEST_F(OutputMemoryTest, ATableThatCannotBeReplacedStays) {
    RunOut(
        [this] {
            Fill();
            m_Buffer.AddText(kText);
        },
        [this] { COutputBuffer::DeleteDataTable(m_Buffer.GetText()); });
}

// A deep stack takes memory in blocks: a push may be refused although the table has room.
TEST_F(OutputMemoryTest, AStackThatCannotGrowLeavesTheTable) {
    for (int depth = 0; depth < 20; ++depth) {
        SCOPED_TRACE(depth);
        RunOut(
            [&] {
                Fill();
                for (int i = 0; i < depth; ++i)
                    m_Buffer.AddFormat(CFormatInfo());
                COutputBuffer::DeleteDataTable(m_Buffer.GetText());
            },
            [this] { m_Buffer.AddFormat(CFormatInfo(0x00FF00ul)); });
    }
}

TEST_F(OutputMemoryTest, ABufferThatCannotBeMadeLeavesTheLockFree) {
    EXPECT_FALSE(Try(0, [] { COutputBuffer const buffer; }));
    EXPECT_FALSE(IsLocked());
}

TEST(DefaultFormatMemoryTest, TheDefaultFormatIsSetWithoutMemory) {
    AllocationWatch watch(0);
    EXPECT_NO_THROW(CFormatInfo::InitializeDefaultFormat(Record(CFM_FACE, 0)));
    watch.End();
    EXPECT_EQ(watch.Allocations(), 0u);
    EXPECT_EQ(CFormatInfo::GetDefaultFormat().dwMask, CFM_FACE);
}

} // namespace
