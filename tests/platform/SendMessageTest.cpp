// Sent messages: where the procedure runs, who waits for whom, and how a sender is let go.
#include <atomic>
#include <ostream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Messaging.h"
#include "tests/platform/Host.h"
#include "tests/platform/TestWindow.h"

namespace {

constexpr UINT RING = WM_APP + 20;
constexpr UINT END = WM_APP + 22;

struct Outcome {
    LRESULT result;
    DWORD error;

    bool operator==(Outcome const &) const = default;
};

void PrintTo(Outcome const & outcome, std::ostream * out) {
    *out << outcome.result << " with error " << outcome.error;
}

Outcome Send(HWND window, UINT message = RING, WPARAM wParam = 0, LPARAM lParam = 0) {
    SetLastError(0);
    auto const result = SendMessageA(window, message, wParam, lParam);
    return {result, GetLastError()};
}

constexpr Outcome NO_WINDOW{0, ERROR_INVALID_WINDOW_HANDLE};

void ExpectLetGo(Outcome const & outcome) {
    EXPECT_EQ(outcome.result, 0);
    // Wine leaves an error code of its own.
    if (!UnderWine()) {
        EXPECT_EQ(outcome.error, ERROR_INVALID_WINDOW_HANDLE);
    }
}

// A window of the calling thread that ends with the scope.
class OwnWindow {
public:
    explicit OwnWindow(Handler handler) {
        RegisterTestClass();
        ThreadHandler() = std::move(handler);
        handle = MakeTestWindow();
    }
    OwnWindow(OwnWindow const &) = delete;
    OwnWindow & operator=(OwnWindow const &) = delete;
    ~OwnWindow() {
        ThreadHandler() = nullptr;
        DestroyWindow(handle);
    }

    HWND handle;
};

// Looks at most ten seconds for something to happen.
template <typename Happened>
bool WaitUntil(Happened happened) {
    for (int i = 0; i < 10'000 && !happened(); ++i)
        Sleep(1);
    return happened();
}

// Another thread that sends to a window of this one.
class Sender {
public:
    explicit Sender(HWND window, WPARAM wParam = 0)
        : m_Thread([this, window, wParam] {
              m_IsSending = true;
              m_Outcome = Send(window, RING, wParam);
              m_IsBack = true;
          }) {}
    Sender(Sender const &) = delete;
    Sender & operator=(Sender const &) = delete;
    ~Sender() { Join(); }

    bool IsSending() const { return m_IsSending; }
    bool IsBack() const { return m_IsBack; }

    // How the send ended. Pumps until then, so that a test that fails does not hang.
    Outcome End() {
        Join();
        return m_Outcome;
    }

private:
    void Join() {
        MSG message{};
        while (!m_IsBack) {
            PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
            Sleep(1);
        }
        if (m_Thread.joinable()) {
            m_Thread.join();
        }
    }

    std::atomic<bool> m_IsSending = false;
    std::atomic<bool> m_IsBack = false;
    Outcome m_Outcome{-1, 0};
    std::thread m_Thread;
};

TEST(SendMessageTest, AProcedureCanTellAMessageThatAnotherThreadHasSent) {
    std::atomic<int> sent{-1};
    WindowThread const other([&](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != RING) return DefWindowProcA(window, message, wParam, lParam);
        sent = InSendMessage() != 0;
        return LRESULT{0};
    });
    SendMessageA(other.Window(), RING, 0, 0);
    EXPECT_EQ(sent, 1);
    PostMessageA(other.Window(), RING, 0, 0);
    SendMessageA(other.Window(), END, 0, 0);
    for (int moment = 0; moment < 100 && sent == 1; ++moment)
        Sleep(A_MOMENT);
    EXPECT_EQ(sent, 0);
    EXPECT_EQ(InSendMessage(), FALSE);
}

TEST(SendMessageTest, AMessageOfTheOwnThreadIsNotTakenForOneOfAnother) {
    int sent = -1;
    OwnWindow const own([&](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != RING) return DefWindowProcA(window, message, wParam, lParam);
        sent = InSendMessage() != 0;
        return LRESULT{0};
    });
    SendMessageA(own.handle, RING, 0, 0);
    EXPECT_EQ(sent, 0);
}

} // namespace

TEST(SendMessageTest, OnItsOwnThreadTheProcedureRunsAtOnce) {
    OwnWindow const window([](HWND, UINT message, WPARAM wParam, LPARAM lParam) {
        return message == RING ? static_cast<LRESULT>(wParam) + lParam : 0;
    });
    EXPECT_EQ(SendMessageA(window.handle, RING, 40, 2), 42);
}

TEST(SendMessageTest, FromAnotherThreadTheProcedureRunsOnTheWindowsThread) {
    std::atomic<DWORD> ranOn = 0;
    WindowThread const host([&](HWND, UINT, WPARAM wParam, LPARAM lParam) {
        ranOn = GetCurrentThreadId();
        return static_cast<LRESULT>(wParam) - lParam;
    });
    EXPECT_EQ(SendMessageA(host.Window(), RING, 1, 3), -2);
    EXPECT_NE(ranOn, 0u);
    EXPECT_NE(ranOn, GetCurrentThreadId());
}

// What the procedure writes is the sender's to read without a lock.
TEST(SendMessageTest, SenderSeesWhatTheProcedureHasDone) {
    std::string text;
    WindowThread const host([&](HWND, UINT, WPARAM, LPARAM) {
        text += "served";
        return LRESULT{1};
    });
    text = "rung and ";
    SendMessageA(host.Window(), RING, 0, 0);
    EXPECT_EQ(text, "rung and served");
}

TEST(SendMessageTest, SenderWaitsUntilTheOwnerPeeks) {
    OwnWindow const window([](auto...) { return LRESULT{5}; });
    Sender sender(window.handle);
    ASSERT_TRUE(WaitUntil(SentMessageWaits));
    EXPECT_FALSE(sender.IsBack());
    MSG message{};
    EXPECT_FALSE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(sender.End().result, 5);
}

TEST(SendMessageTest, GetServesSendersWhileItWaits) {
    OwnWindow const window([](auto...) { return LRESULT{5}; });
    LRESULT result = 0;
    std::thread sender([&] {
        result = SendMessageA(window.handle, RING, 0, 0);
        PostMessageA(window.handle, END, 0, 0);
    });
    MSG message{};
    EXPECT_GT(GetMessageA(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.message, END);
    EXPECT_EQ(result, 5);
    sender.join();
}

TEST(SendMessageTest, SentMessagesOvertakePostedOnes) {
    std::vector<UINT> heard;
    OwnWindow const window([&](HWND, UINT message, WPARAM, LPARAM) {
        heard.push_back(message);
        return LRESULT{0};
    });
    PostMessageA(window.handle, END, 0, 0);
    Sender const sender(window.handle);
    MSG message{};
    // Leaves the posted message where it is.
    auto const isServed = [&] {
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE);
        return !heard.empty();
    };
    EXPECT_TRUE(WaitUntil(isServed));
    EXPECT_GT(GetMessageA(&message, nullptr, 0, 0), 0);
    DispatchMessageA(&message);
    EXPECT_EQ(heard, (std::vector<UINT>{RING, END}));
}

TEST(SendMessageTest, FilterDoesNotHoldBackSenders) {
    bool isServed = false;
    OwnWindow const window([&](auto...) {
        isServed = true;
        return LRESULT{5};
    });
    Sender const sender(window.handle);
    ASSERT_TRUE(WaitUntil(SentMessageWaits));
    MSG message{};
    EXPECT_FALSE(PeekMessageA(&message, window.handle, END, END, PM_REMOVE));
    EXPECT_TRUE(isServed);
}

TEST(SendMessageTest, WindowThatIsNullOrGoneGivesZero) {
    HWND gone = nullptr;
    {
        gone = OwnWindow([](auto...) { return LRESULT{5}; }).handle;
    }
    EXPECT_EQ(Send(nullptr), NO_WINDOW);
    EXPECT_EQ(Send(gone), NO_WINDOW);
    EXPECT_EQ(Send(reinterpret_cast<HWND>(0x7FFF0)), NO_WINDOW);
}

TEST(SendMessageTest, OwnerThatSendsBackIsServedByTheSender) {
    std::thread::id servedOn;
    OwnWindow const mine([&](HWND, UINT, WPARAM wParam, LPARAM) {
        servedOn = std::this_thread::get_id();
        return static_cast<LRESULT>(wParam) * 2;
    });
    WindowThread const host([&](HWND, UINT, WPARAM wParam, LPARAM) {
        return SendMessageA(mine.handle, RING, wParam + 1, 0) + 1;
    });
    EXPECT_EQ(SendMessageA(host.Window(), RING, 20, 0), 43);
    EXPECT_EQ(servedOn, std::this_thread::get_id());
}

TEST(SendMessageTest, PostedMessagesWaitWhileTheirThreadIsInASend) {
    int dispatched = 0;
    OwnWindow const mine([&](auto...) {
        ++dispatched;
        return LRESULT{0};
    });
    WindowThread const host([](auto...) {
        Sleep(A_MOMENT);
        return LRESULT{1};
    });
    PostMessageA(mine.handle, RING, 0, 0);
    EXPECT_EQ(SendMessageA(host.Window(), RING, 0, 0), 1);
    EXPECT_EQ(dispatched, 0);
    MSG message{};
    EXPECT_TRUE(PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE));
}

TEST(SendMessageTest, SenderIsLetGoWhenTheWindowEnds) {
    OwnWindow const window([](auto...) { return LRESULT{9}; });
    Sender sender(window.handle);
    ASSERT_TRUE(WaitUntil(SentMessageWaits));
    DestroyWindow(window.handle);
    ExpectLetGo(sender.End());
}

TEST(SendMessageTest, MessageThatEndsItsWindowIsStillAnswered) {
    WindowThread const host([](HWND target, UINT message, WPARAM, LPARAM) {
        if (message == END) {
            DestroyWindow(target);
            PostQuitMessage(0);
        }
        return LRESULT{9};
    });
    EXPECT_EQ(SendMessageA(host.Window(), END, 0, 0), 9);
}

TEST(SendMessageTest, SenderIsLetGoWhenTheThreadEnds) {
    RegisterTestClass();
    std::atomic<HWND> window = nullptr;
    std::thread owner([&] {
        window = MakeTestWindow();
        EXPECT_TRUE(WaitUntil(SentMessageWaits));
    });
    while (window == nullptr) {
        Sleep(1);
    }
    ExpectLetGo(Send(window));
    owner.join();
}

namespace {

// Three senders, one after another, who are served when all have had the time to come. No call
// tells how many wait: what is heard is in order unless one of them was held up.
std::vector<WPARAM> HeardOfThree() {
    std::vector<WPARAM> heard;
    OwnWindow const window([&](HWND, UINT, WPARAM wParam, LPARAM) {
        heard.push_back(wParam);
        return LRESULT{0};
    });
    Sender const first(window.handle, 1);
    EXPECT_TRUE(WaitUntil(SentMessageWaits));
    Sender const second(window.handle, 2);
    EXPECT_TRUE(WaitUntil([&] { return second.IsSending(); }));
    Sleep(A_MOMENT);
    Sender third(window.handle, 3);
    EXPECT_TRUE(WaitUntil([&] { return third.IsSending(); }));
    Sleep(A_MOMENT);
    third.End();
    return heard;
}

} // namespace

TEST(SendMessageTest, SendersAreServedInTheOrderOfTheirSending) {
    std::vector<WPARAM> heard;
    for (int attempt = 0; attempt < 10 && heard != std::vector<WPARAM>{1, 2, 3}; ++attempt)
        heard = HeardOfThree();
    EXPECT_EQ(heard, (std::vector<WPARAM>{1, 2, 3}));
}
