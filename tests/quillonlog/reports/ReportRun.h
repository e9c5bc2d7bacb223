// A run that a test plays to its reports: a suite's record with a report set that listens.
#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "quillonlog/reports/Folder.h"
#include "siblings/QuillonReports.h"

class ReportRun : public testing::Test {
protected:
    // Begins the reports that the words ask for; a path "@/x" is in the test's folder.
    void Begin(std::string words, CReportFacts facts = {"suite", {}}) {
        for (auto at = words.find('@'); at != words.npos; at = words.find('@'))
            words.replace(at, 1, m_Folder.Path().generic_string());
        m_Reports = std::make_unique<CReportSet>(ReadReportRequest(words), std::move(facts));
        m_Suite.Listener(m_Reports.get());
    }

    CTestLog & Open(std::string const & name, bool actualTest = true) {
        CTestLog & test = m_Suite.OpenTest(actualTest, name);
        test.TestName(name.c_str());
        return test;
    }

    void Write(TEST_STATUS status, std::string const & text, char const * style = nullptr) {
        CTestLog & test = *m_Suite.CurrentTestLog();
        if (status == TEST_STATUS_FAIL) test.IncrFailures();
        if (status == TEST_STATUS_ABORT) test.IncrAborts();
        test.Write(status, text.c_str(), style);
    }

    void Close(TEST_STATUS result) {
        m_Suite.CurrentTestLog()->TestStatus(result);
        m_Suite.CloseTest();
    }

    void Pass(std::string const & name) {
        Open(name);
        Close(TEST_STATUS_SUCCESS);
    }
    void Fail(std::string const & name, std::string const & text) {
        Open(name);
        Write(TEST_STATUS_FAIL, text);
        Close(TEST_STATUS_FAIL);
    }

    void End(ERunVerdict verdict = ERunVerdict::Passed, std::string const & reason = {}) {
        m_Suite.Listener(nullptr);
        m_Reports->End(m_Suite, verdict, reason);
    }

    std::string Contents(std::string const & name) const { return m_Folder.Contents(name); }

    Folder m_Folder;
    CTestSuiteLog m_Suite;
    std::unique_ptr<CReportSet> m_Reports;
};
