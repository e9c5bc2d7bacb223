// What a report is told of a run, in order and one call at a time.
//
// A sink throws std::system_error when its file cannot be written, and is told of nothing more.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "siblings/QuillonReports.h"
#include "siblings/quillonlog/reports/Stamp.h"

// What an entry of a report is.
enum class EntryKind { Fail, Abort, Error, Warning, Info, Unknown, Prompt, Device };
inline constexpr std::size_t EntryKindCount = 8;

EntryKind KindOfStatus(TEST_STATUS status);

inline bool IsProblem(EntryKind kind) {
    return kind == EntryKind::Fail || kind == EntryKind::Abort || kind == EntryKind::Error;
}

enum class SectionVerdict {
    // It has not ended: a run that dies now dies in it. Counts as failed.
    Open,
    Passed,
    Failed,
    // It could not run to its end.
    Aborted,
    // Nothing that passes or fails a device, and nothing went wrong.
    Done,
};

// One section of a report: a test, a set-up or utility, or what was logged outside of any.
struct Section {
    // Counted from 1.
    std::size_t number = 0;
    std::string name;
    bool isTest = false;
    // Logged outside of any test.
    bool isOutside = false;
    Moment start;
    Moment stop;
    SectionVerdict verdict = SectionVerdict::Open;
    std::array<std::size_t, EntryKindCount> counts{};
    // The first entry that is a failure or an abort; cut when it is long.
    std::string firstProblem;

    std::chrono::nanoseconds Length() const { return stop.steady - start.steady; }
    std::size_t CountOf(EntryKind kind) const { return counts[static_cast<std::size_t>(kind)]; }
    bool IsBad() const {
        return verdict == SectionVerdict::Failed || verdict == SectionVerdict::Aborted
               || verdict == SectionVerdict::Open;
    }
};

// An entry, with when it came.
struct SectionEntry {
    EntryKind kind;
    std::string_view text;
    std::string_view style;
    Moment time;
};

// How the tests of a run stand; what is not a test has no part in it.
struct Score {
    std::size_t tests = 0;
    std::size_t passed = 0;
    std::size_t failed = 0;
    std::size_t aborted = 0;
};

// The run as a whole; the last members are known at its end.
struct RunRecord {
    CReportFacts facts;
    Moment start;
    Moment stop;
    Score score;
    ERunVerdict verdict = ERunVerdict::CouldNotRun;
    std::string reason;
    // Those that have ended, in order.
    std::vector<Section> sections;
};

class ReportSink {
public:
    virtual ~ReportSink() = default;

    virtual void RunStarted(RunRecord const & run) = 0;
    virtual void SectionOpened(RunRecord const & run, Section const & section) = 0;
    // The entry is counted in the section already.
    virtual void EntryWritten(Section const & section, SectionEntry const & entry) = 0;
    // Besides an entry of their own; `section` is null outside of any.
    virtual void PromptEnded(Section const *, CTestPrompt const &, Moment const &) {}
    virtual void DeviceChanged(Section const *, CTestDeviceEvent const &, Moment const &) {}
    // The section is the last of the run's.
    virtual void SectionClosed(RunRecord const & run, Section const & section) = 0;
    virtual void RunEnded(RunRecord const & run) = 0;
};
