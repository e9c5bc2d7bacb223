// The reports of a run: what a suite's record holds as files for people and for their automation.
//
// A host makes one CReportSet for a run, has it hear of the suite, and ends it with the verdict.
// The files are there from the beginning and grow with the run: whenever the process dies, they are
// readable and name the test that was open as failed. Texts are UTF-8; bytes that are not become
// U+FFFD, and what a format cannot carry is shown as an escape, such as \x1B.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "siblings/QuillonLog.h"

enum class EReportFormat {
    // One page that opens from disk in a browser, with or without scripts.
    Html,
    // What servers of continuous integration read.
    JUnit,
    // A journal: one line of JSON for whatever happens, as it happens.
    Json,
};

// Which reports a run is to write.
struct CReportRequest {
    struct File {
        EReportFormat format;
        // A file, or a folder that exists, in which the run finds a name of its own.
        std::string path;

        bool operator==(File const &) const = default;
    };

    // Each format at most once.
    std::vector<File> files;

    // Replace a file of the wanted name. Otherwise the report takes the next free name: run.html,
    // run-2.html, run-3.html.
    bool overwrite = false;

    bool operator==(CReportRequest const &) const = default;
};

// Reads "html:<path>,junit:<path>,json:<path>", in any order and number, and the word "overwrite"
// among them. A comma that no such word follows belongs to the path. An empty text asks for
// nothing. Throws std::runtime_error, whose text says what to write instead.
QUILLONLOG_API CReportRequest ReadReportRequest(std::string const & words);

// What was tested with what, as far as it is known when the run begins.
struct CReportFacts {
    struct Group {
        std::string title;
        CTestSuiteLog::Pairs pairs;
    };

    // The suite's name.
    std::string suite;
    // In the order in which they are shown.
    std::vector<Group> groups;
};

// The SHA-256 of a file's bytes as 64 hexadecimal digits; empty when it cannot be read.
QUILLONLOG_API std::string FileSha256(std::string const & file);

enum class ERunVerdict {
    Passed,
    Failed,
    NoTestRan,
    AbortedByOperator,
    // The reason says why.
    CouldNotRun,
};

// Writes the reports of one run. The listener's operations may come from several threads at once;
// all others belong to the thread that runs the tests.
class QUILLONLOG_API CReportSet : public CTestSuiteListener {
public:
    // Begins the files. Throws std::runtime_error, whose text names the file and says what to do,
    // when one cannot be begun.
    CReportSet(CReportRequest const & request, CReportFacts facts);
    CReportSet(CReportSet const &) = delete;
    CReportSet & operator=(CReportSet const &) = delete;

    // Without an end the files stay as those of a run that has died.
    ~CReportSet() override;

    // Nothing of these throws but for lack of memory: a report that cannot write does not stop a
    // test. It is told of at the end.
    void EntryWritten(CTestLog const & test, CTestLogEntry const & entry) override;
    void TestOpened(CTestLog const & test, std::string const & name) override;
    void TestClosed(CTestLog const & test) override;
    void PromptAdded(CTestPrompt const & prompt) override;
    void DeviceEventAdded(CTestDeviceEvent const & event) override;

    // Completes the files, with what the suite has filed for the reports. `reason` is shown with
    // the verdict when it is not empty. To be called once, when nobody tells of anything more.
    void End(CTestSuiteLog const & suite, ERunVerdict verdict, std::string const & reason = {});

    // The files' names, in the order of the request.
    std::vector<CReportRequest::File> Files() const;

    // What could not be written, a text for each file, without a line end; empty when all is well.
    std::vector<std::string> Problems() const;

    // What else is to be told: a `latest` that is not ours and was left alone.
    std::vector<std::string> Notices() const;

private:
    struct Data;
    std::unique_ptr<Data> m_Data;
};
