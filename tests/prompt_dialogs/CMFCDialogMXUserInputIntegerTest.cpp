// The question for a number: its bounds, its rounds, and the two lines with shifted numbers.
#include <algorithm>
#include <cstdint>

#include "prompt_dialogs/DialogBench.h"

namespace {

constexpr unsigned long Top = 0xFFFFFFFF;
constexpr unsigned long WithoutEnd = 0xFFFFFFFF;
constexpr bool decimal = false;
constexpr bool hexadecimal = true;

class CMFCDialogMXUserInputIntegerTest : public DialogBench {
protected:
    // The operator enters these numbers, one a dialog, and then goes on with the last.
    void Enter(std::vector<unsigned long> numbers) {
        m_Answers = std::move(numbers);
        Dialogs().onWait = [this] {
            if (m_Answers.empty()) return;
            m_Value = m_Answers.front();
            m_Answers.erase(m_Answers.begin());
        };
    }

    TS_STATUS
    Ask(unsigned long lower, unsigned long upper, unsigned long timeout = WithoutEnd,
        bool hex = decimal, CMXGuiEvent * event = nullptr) {
        std::wstring title = L"T", prompt = L"P";
        return m_Input->GetInteger(
            &title, &prompt, &m_Value, hex, timeout, event, upper, lower, nullptr);
    }

    // How many dialogs were shown, and what was logged.
    struct Seen {
        int dialogs = 0;
        Lines entries;
        bool operator==(Seen const &) const = default;
    };
    static Seen Look() {
        Seen seen;
        for (auto const & line : Calls()) {
            seen.dialogs += line == "create";
            if (line.starts_with("log ")) seen.entries.push_back(line.substr(4));
        }
        return seen;
    }

    // The entry with its first number taken out, which differs from run to run.
    static std::string WithoutAddress(std::string entry, std::string const & before) {
        auto const from = entry.find(before);
        if (from == entry.npos) return entry;
        auto const start = from + before.size();
        return entry.replace(start, entry.find_first_of(",.", start) - start, "<address>");
    }

    // The first number of the entry.
    static std::uint32_t Address(std::string const & entry, std::string const & before, int base) {
        auto const from = entry.find(before);
        if (from == entry.npos) return 0;
        return static_cast<std::uint32_t>(
            std::stoul(entry.substr(from + before.size()), nullptr, base));
    }

    unsigned long m_Value = 50;
    std::vector<unsigned long> m_Answers;
    std::string const m_Warning =
        "WARNING CMFCDialogMXUserInput::GetInteger: Bounds-checking is supported only in "
        "non-asynchronous dialogs with no time out set.";
};

void ExpectRedAndBold(std::optional<CFormatInfo> const & look) {
    ASSERT_TRUE(look);
    EXPECT_EQ(look->format.dwMask, 0x40400001u);
    EXPECT_EQ(look->format.dwEffects, 0x04000001u);
    EXPECT_EQ(look->format.crTextColor, 0x000000FFu);
    EXPECT_EQ(look->format.wWeight, 700);
    EXPECT_TRUE(look->autoRange);
}

TEST_F(CMFCDialogMXUserInputIntegerTest, NoPlaceForTheValueGivesNoResult) {
    EXPECT_EQ(
        m_Input->GetInteger(
            static_cast<std::wstring *>(nullptr), nullptr, nullptr, decimal, 5, nullptr, 4, 5,
            nullptr),
        TS_NULL_RESULT);
    EXPECT_EQ(Calls(), Lines{});
}

TEST_F(CMFCDialogMXUserInputIntegerTest, WithoutBoundsEveryNumberIsTakenAndNothingIsLogged) {
    Enter({0, 0xFFFFFFFF, 7});
    EXPECT_EQ(Ask(0, Top), TS_SUCCESS);
    EXPECT_EQ(Ask(0, Top, 5000), TS_SUCCESS);
    EXPECT_EQ(m_Value, 0xFFFFFFFFul);
    EXPECT_EQ(Ask(0, Top, 0), TS_SUCCESS);
    EXPECT_EQ(Look(), (Seen{3, {}}));
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputIntegerTest, EqualBoundsAcceptOneNumber) {
    Enter({4, 6, 5});
    EXPECT_EQ(Ask(5, 5), TS_SUCCESS);
    EXPECT_EQ(m_Value, 5u);
    EXPECT_EQ(Look(), (Seen{3, {}}));
}

TEST_F(CMFCDialogMXUserInputIntegerTest, BoundsThatLeaveNoNumberAreRefusedWithoutADialog) {
    EXPECT_EQ(Ask(5, 4), TS_INVALID_BOUNDS);
    EXPECT_EQ(
        Look(), (Seen{
                    0,
                    {"ABORT Invalid bounds - Upper bound cannot be less than Lower bound. "
                     "(Upper = 4, Lower = 5)"}}));
    EXPECT_EQ(m_Log->m_Look, std::nullopt);
    EXPECT_EQ(m_Log->TestStatus() & TEST_STATUS_ABORT, TEST_STATUS_ABORT);
    EXPECT_TRUE(IsIdle());
    CAppState::QNLogVerbosityLevel(Quiet);
    EXPECT_EQ(Ask(5, 4), TS_INVALID_BOUNDS);
    EXPECT_EQ(Look(), Seen{});
    m_Input->SetLog(nullptr);
    EXPECT_EQ(Ask(5, 4), TS_INVALID_BOUNDS);
    EXPECT_EQ(Look(), Seen{});
}

TEST_F(CMFCDialogMXUserInputIntegerTest, WithoutATimeOutItAsksUntilTheNumberIsInRange) {
    Enter({0, 11, 0xFFFFFFFF, 10});
    EXPECT_EQ(Ask(1, 10), TS_SUCCESS);
    EXPECT_EQ(m_Value, 10u);
    EXPECT_EQ(Look(), (Seen{4, {}}));
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputIntegerTest, OneBoundAloneCounts) {
    Enter({0, 1});
    EXPECT_EQ(Ask(1, Top), TS_SUCCESS);
    EXPECT_EQ(Look(), (Seen{2, {}}));
    Enter({0xFFFFFFFF, 0xFFFFFFFE});
    EXPECT_EQ(Ask(0, 0xFFFFFFFE), TS_SUCCESS);
    EXPECT_EQ(Look(), (Seen{2, {}}));
}

TEST_F(CMFCDialogMXUserInputIntegerTest, AskingAgainLetsAnotherQuestionIn) {
    Enter({0, 5});
    int rounds = 0;
    bool wasFree = false;
    Dialogs().onCreate = [&] {
        if (++rounds == 2) wasFree = m_Input->AcquireActiveDialog();
    };
    EXPECT_EQ(Ask(1, 10), TS_SUCCESS);
    EXPECT_TRUE(wasFree);
}

TEST_F(CMFCDialogMXUserInputIntegerTest, ATimeOutWithBoundsWarnsAndAsksOnce) {
    Enter({7});
    EXPECT_EQ(Ask(1, 10, 5000), TS_SUCCESS);
    EXPECT_EQ(Look(), (Seen{1, {m_Warning}}));
    EXPECT_EQ(m_Log->m_Look, std::nullopt);
    CAppState::QNLogVerbosityLevel(Quiet);
    EXPECT_EQ(Ask(1, 10, 0), TS_SUCCESS);
    EXPECT_EQ(Look(), (Seen{1, {m_Warning}}));
    m_Input->SetLog(nullptr);
    EXPECT_EQ(Ask(1, 10, 5000), TS_SUCCESS);
    EXPECT_EQ(Look(), (Seen{1, {}}));
}

TEST_F(CMFCDialogMXUserInputIntegerTest, TheWarningComesBetweenTheStateAndTheDialog) {
    Ask(1, 99, 5000);
    auto const calls = Calls();
    ASSERT_GE(calls.size(), 3u);
    EXPECT_EQ(calls[0], "init item, H, T, P, true, false, 5000");
    EXPECT_EQ(calls[1], "log " + m_Warning);
    EXPECT_EQ(calls[2], "update");
}

TEST_F(CMFCDialogMXUserInputIntegerTest, AnAnswerOutOfRangeIsLoggedWithShiftedNumbers) {
    Enter({11});
    EXPECT_EQ(Ask(1, 10, 5000), TS_INVALID_BOUNDS);
    EXPECT_EQ(m_Value, 11u);
    Seen const seen = Look();
    ASSERT_EQ(seen.entries.size(), 2u);
    EXPECT_EQ(seen.dialogs, 1);
    EXPECT_EQ(
        WithoutAddress(seen.entries[1], "MIN="),
        "WARNING Value out of range: MIN=<address>, MAX=1.");
    ExpectRedAndBold(m_Log->m_Look);
    Enter({0});
    EXPECT_EQ(Ask(0x1A, 0x20, 5000, hexadecimal), TS_INVALID_BOUNDS);
    Seen const inHex = Look();
    ASSERT_EQ(inHex.entries.size(), 2u);
    EXPECT_EQ(
        WithoutAddress(inHex.entries[1], "MIN=0x"),
        "WARNING Value out of range: MIN=0x<address>, MAX=0x1A.");
    // One text, so one address, and a different one from either bound.
    auto const address = Address(seen.entries[1], "MIN=", 10);
    EXPECT_EQ(Address(inHex.entries[1], "MIN=0x", 16), address);
    EXPECT_GT(address, 0x20u);
    CAppState::QNLogVerbosityLevel(Verbose);
    Ask(1, 10, 5000);
    EXPECT_EQ(Look(), (Seen{1, {m_Warning}}));
}

TEST_F(CMFCDialogMXUserInputIntegerTest, ATimeOutIsLoggedWithTheAddressForTheValue) {
    Dialogs().timedOut = true;
    EXPECT_EQ(Ask(0, Top, 5000), TS_DIALOG_TIMED_OUT);
    Seen const seen = Look();
    ASSERT_EQ(seen.entries.size(), 1u);
    EXPECT_EQ(
        WithoutAddress(seen.entries[0], "value: "),
        "WARNING Dialog timed out - Returning value: <address>.");
    // No look of its own: the log gives it that of its level.
    ASSERT_TRUE(m_Log->m_Look);
    EXPECT_EQ(m_Log->m_Look->format.crBackColor, 0x00FFFFu);
    EXPECT_EQ(Ask(0, Top, 5000, hexadecimal), TS_DIALOG_TIMED_OUT);
    Seen const inHex = Look();
    ASSERT_EQ(inHex.entries.size(), 1u);
    EXPECT_EQ(Address(inHex.entries[0], "value: 0x", 16), Address(seen.entries[0], "value: ", 10));
    EXPECT_NE(Address(seen.entries[0], "value: ", 10), m_Value);
    CAppState::QNLogVerbosityLevel(Verbose);
    EXPECT_EQ(Ask(0, Top, 5000), TS_DIALOG_TIMED_OUT);
    EXPECT_EQ(Look(), (Seen{1, {}}));
}

TEST_F(CMFCDialogMXUserInputIntegerTest, ATimeOutWithBoundsIsATimeOutInRangeAndOut) {
    Dialogs().timedOut = true;
    EXPECT_EQ(Ask(1, 100, 5000), TS_DIALOG_TIMED_OUT);
    EXPECT_EQ(Look().entries.size(), 2u);
    EXPECT_EQ(Ask(1, 10, 5000), TS_DIALOG_TIMED_OUT);
    Seen const seen = Look();
    ASSERT_EQ(seen.entries.size(), 3u);
    EXPECT_EQ(
        WithoutAddress(seen.entries[2], "MIN="),
        "WARNING Value out of range: MIN=<address>, MAX=1.");
    ExpectRedAndBold(m_Log->m_Look);
    m_Input->SetLog(nullptr);
    EXPECT_EQ(Ask(1, 10, 5000), TS_DIALOG_TIMED_OUT);
    EXPECT_EQ(Look(), (Seen{1, {}}));
    // Without a time-out of its own the verdict ends the rounds too.
    EXPECT_EQ(Ask(1, 10), TS_DIALOG_TIMED_OUT);
    EXPECT_EQ(Look(), (Seen{1, {}}));
}

TEST_F(CMFCDialogMXUserInputIntegerTest, WithAnEventItReturnsAtOnceAndChecksNothing) {
    CMXGuiEvent event(0);
    Dialogs().timedOut = true;
    EXPECT_EQ(Ask(1, 10, WithoutEnd, decimal, &event), TS_SUCCESS);
    EXPECT_TRUE(m_Input->IsDialogActive());
    Lines const calls = Calls();
    EXPECT_EQ(calls.back(), "created");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "timed out?"), 0);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "log " + m_Warning), 1);
    m_Input->TerminateDialog();
    EXPECT_EQ(Ask(0, Top, WithoutEnd, decimal, &event), TS_SUCCESS);
    EXPECT_TRUE(m_Input->IsDialogActive());
    m_Input->TerminateDialog();
    EXPECT_TRUE(IsIdle());
}

TEST_F(CMFCDialogMXUserInputIntegerTest, ADialogThatAnotherHasEndedIsBusyWhateverTheNumber) {
    Dialogs().onWait = [this] {
        Dialogs().onWait = nullptr;
        m_Input->TerminateDialog();
    };
    EXPECT_EQ(Ask(1, 10), TS_DIALOG_BUSY);
    EXPECT_EQ(Look().dialogs, 1);
}

TEST_F(CMFCDialogMXUserInputIntegerTest, NarrowFormAsksTheSame) {
    std::string title = "t";
    Enter({3, 5});
    EXPECT_EQ(
        m_Input->GetInteger(&title, nullptr, &m_Value, decimal, WithoutEnd, nullptr, 6, 4, nullptr),
        TS_SUCCESS);
    EXPECT_EQ(Look().dialogs, 2);
}

} // namespace
