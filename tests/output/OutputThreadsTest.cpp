// Several threads at one buffer.
#include <atomic>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "output/COutputBuffer.h"
#include "output/Transcript.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// Races need time to show where somebody watches for them.
#if defined(__SANITIZE_THREAD__)
constexpr Clock::duration HowLong = 10s;
#else
constexpr Clock::duration HowLong = 1s;
#endif

class OutputThreadsTest : public testing::Test {
protected:
    OutputThreadsTest() { COutputBuffer::InitializeDefaultFormatInfo(Record(CFM_FACE, 0)); }

    template <typename Operation>
    static std::future<void> InBackground(Operation operation) {
        return std::async(std::launch::async, operation);
    }

    // Whether it is still at work after a while in which it could have ended many times.
    static bool IsHeldUp(std::future<void> const & work) {
        return work.wait_for(100ms) == std::future_status::timeout;
    }

    COutputBuffer m_Buffer;
};

// Adds numbered texts: <producer:number>. Two of three come in a format of their own.
class Producer {
public:
    Producer(COutputBuffer & buffer, int name) : m_Buffer(buffer), m_Name(name) {}

    void AddNext() {
        std::string const text = '<' + std::to_string(m_Name) + ':' + std::to_string(m_Count) + '>';
        switch (m_Count++ % 3) {
        case 0:
            m_Buffer.AddText(text);
            return;
        case 1:
            m_Buffer.AddFormat(m_Look);
            m_Buffer.AddItem(text, nullptr);
            break;
        default:
            m_Buffer.AddItem(text, m_Look);
        }
        ++m_Pushes;
        m_Buffer.RemoveFormat(1);
    }

    int Count() const { return m_Count; }
    int Pushes() const { return m_Pushes; }

private:
    COutputBuffer & m_Buffer;
    int const m_Name;
    CFormatInfo const m_Look{0x0000FFul, true, 700};
    int m_Count = 0;
    int m_Pushes = 0;
};

// Reads tables and keeps the books: each producer's numbers have to come in order, without a gap.
class Reader {
public:
    explicit Reader(std::size_t producers) : m_Next(producers) {}

    void Read(COutputBuffer & buffer) {
        auto * const table = buffer.GetText();
        if (table == nullptr) return;
        for (auto const & [text, look] : *table) {
            if (text == nullptr)
                ++m_Changes;
            else
                Read(*text, look);
        }
        COutputBuffer::DeleteDataTable(table);
    }

    std::vector<int> const & Next() const { return m_Next; }
    int Changes() const { return m_Changes; }
    int Formatted() const { return m_Formatted; }
    int Faults() const { return m_Faults; }

private:
    void Read(std::wstring const & text, CFormatInfo const & look) {
        if (look.format.dwMask != 0) ++m_Formatted;
        if (!text.ends_with(L' ')) ++m_Faults;
        std::size_t at = 0;
        while (at < text.size() && text[at] == L'<') {
            std::size_t used = 0;
            auto const name = std::stoul(text.substr(at + 1, 20), &used);
            at += 1 + used;
            if (name >= m_Next.size() || text[at] != L':') break;
            if (std::stoi(text.substr(at + 1, 20), &used) != m_Next[name]++) ++m_Faults;
            at += 1 + used;
            if (text[at] != L'>') break;
            ++at;
        }
        if (at + 1 != text.size()) ++m_Faults;
    }

    std::vector<int> m_Next;
    int m_Changes = 0;
    int m_Formatted = 0;
    int m_Faults = 0;
};

} // namespace

TEST_F(OutputThreadsTest, NoEntryOfTwoProducersIsLost) {
    Producer first(m_Buffer, 0);
    Producer second(m_Buffer, 1);
    std::atomic<int> running = 2;
    auto const deadline = Clock::now() + HowLong;
    auto const produce = [&](Producer & producer) {
        while (Clock::now() < deadline)
            producer.AddNext();
        --running;
    };
    std::thread threads[] = {
        std::thread(produce, std::ref(first)), std::thread(produce, std::ref(second))};
    Reader reader(2);
    while (running > 0)
        reader.Read(m_Buffer);
    for (auto & thread : threads)
        thread.join();
    reader.Read(m_Buffer);

    EXPECT_EQ(reader.Next(), (std::vector<int>{first.Count(), second.Count()}));
    EXPECT_EQ(reader.Faults(), 0);
    // A change and its restore, or a formatted text and its restore.
    EXPECT_EQ(reader.Changes() + reader.Formatted(), 2 * (first.Pushes() + second.Pushes()));
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
    EXPECT_EQ(m_Buffer.GetText(), nullptr);
    EXPECT_GT(first.Pushes(), 0);
    EXPECT_GT(second.Pushes(), 0);
}

TEST_F(OutputThreadsTest, CallsBetweenLockAndUnlockStayTogether) {
    m_Buffer.Lock();
    auto const other = InBackground([this] { m_Buffer.AddText(std::string("other")); });
    m_Buffer.AddText(std::string("a"));
    EXPECT_TRUE(IsHeldUp(other));
    m_Buffer.AddText(std::string("b"));
    m_Buffer.Unlock();
    other.wait();
    EXPECT_EQ(Take(m_Buffer), Lines{"\"abother \" mask=00000000 effects=44000000 @0,0"});
}

TEST_F(OutputThreadsTest, TheLockIsOneForAllBuffers) {
    COutputBuffer other;
    m_Buffer.Lock();
    auto const work = InBackground([&other] { other.AddText(std::string("a")); });
    EXPECT_TRUE(IsHeldUp(work));
    m_Buffer.Unlock();
    work.wait();
}

TEST_F(OutputThreadsTest, TheLockMayBeTakenAgainByItsHolder) {
    m_Buffer.Lock();
    m_Buffer.Lock();
    m_Buffer.Unlock();
    auto const other = InBackground([this] { m_Buffer.Clear(); });
    EXPECT_TRUE(IsHeldUp(other));
    m_Buffer.Unlock();
    other.wait();
}

TEST_F(OutputThreadsTest, TableAndStackOperationsTakeTheLock) {
    using Operation = void (*)(COutputBuffer & buffer);
    Operation const operations[] = {
        [](COutputBuffer & buffer) { buffer.AddText(std::string("a")); },
        [](COutputBuffer & buffer) { buffer.AddItem(std::wstring(L"a"), CFormatInfo()); },
        [](COutputBuffer & buffer) { buffer.AddFormat(CFormatInfo()); },
        [](COutputBuffer & buffer) { buffer.RemoveFormat(1); },
        [](COutputBuffer & buffer) {
            CFormatInfo out;
            buffer.GetCurrentFormat(out, 0);
        },
        [](COutputBuffer & buffer) { buffer.SetDefaultFormatInfo(); },
        [](COutputBuffer & buffer) { COutputBuffer::DeleteDataTable(buffer.GetText()); },
        [](COutputBuffer &) { COutputBuffer::DeleteDataTable(new COutputBuffer::DataTable); },
        [](COutputBuffer & buffer) { buffer.Clear(); },
        [](COutputBuffer &) { COutputBuffer::InitializeDefaultFormatInfo(Record(0, 0)); },
        [](COutputBuffer &) { COutputBuffer const buffer; },
    };
    std::vector<std::future<void>> works;
    m_Buffer.Lock();
    for (auto const operation : operations)
        works.push_back(InBackground([&, operation] { operation(m_Buffer); }));
    std::this_thread::sleep_for(100ms);
    for (auto const & work : works)
        EXPECT_EQ(work.wait_for(0s), std::future_status::timeout) << &work - works.data();
    m_Buffer.Unlock();
}

TEST_F(OutputThreadsTest, QueriesDoNotTakeTheLock) {
    m_Buffer.AddFormat(CFormatInfo());
    m_Buffer.Lock();
    auto const other = std::async(std::launch::async, [this] {
        return m_Buffer.FormatDepth() + COutputBuffer::VerbosityLevel()
               + COutputBuffer::GetDefaultFormat().dwMask;
    });
    EXPECT_EQ(other.wait_for(10s), std::future_status::ready);
    m_Buffer.Unlock();
}

TEST(DefaultFormatTest, OfSeveralThreadsThatSetItOneWins) {
    std::vector<std::future<DWORD>> seen;
    for (DWORD mask = 1; mask <= 4; ++mask)
        seen.push_back(std::async(std::launch::async, [mask] {
            CFormatInfo::InitializeDefaultFormat(Record(mask, 0));
            return CFormatInfo::GetDefaultFormat().dwMask;
        }));
    DWORD const winner = seen.front().get();
    EXPECT_GE(winner, 1u);
    EXPECT_LE(winner, 4u);
    for (std::size_t i = 1; i < seen.size(); ++i)
        EXPECT_EQ(seen[i].get(), winner);
}
