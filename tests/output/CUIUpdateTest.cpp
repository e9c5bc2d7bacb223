// When the host is rung, and how the operator's abort is met.
#include "output/CUIUpdate.h"

#include <atomic>
#include <cstdint>
#include <type_traits>

#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "output/CExceptionSwitch.h"
#include "output/COutputBuffer.h"
#include "output/Doorbell.h"
#include "siblings/Keelbase.h"

static_assert(std::is_base_of_v<CCustomMessageHandler, CUIUpdate>);
static_assert(std::has_virtual_destructor_v<CUIUpdate>);
static_assert(std::has_virtual_destructor_v<CCustomMessageHandler>);
static_assert(!std::is_constructible_v<CUIUpdate, HWND>);
static_assert(std::is_empty_v<CExceptionSwitch>);
static_assert(std::is_nothrow_destructible_v<CExceptionSwitch>);

namespace {

// Reaches what only copies carry, and what only a setter reaches.
std::int64_t & CursorValue(CUIUpdate & link);
std::atomic<bool> & VerboseDisplay();
template <std::int64_t CUIUpdate::*Cursor, std::atomic<bool> * Verbose>
struct Hidden {
    friend std::int64_t & CursorValue(CUIUpdate & link) { return link.*Cursor; }
    friend std::atomic<bool> & VerboseDisplay() { return *Verbose; }
};
template struct Hidden<&CUIUpdate::m_CursorValue, &CUIUpdate::m_VerboseDisplay>;

using Messages = std::vector<std::string>;

Messages const kSent{"send 5 0x8014 0 0"};
Messages const kPosted{"post 5 0x8014 0 0"};
Messages const kNone;

constexpr unsigned int kInterval = 300;

class CUIUpdateTest : public testing::Test {
protected:
    CUIUpdateTest() { CUIUpdate::GetUIUpdate(WindowNumber(5)); }
    ~CUIUpdateTest() override {
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
    }

    static CUIUpdate & Link() { return *CUIUpdate::GetUIUpdate(); }

    void StartRun(unsigned int interval = kInterval) {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::QNMinimumDisplayUpdateTime(interval);
    }

    Messages At(ULONGLONG time, bool force = false) {
        m_Host.m_Now = time;
        CUIUpdate::SendUpdate(force);
        return m_Host.Take();
    }

    static void AskForAbort() { Link().AbortFunction(true); }
    static void Arm() { Link().ThrowExceptionOnAbort(true); }

    // The exception's text, or what the update answered.
    template <typename Operation>
    static std::string Outcome(Operation operation) {
        try {
            return operation() == TS_ABORTED ? "aborted" : "success";
        } catch (CQNRunTimeException const & error) {
            return error.what();
        }
    }

    static std::string Update() {
        return Outcome([] { return CUIUpdate::DoUpdate(true); });
    }

    // For operations without an answer: the exception's text, or empty.
    template <typename Operation>
    static std::string Thrown(Operation operation) {
        try {
            operation();
            return "";
        } catch (CQNRunTimeException const & error) {
            return error.what();
        }
    }

    Doorbell m_Host;
};

constexpr char kThrown[] = "Test Aborted by user.";

} // namespace

TEST_F(CUIUpdateTest, TheMessageHasTheHostsNumber) { EXPECT_EQ(CUIUpdate::UpdateMessage, 0x8014u); }

TEST_F(CUIUpdateTest, WithoutARunEachUpdateIsSent) {
    EXPECT_EQ(At(1000), kSent);
    EXPECT_EQ(At(1000), kSent);
}

TEST_F(CUIUpdateTest, WithoutAnIntervalEachUpdateIsSent) {
    StartRun(0);
    EXPECT_EQ(At(1000), kSent);
    EXPECT_EQ(At(1000), kSent);
}

TEST_F(CUIUpdateTest, AForcedUpdateIsSent) {
    StartRun();
    EXPECT_EQ(At(1000, true), kSent);
    EXPECT_EQ(At(1000, true), kSent);
}

TEST_F(CUIUpdateTest, AnUpdateIsPostedOnceInMoreThanTheInterval) {
    StartRun();
    EXPECT_EQ(At(10'000), kPosted);
    EXPECT_EQ(At(10'000), kNone);
    EXPECT_EQ(At(10'299), kNone);
    EXPECT_EQ(At(10'300), kNone);
    EXPECT_EQ(At(10'301), kPosted);
    EXPECT_EQ(At(10'601), kNone);
    EXPECT_EQ(At(10'602), kPosted);
}

TEST_F(CUIUpdateTest, TheFirstIntervalCountsFromTheStartOfTheClock) {
    StartRun();
    EXPECT_EQ(At(300), kNone);
    EXPECT_EQ(At(301), kPosted);
}

TEST_F(CUIUpdateTest, AForcedUpdateDoesNotRestartTheInterval) {
    StartRun();
    EXPECT_EQ(At(10'000), kPosted);
    EXPECT_EQ(At(10'200, true), kSent);
    EXPECT_EQ(At(10'301), kPosted);
}

TEST_F(CUIUpdateTest, ADroppedUpdateDoesNotRestartTheInterval) {
    StartRun();
    EXPECT_EQ(At(10'000), kPosted);
    EXPECT_EQ(At(10'299), kNone);
    EXPECT_EQ(At(10'301), kPosted);
}

TEST_F(CUIUpdateTest, AFailedPostRestartsTheIntervalLikeAnyOther) {
    StartRun();
    m_Host.m_PostResult = FALSE;
    EXPECT_EQ(At(10'000), kPosted);
    EXPECT_EQ(At(10'300), kNone);
}

TEST_F(CUIUpdateTest, TheIntervalOutlivesTheObject) {
    StartRun();
    EXPECT_EQ(At(10'000), kPosted);
    CUIUpdate::FreeUIUpdate();
    EXPECT_EQ(At(10'300), kNone);
    EXPECT_EQ(At(10'301), Messages{"post 0 0x8014 0 0"});
}

TEST_F(CUIUpdateTest, SendingAnUpdateLooksAtNoFlag) {
    AskForAbort();
    Arm();
    EXPECT_EQ(Thrown([] { CUIUpdate::SendUpdate(true); }), "");
    EXPECT_EQ(Update(), kThrown);
}

TEST_F(CUIUpdateTest, EachOperationRingsAsItIsTold) {
    StartRun();
    Link().UpdateUI(true);
    EXPECT_EQ(m_Host.Take(), kSent);
    m_Host.m_Now = 10'000;
    CUIUpdate::DoUpdate(false);
    EXPECT_EQ(m_Host.Take(), kPosted);
    m_Host.m_Now = 20'000;
    Link().UpdateUI(false);
    EXPECT_EQ(m_Host.Take(), kPosted);
    CUIUpdate::DoUpdate(true);
    EXPECT_EQ(m_Host.Take(), kSent);
}

TEST_F(CUIUpdateTest, WithoutAnAbortAnUpdateSucceeds) {
    EXPECT_EQ(Update(), "success");
    Arm();
    Link().AbortFunctionOnly(true);
    EXPECT_EQ(Update(), "success");
    AskForAbort();
    EXPECT_EQ(Update(), kThrown);
    Link().AbortFunction(false);
    EXPECT_EQ(Update(), "success");
}

TEST_F(CUIUpdateTest, AnAbortThatIsNotArmedIsAStatusEachTime) {
    AskForAbort();
    EXPECT_EQ(Update(), "aborted");
    EXPECT_EQ(Update(), "aborted");
}

TEST_F(CUIUpdateTest, AnArmedAbortIsThrownOnceAndThenAStatus) {
    AskForAbort();
    Arm();
    EXPECT_EQ(Update(), kThrown);
    EXPECT_EQ(Update(), "aborted");
    EXPECT_EQ(Update(), "aborted");
    EXPECT_TRUE(Link().AbortFunction());
}

TEST_F(CUIUpdateTest, TheHostIsRungBeforeTheAbortIsMet) {
    Arm();
    m_Host.m_OnRing = [] { AskForAbort(); };
    EXPECT_EQ(Update(), kThrown);
    EXPECT_EQ(m_Host.Take(), kSent);
}

TEST_F(CUIUpdateTest, DisarmingLetsTheAbortBeThrownAgain) {
    AskForAbort();
    Arm();
    EXPECT_EQ(Update(), kThrown);
    Link().ThrowExceptionOnAbort(false);
    EXPECT_EQ(Update(), "aborted");
    Arm();
    EXPECT_EQ(Update(), kThrown);
}

TEST_F(CUIUpdateTest, ArmingAgainDoesNotLetTheAbortBeThrownAgain) {
    AskForAbort();
    Arm();
    EXPECT_EQ(Update(), kThrown);
    Arm();
    EXPECT_EQ(Update(), "aborted");
}

TEST_F(CUIUpdateTest, AnAbortThatIsWithdrawnAndRenewedIsNotThrownAgain) {
    AskForAbort();
    Arm();
    EXPECT_EQ(Update(), kThrown);
    Link().AbortFunction(false);
    AskForAbort();
    EXPECT_EQ(Update(), "aborted");
}

TEST_F(CUIUpdateTest, TheCheckAloneRingsNobody) {
    EXPECT_EQ(Thrown([] { Link().CheckAbort(); }), "");
    AskForAbort();
    EXPECT_EQ(Thrown([] { Link().CheckAbort(); }), "");
    Arm();
    EXPECT_EQ(Thrown([] { Link().CheckAbort(); }), kThrown);
    EXPECT_EQ(Thrown([] { Link().CheckAbort(); }), "");
    EXPECT_EQ(m_Host.Take(), kNone);
}

TEST_F(CUIUpdateTest, DoAbortThrowsWhateverTheFlagsSay) {
    StartRun();
    EXPECT_EQ(Thrown([] { Link().DoAbort(true); }), "Test aborted by Quillon.");
    EXPECT_EQ(m_Host.Take(), kSent);
    m_Host.m_Now = 10'000;
    EXPECT_EQ(Thrown([] { Link().DoAbort(false); }), "Test aborted by Quillon.");
    EXPECT_EQ(m_Host.Take(), kPosted);
    EXPECT_FALSE(Link().AbortFunction());
}

TEST_F(CUIUpdateTest, DoAbortSetsNoFlag) {
    AskForAbort();
    Arm();
    EXPECT_EQ(Thrown([] { Link().DoAbort(true); }), "Test aborted by Quillon.");
    EXPECT_EQ(Update(), kThrown);
}

TEST_F(CUIUpdateTest, ACursorRequestIsSentWithItsText) {
    StartRun();
    wchar_t const name[] = L"wait";
    bool requested = false;
    wchar_t const * seen = nullptr;
    m_Host.m_OnRing = [&] {
        requested = Link().SetCursor();
        seen = Link().GetNewCursor();
    };
    Link().SetCursor(name);
    EXPECT_EQ(m_Host.Take(), kSent);
    EXPECT_TRUE(requested);
    EXPECT_EQ(seen, name);
    EXPECT_TRUE(Link().SetCursor());
}

TEST_F(CUIUpdateTest, EndingACursorRequestIsSentToo) {
    StartRun();
    Link().SetCursor(L"wait");
    m_Host.Take();
    bool requested = true;
    m_Host.m_OnRing = [&] { requested = Link().SetCursor(); };
    Link().ResetCursor();
    EXPECT_EQ(m_Host.Take(), kSent);
    EXPECT_FALSE(requested);
    Link().ResetCursor();
    EXPECT_EQ(m_Host.Take(), kNone);
}

TEST_F(CUIUpdateTest, WithoutACursorRequestThereIsNoneToEnd) {
    AskForAbort();
    Arm();
    EXPECT_EQ(Thrown([] { Link().ResetCursor(); }), "");
    EXPECT_EQ(m_Host.Take(), kNone);
}

TEST_F(CUIUpdateTest, CursorOperationsMeetTheAbort) {
    AskForAbort();
    Arm();
    EXPECT_EQ(Thrown([] { Link().SetCursor(L"wait"); }), kThrown);
    EXPECT_TRUE(Link().SetCursor());
    EXPECT_EQ(Thrown([] { Link().SetCursor(L"wait"); }), "");
    Link().ThrowExceptionOnAbort(false);
    Arm();
    EXPECT_EQ(Thrown([] { Link().ResetCursor(); }), kThrown);
    EXPECT_FALSE(Link().SetCursor());
}

TEST_F(CUIUpdateTest, ANewObjectHasNoWindowAndNothingSet) {
    CUIUpdate::FreeUIUpdate();
    CUIUpdate const & link = Link();
    EXPECT_EQ(link.GetHWnd(), nullptr);
    EXPECT_FALSE(link.AbortFunction());
    EXPECT_FALSE(link.AbortFunctionOnly());
    EXPECT_FALSE(link.ThrowExceptionOnAbort());
    EXPECT_EQ(link.ProgressLabel(), "");
    EXPECT_EQ(link.ProgressTime(), 0u);
    EXPECT_EQ(link.ProgressRange(), 0);
    EXPECT_EQ(link.ProgressPosition(), 0);
    EXPECT_EQ(link.GetTestSuiteName(), L"");
    EXPECT_FALSE(link.DoSetName());
    EXPECT_FALSE(link.SetCursor());
    EXPECT_EQ(link.GetOutputBuffer(), nullptr);
}

TEST_F(CUIUpdateTest, FreeingTwiceIsHarmlessAndTheNextObjectIsFresh) {
    AskForAbort();
    Arm();
    EXPECT_EQ(Update(), kThrown);
    Link().SetCursor(L"wait");
    CUIUpdate::FreeUIUpdate();
    CUIUpdate::FreeUIUpdate();
    EXPECT_EQ(Link().GetHWnd(), nullptr);
    EXPECT_EQ(Update(), "success");
    AskForAbort();
    Arm();
    EXPECT_EQ(Update(), kThrown);
}

TEST_F(CUIUpdateTest, ThereIsOneObject) {
    CUIUpdate * const link = CUIUpdate::GetUIUpdate();
    EXPECT_EQ(CUIUpdate::GetUIUpdate(), link);
    EXPECT_EQ(CUIUpdate::GetUIUpdate(WindowNumber(9)), link);
    EXPECT_EQ(link->GetHWnd(), WindowNumber(9));
    EXPECT_EQ(CUIUpdate::GetUIUpdate(), link);
    EXPECT_EQ(link->GetHWnd(), WindowNumber(9));
}

TEST_F(CUIUpdateTest, ValuesAreKeptUntilTheyAreReplaced) {
    CUIUpdate & link = Link();
    link.AbortFunctionOnly(true);
    link.ProgressLabel("label");
    link.ProgressTime(4'000'000'000u);
    link.ProgressRange(-100);
    link.ProgressPosition(-7);
    link.DoSetName(true);
    EXPECT_TRUE(link.AbortFunctionOnly());
    EXPECT_EQ(link.ProgressLabel(), "label");
    EXPECT_EQ(link.ProgressTime(), 4'000'000'000u);
    EXPECT_EQ(link.ProgressRange(), -100);
    EXPECT_EQ(link.ProgressPosition(), -7);
    EXPECT_TRUE(link.DoSetName());
    link.DoSetName(false);
    link.AbortFunctionOnly(false);
    EXPECT_FALSE(link.DoSetName());
    EXPECT_FALSE(link.AbortFunctionOnly());
    EXPECT_EQ(m_Host.Take(), kNone);
}

TEST_F(CUIUpdateTest, VerboseDisplayIsOnUntilItIsSet) {
    EXPECT_TRUE(VerboseDisplay());
    CUIUpdate::VerboseDisplay(false);
    EXPECT_FALSE(VerboseDisplay());
    CUIUpdate::VerboseDisplay(true);
    EXPECT_TRUE(VerboseDisplay());
}

TEST_F(CUIUpdateTest, NamingTheSuiteDoesNotTellTheHostToTakeIt) {
    Link().SetTestSuiteName(L"suite");
    EXPECT_EQ(Link().GetTestSuiteName(), L"suite");
    EXPECT_FALSE(Link().DoSetName());
}

TEST_F(CUIUpdateTest, TheBufferIsReachedThroughTheObject) {
    COutputBuffer buffer;
    Link().SetOutputBuffer(&buffer);
    EXPECT_EQ(Link().GetOutputBuffer(), &buffer);
    EXPECT_EQ(CUIUpdate::GetBuffer(), &buffer);
}

TEST_F(CUIUpdateTest, CopiesCarryEveryValue) {
    COutputBuffer buffer;
    CUIUpdate & link = Link();
    EXPECT_EQ(CursorValue(link), 129);
    CursorValue(link) = 5'000'000'000;
    link.AbortFunction(true);
    link.AbortFunctionOnly(true);
    link.ProgressLabel("label");
    link.ProgressTime(1);
    link.ProgressRange(2);
    link.ProgressPosition(3);
    link.SetTestSuiteName(L"suite");
    link.DoSetName(true);
    link.SetCursor(L"wait");
    link.SetOutputBuffer(&buffer);
    link.ThrowExceptionOnAbort(true);
    EXPECT_EQ(Thrown([] { Link().CheckAbort(); }), kThrown);

    CUIUpdate copy(link);
    CUIUpdate::FreeUIUpdate();
    CUIUpdate assigned(Link());
    assigned = copy;
    for (CUIUpdate * each : {&copy, &assigned}) {
        EXPECT_EQ(each->GetHWnd(), WindowNumber(5));
        EXPECT_TRUE(each->AbortFunction());
        EXPECT_TRUE(each->AbortFunctionOnly());
        EXPECT_EQ(each->ProgressLabel(), "label");
        EXPECT_EQ(each->ProgressTime(), 1u);
        EXPECT_EQ(each->ProgressRange(), 2);
        EXPECT_EQ(each->ProgressPosition(), 3);
        EXPECT_EQ(each->GetTestSuiteName(), L"suite");
        EXPECT_TRUE(each->DoSetName());
        EXPECT_EQ(CursorValue(*each), 5'000'000'000);
        EXPECT_TRUE(each->SetCursor());
        EXPECT_STREQ(each->GetNewCursor(), L"wait");
        EXPECT_EQ(each->GetOutputBuffer(), &buffer);
        EXPECT_TRUE(each->ThrowExceptionOnAbort());
        // The thrown-mark came along: no second exception.
        EXPECT_EQ(Thrown([each] { each->CheckAbort(); }), "");
    }
}

TEST_F(CUIUpdateTest, ASwitchArmsTheAbortForItsScope) {
    AskForAbort();
    {
        CExceptionSwitch const armed;
        EXPECT_TRUE(Link().ThrowExceptionOnAbort());
        EXPECT_EQ(Update(), kThrown);
        EXPECT_EQ(Update(), "aborted");
    }
    EXPECT_FALSE(Link().ThrowExceptionOnAbort());
    EXPECT_EQ(Update(), "aborted");
    CExceptionSwitch const again;
    EXPECT_EQ(Update(), kThrown);
}

TEST_F(CUIUpdateTest, TheEndOfASwitchThrowsNothing) {
    {
        CExceptionSwitch const armed;
        AskForAbort();
    }
    EXPECT_EQ(m_Host.Take(), kSent);
}

TEST_F(CUIUpdateTest, TheEndOfASwitchMakesAnUnforcedUpdate) {
    StartRun();
    m_Host.m_Now = 10'000;
    { CExceptionSwitch const armed; }
    EXPECT_EQ(m_Host.Take(), kPosted);
    { CExceptionSwitch const armed; }
    EXPECT_EQ(m_Host.Take(), kNone);
}

TEST_F(CUIUpdateTest, TheEndOfASwitchRingsWhileItIsStillArmed) {
    bool armedAtRing = false;
    m_Host.m_OnRing = [&] { armedAtRing = Link().ThrowExceptionOnAbort(); };
    { CExceptionSwitch const armed; }
    EXPECT_TRUE(armedAtRing);
    EXPECT_FALSE(Link().ThrowExceptionOnAbort());
}

TEST_F(CUIUpdateTest, TheEndOfAnInnerSwitchDisarmsTheOuter) {
    CExceptionSwitch const outer;
    { CExceptionSwitch const inner; }
    AskForAbort();
    EXPECT_EQ(Update(), "aborted");
}
