// Two threads: one asks, one terminates.
#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <thread>

#include "prompt_dialogs/DialogBench.h"

namespace {

// A long run says how many rounds in MORVEX_DIALOG_ROUNDS.
int Rounds() {
    char const * const rounds = std::getenv("MORVEX_DIALOG_ROUNDS");
    return rounds != nullptr ? std::atoi(rounds) : 500;
}

class CMFCDialogMXUserInputThreadTest : public DialogBench {
protected:
    // The dialogs of these tests end by themselves or when they are destroyed.
    void LetDialogsEnd(unsigned afterYields) {
        Dialogs().onWait = [afterYields] {
            for (unsigned i = 0; i < afterYields; ++i)
                std::this_thread::yield();
        };
    }

    TS_STATUS Ask() { return m_Input->GetString(nullptr, nullptr, nullptr, 5, nullptr, nullptr); }
};

TEST_F(CMFCDialogMXUserInputThreadTest, OneAsksAndOneTerminatesRoundByRound) {
    int const rounds = Rounds();
    LetDialogsEnd(3);
    // Each round is terminated once, at whatever moment of it: a busy machine could otherwise let
    // the terminating thread take the mutex over and over.
    std::atomic<int> round = 0;
    std::thread terminator([&] {
        for (int done = 0; done < rounds; ++done) {
            while (round <= done)
                std::this_thread::yield();
            EXPECT_EQ(m_Input->TerminateDialog(), TS_SUCCESS);
        }
    });
    int answered = 0;
    int ended = 0;
    for (int i = 0; i < rounds; ++i) {
        round = i + 1;
        TS_STATUS const result = Ask();
        answered += result == TS_SUCCESS;
        ended += result == TS_DIALOG_BUSY;
        if (i % 100 == 0) Calls();
    }
    terminator.join();
    EXPECT_EQ(answered + ended, rounds);
    EXPECT_TRUE(IsIdle());
    EXPECT_FALSE(DialogInput::m_CurrentlyTerminating);
}

TEST_F(CMFCDialogMXUserInputThreadTest, TheSecondToTerminateWaitsUntilTheDialogIsGone) {
    CMXGuiEvent event(0);
    m_Input->GetString(nullptr, nullptr, nullptr, 5, &event, nullptr);
    std::atomic<bool> secondIsBack = false;
    std::atomic<bool> secondHasBegun = false;
    bool wasEarly = true;
    std::thread second;
    Dialogs().onDestroyed = [&] {
        second = std::thread([&] {
            secondHasBegun = true;
            m_Input->TerminateDialog();
            secondIsBack = true;
        });
        while (!secondHasBegun)
            std::this_thread::yield();
        Sleep(20);
        wasEarly = secondIsBack;
    };
    Calls();
    EXPECT_EQ(m_Input->TerminateDialog(), TS_SUCCESS);
    second.join();
    EXPECT_FALSE(wasEarly);
    EXPECT_TRUE(IsIdle());
    Lines const calls = Calls();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "destroy"), 1);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "state gone"), 1);
}

} // namespace
