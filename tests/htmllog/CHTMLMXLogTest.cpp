// One entry, two readers: what the display shows and what the record keeps.
#include "log/CHTMLMXLog.h"

#include <optional>

#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "output/Transcript.h"
#include "prompts/RecordingInput.h"
#include "settings/CIniArgs.h"
#include "siblings/Keelbase.h"
#include "siblings/QuillonLog.h"

namespace {

class Sink : public CHTMLMXLog {
public:
    using CHTMLMXLog::CHTMLMXLog;
    using CHTMLMXLog::InternalWrite;
};

// Reaches m_OutputBuffer, for the one state that no constructor leaves behind.
template <COutputBuffer * CHTMLMXLog::*Member>
struct BufferOf {
    friend COutputBuffer *& Buffer(CHTMLMXLog & log) { return log.*Member; }
};
COutputBuffer *& Buffer(CHTMLMXLog & log);
template struct BufferOf<&CHTMLMXLog::m_OutputBuffer>;

class CHTMLMXLogTest : public testing::Test {
protected:
    CHTMLMXLogTest() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::SetIniArgs(m_Args);
        CAppState::TestSuiteLog(&m_Suite);
        CUIUpdate::GetUIUpdate()->SetOutputBuffer(&m_Buffer);
        COutputBuffer::InitializeDefaultFormatInfo(Record(CFM_FACE, 0));
    }
    ~CHTMLMXLogTest() override {
        m_Log.reset();
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
    }

    void Open() {
        m_Log.emplace(&m_Buffer);
        Shown();
        m_Suite.CurrentTestLog()->Reset();
    }

    TS_STATUS Write(TEST_STATUS status, char const * text, CFormatInfo const * format = nullptr) {
        return m_Log->InternalWrite(status, text, format);
    }

    Lines Shown() { return Take(m_Buffer); }

    // The entries since the test was opened: status, text, style.
    Lines Recorded() const {
        Lines lines;
        for (auto const & entry : m_Suite.TestLogs().back()->Entries())
            lines.push_back(Number("%08lX ", entry.status) + entry.text + '|' + entry.style);
        return lines;
    }

    // The style of an entry in this format.
    std::string Style(CFormatInfo const & format) {
        m_Suite.CurrentTestLog()->Reset();
        Write(TEST_STATUS_INFO, "", &format);
        auto const & entries = m_Suite.CurrentTestLog()->Entries();
        return entries.size() == 1 ? entries.front().style : "(no entry)";
    }

    CIniArgs m_Args;
    COutputBuffer m_Buffer;
    CTestSuiteLog m_Suite;
    std::optional<Sink> m_Log;
};

std::string Plain(std::string const & text) {
    return '"' + text + " \" mask=00000000 effects=44000000 @0,0";
}

constexpr char kRestored[] = "- mask=20000000 effects=00000000 @0,0";
constexpr char kFailLook[] = "- mask=40400001 effects=04000001 color=0000FF weight=700 @0,0";
constexpr char kWarningLook[] = "- mask=40000000 effects=04000000 color=0000FF @0,0";

} // namespace

TEST_F(CHTMLMXLogTest, DisplayAndRecordDifferInTheirLineEnds) {
    struct Case {
        char const * text;
        char const * shown;
        char const * recorded;
    };
    Open();
    for (auto const & [text, shown, recorded] :
         {Case{"", R"(\d\a)", ""},
          {nullptr, R"(\d\a)", ""},
          {"abc", R"(abc\d\a)", "abc"},
          {"abc\n", R"(abc\d\a)", "abc"},
          {"abc\r\n", R"(abc\d\a)", "abc"},
          {"a\nb", R"(a\d\ab\d\a)", "a\nb"},
          {"a\r\nb\n\n", R"(a\d\ab\d\a\d\a)", "a\r\nb\n"},
          // What starts with a line end gets a whole one.
          {"\nabc", R"(\d\aabc\d\a)", "\nabc"},
          {"\r\nabc", R"(\d\aabc\d\a)", "\r\nabc"},
          {"\n", R"(\d\a)", ""},
          {"\r\n", R"(\d\a)", ""},
          {"\n\n", R"(\d\a\d\a)", "\n"},
          {"\r\n\r\n", R"(\d\a\d\a)", "\r\n"},
          {"a\r\r\n", R"(a\d\d\a)", "a\r"},
          // A lone carriage return is left alone.
          {"a\rb", R"(a\db\d\a)", "a\rb"},
          {"abc\r", R"(abc\d\d\a)", "abc"},
          {"\r", R"(\d\d\a)", ""},
          {"a\n\r", R"(a\d\a\d\d\a)", "a\n"}}) {
        SCOPED_TRACE(shown);
        m_Suite.CurrentTestLog()->Reset();
        EXPECT_EQ(Write(TEST_STATUS_INFO, text), TS_SUCCESS);
        EXPECT_EQ(Shown(), Lines{Plain(shown)});
        EXPECT_EQ(Recorded(), Lines{"04000000 " + std::string(recorded) + '|'});
    }
}

TEST_F(CHTMLMXLogTest, PlainInformationRunsInTheCurrentFormatAndHasNoStyle) {
    Open();
    Write(TEST_STATUS_INFO, "one");
    Write(TEST_STATUS_INFO, "two");
    EXPECT_EQ(Shown(), Lines{Plain(R"(one\d\atwo\d\a)")});
    EXPECT_EQ(Recorded(), (Lines{"04000000 one|", "04000000 two|"}));
}

TEST_F(CHTMLMXLogTest, AnEntryWithoutAFormatTakesTheLookOfItsStatus) {
    Open();
    struct Case {
        TEST_STATUS status;
        char const * look;
    };
    for (auto const & [status, look] :
         {Case{TEST_STATUS_FAIL, kFailLook},
          {TEST_STATUS_ABORT, kFailLook},
          {TEST_STATUS_ERROR, kFailLook},
          {TEST_STATUS_WARNING, kWarningLook},
          // Whatever is no element has the look of a failure, in silence.
          {TEST_STATUS_UNKNOWN, kFailLook},
          {TEST_STATUS_SUCCESS, kFailLook}}) {
        SCOPED_TRACE(status);
        m_Suite.CurrentTestLog()->Reset();
        EXPECT_EQ(Write(status, "text"), TS_SUCCESS);
        EXPECT_EQ(Shown(), (Lines{look, Plain(R"(text\d\a)"), kRestored}));
        // The default look is not the report's: it goes by the status.
        EXPECT_EQ(Recorded(), Lines{Number("%08lX ", status) + "text|"});
        EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
    }
}

TEST_F(CHTMLMXLogTest, AnEntryIsShownInItsFormat) {
    Open();
    CFormatInfo look(0x123456ul);
    look.range = {3, 7};
    look.autoRange = false;
    Write(TEST_STATUS_FAIL, "text", &look);
    EXPECT_EQ(
        Shown(), (Lines{
                     "- mask=40000000 effects=04000000 color=123456 @3,7", Plain(R"(text\d\a)"),
                     kRestored}));
    EXPECT_EQ(Recorded(), Lines{"80000000 text|color:#563412"});
    EXPECT_FALSE(look.autoRange);
}

TEST_F(CHTMLMXLogTest, InformationInItsDefaultFormatPushesOneThatSpecifiesNothing) {
    Open();
    Write(TEST_STATUS_INFO, "text", &CMXLog::DefaultInfoFormat());
    EXPECT_EQ(
        Shown(), (Lines{"- mask=00000000 effects=44000000 @0,0", Plain(R"(text\d\a)"), kRestored}));
    EXPECT_EQ(Recorded(), Lines{"04000000 text|"});
}

TEST_F(CHTMLMXLogTest, AFormatInForceIsThereAgainAfterAnEntry) {
    Open();
    m_Buffer.AddFormat(CFormatInfo(true, 700));
    Write(TEST_STATUS_WARNING, "text");
    EXPECT_EQ(m_Buffer.FormatDepth(), 1u);
    EXPECT_EQ(
        Shown(), (Lines{
                     "- mask=00400001 effects=44000001 weight=700 @0,0", kWarningLook,
                     Plain(R"(text\d\a)"), "- mask=40400001 effects=44000001 weight=700 @0,0"}));
}

TEST_F(CHTMLMXLogTest, TheStyleNamesWhatTheFormatSpecifies) {
    Open();
    EXPECT_EQ(Style(CFormatInfo()), "");
    EXPECT_EQ(Style(CFormatInfo(true, 700)), "font-weight: bold");
    EXPECT_EQ(Style(CFormatInfo(0x0000BFul, true, 700)), "font-weight: bold;color:#BF0000");
    EXPECT_EQ(
        Style(CMXLog::DefaultDiagnosticFormat()),
        "font-weight: bold;font-style:italic;color:#FF0000;"
        "display=inline;background-color:#FFFF00");
    CFormatInfo all(0x00FFFFFFul, true, true, 700);
    all.setUnderline(true);
    all.setBackColor(0x0A0B0Cul);
    EXPECT_EQ(
        Style(all), "font-weight: bold;font-style:italic;text-decoration:underline;color:#FFFFFF;"
                    "display=inline;background-color:#0C0B0A");
}

TEST_F(CHTMLMXLogTest, TheStyleReadsTheMaskAlone) {
    Open();
    EXPECT_EQ(Style(CFormatInfo(Record(CFM_BOLD, 0))), "font-weight: bold");
    EXPECT_EQ(Style(CFormatInfo(Record(CFM_WEIGHT, 0))), "font-weight: bold");
    EXPECT_EQ(Style(CFormatInfo(Record(CFM_ITALIC, 0))), "font-style:italic");
    EXPECT_EQ(Style(CFormatInfo(Record(CFM_UNDERLINE, 0))), "text-decoration:underline");
    CHARFORMAT2A automatic = Record(CFM_COLOR, CFE_AUTOCOLOR);
    automatic.crTextColor = 0xFF3456F1;
    EXPECT_EQ(Style(CFormatInfo(automatic)), "color:#F15634");
    EXPECT_EQ(
        Style(CFormatInfo(Record(
            ~(CFM_BOLD | CFM_WEIGHT | CFM_ITALIC | CFM_UNDERLINE | CFM_COLOR | CFM_BACKCOLOR),
            CFE_BOLD | CFE_ITALIC | CFE_UNDERLINE))),
        "");
}

TEST_F(CHTMLMXLogTest, TheBackgroundStyleHasAnEqualsSign) {
    Open();
    CHARFORMAT2A automatic = Record(CFM_BACKCOLOR, CFE_AUTOBACKCOLOR);
    automatic.crBackColor = 0x00FF8001;
    EXPECT_EQ(Style(CFormatInfo(automatic)), "display=inline;background-color:#0180FF");
}

TEST_F(CHTMLMXLogTest, TheTextMayStandInTheThreadsFormatBuffer) {
    Open();
    CFormatInfo const look(0x123456ul, true, 700);
    Write(TEST_STATUS_INFO, FormatText(nullptr, nullptr, FormatPadding{0, 0}, "text %d", 7), &look);
    EXPECT_EQ(Recorded(), Lines{"04000000 text 7|font-weight: bold;color:#563412"});
}

TEST_F(CHTMLMXLogTest, ALogWithoutABufferStillFilesTheEntry) {
    Open();
    Buffer(*m_Log) = nullptr;
    CFormatInfo const look(0x123456ul);
    EXPECT_EQ(Write(TEST_STATUS_WARNING, "text\n", &look), TS_SUCCESS);
    EXPECT_EQ(
        Recorded(), (Lines{"40000000 Shouldn't be here\r\n|", "08000000 text|color:#563412"}));
    EXPECT_EQ(Shown(), Lines{});
}

TEST_F(CHTMLMXLogTest, AWrittenEntryReachesDisplayAndRecord) {
    Open();
    m_Log->Write(TEST_STATUS_WARNING, "%s is late\n", "it");
    EXPECT_EQ(Shown(), (Lines{kWarningLook, Plain(R"(it is late\d\a)"), kRestored}));
    EXPECT_EQ(Recorded(), Lines{"08000000 it is late|"});
}

TEST_F(CHTMLMXLogTest, ANewLogStartsWithAnEmptyDisplay) {
    m_Buffer.AddItem(std::string("left over"), CFormatInfo(true, 700));
    m_Log.emplace(&m_Buffer);
    EXPECT_EQ(m_Buffer.GetText(), nullptr);
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
}

TEST_F(CHTMLMXLogTest, ANullBufferIsRefused) {
    m_Suite.m_RunPhase = 3;
    std::string refusal;
    try {
        CHTMLMXLog const log(nullptr);
    } catch (CQNRunTimeException const & error) {
        refusal = error.what();
    }
    EXPECT_EQ(refusal, "INTERNAL ERROR: NULL output buffer.");
    // The base was ended, the sink was not: no summary.
    EXPECT_EQ(m_Suite.m_RunPhase, 0u);
    EXPECT_EQ(Shown(), Lines{});
}

TEST_F(CHTMLMXLogTest, TheEndOfALogWritesTheSummary) {
    Open();
    m_Log->Write(TEST_STATUS_INFO, "text");
    Shown();
    m_Log.reset();
    Lines const shown = Shown();
    ASSERT_EQ(shown.size(), 6u);
    EXPECT_TRUE(shown[1].starts_with(R"("TEST SUITE SUMMARY:\d\a    [ )")) << shown[1];
    EXPECT_TRUE(shown[4].starts_with(R"("TEST RESULTS:\d\a    [ Passed (0); Failed (0) ]\d\a )"))
        << shown[4];
    EXPECT_EQ(m_Suite.Meta().size(), 1u);
}

TEST_F(CHTMLMXLogTest, TheEndOfALogWritesNoSecondSummary) {
    Open();
    m_Log->Write(TEST_STATUS_INFO, "text");
    EXPECT_EQ(m_Log->DumpSummaryCounts(), TS_SUCCESS);
    Shown();
    m_Log.reset();
    EXPECT_EQ(Shown(), Lines{});
    EXPECT_EQ(m_Suite.Meta().size(), 1u);
}

TEST_F(CHTMLMXLogTest, ARefusedSummaryIsNotTriedAgain) {
    Open();
    EXPECT_EQ(m_Log->DumpSummaryCounts(), TS_ABORTED);
    m_Log->Write(TEST_STATUS_INFO, "text");
    Shown();
    m_Log.reset();
    EXPECT_EQ(Shown(), Lines{});
}

TEST_F(CHTMLMXLogTest, TheStopOfATestStartsADisplayLineOfItsOwn) {
    Open();
    m_Log->GlobalLogExists(true);
    m_Log->StartTest("name", 0);
    m_Log->StopTest();
    EXPECT_EQ(m_Buffer.FormatDepth(), 0u);
    // No line end of the display is half one.
    for (auto const & line : Shown()) {
        for (auto at = line.find(R"(\a)"); at != line.npos; at = line.find(R"(\a)", at + 2))
            EXPECT_EQ(line.substr(at - 2, 2), R"(\d)") << line;
    }
}

namespace {

// Overwrites the memory in which the thread's last formatted text lies.
void FormatAnotherText() {
    FormatText(nullptr, nullptr, FormatPadding{0, 0}, "%s", std::string(2000, '#').c_str());
    FormatText(nullptr, nullptr, FormatPadding{0, 0}, "%s", "####");
}

class FormattingPrompt : public RecordingInput {
public:
    using RecordingInput::DisplayInfoToUser;

    TS_STATUS DisplayInfoToUser(
        std::wstring * text, unsigned long, bool, CMXGuiEvent *, std::wstring *,
        WINDOW_ARGS *) override {
        told = *text;
        FormatAnotherText();
        return TS_SUCCESS;
    }

    std::wstring told;
};

class FormattingListener : public CTestSuiteListener {
public:
    void EntryWritten(CTestLog const &, CTestLogEntry const & entry) override {
        FormatAnotherText();
        heard.push_back(entry.text);
    }

    Lines heard;
};

} // namespace

TEST_F(CHTMLMXLogTest, AnEntryIsWholeAlthoughAPromptFormatsAnotherTextMeanwhile) {
    FormattingPrompt prompt;
    Open();
    m_Suite.OpenTest(true);
    m_Log->InitTest();
    m_Log->StartTest("name", 0);
    m_Log->EnableBreakOnLogFailure(&prompt);
    m_Suite.CurrentTestLog()->Reset();
    Shown();
    m_Log->Write(TEST_STATUS_FAIL, "port %d is dead", 3);
    EXPECT_EQ(prompt.told, L"Test Failure:  port 3 is dead");
    EXPECT_EQ(Shown(), (Lines{kFailLook, Plain(R"(port 3 is dead\d\a)"), kRestored}));
    EXPECT_EQ(Recorded(), Lines{"80000000 port 3 is dead|"});
    m_Log->DisableBreakOnLogFailure();
}

TEST_F(CHTMLMXLogTest, AnEntryIsWholeAlthoughItsListenerFormatsAnotherText) {
    FormattingListener listener;
    Open();
    m_Suite.Listener(&listener);
    m_Log->Write(TEST_STATUS_INFO, "port %d\nis alive\n", 3);
    m_Suite.Listener(nullptr);
    EXPECT_EQ(listener.heard, Lines{"port 3\nis alive"});
    EXPECT_EQ(Shown(), Lines{Plain(R"(port 3\d\ais alive\d\a)")});
}
