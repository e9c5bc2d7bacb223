// Drives a suite.
//
// The log's word, its flags and the abort exception outlive a test, so each test begins with a
// fresh word, and is closed only when no update can throw any more.
#include "examples/QNExe/TestEngine.h"

#include <exception>
#include <string_view>

#include "output/CExceptionSwitch.h"
#include "output/CUIUpdate.h"

namespace {

// Looks for the operator's abort at an update that does not wait. Not to be called while armed.
bool OperatorHasAborted() { return CUIUpdate::DoUpdate(false) != TS_SUCCESS; }

// The abort travels as an exception like any other, but the closing entries tell of it.
bool IsOperatorsAbort(std::exception const & failure) {
    return CUIUpdate::GetUIUpdate()->AbortFunction()
           && failure.what() == std::string_view("Test Aborted by user.");
}

} // namespace

void TestEngine::Run(std::vector<TestCase> const & tests) {
    for (std::size_t done = 0; done < tests.size(); ++done) {
        if (OperatorHasAborted()) return;
        ShowProgress(done, tests.size(), tests[done].name);
        RunTest(tests[done]);
    }
    ShowProgress(tests.size(), tests.size(), "");
}

// Before a test is opened: the forced update of its opening tells the window.
void TestEngine::ShowProgress(std::size_t done, std::size_t all, std::string const & name) {
    CUIUpdate & update = *CUIUpdate::GetUIUpdate();
    update.ProgressRange(static_cast<int>(all));
    update.ProgressPosition(static_cast<int>(done));
    update.ProgressLabel(name);
}

void TestEngine::RunTest(TestCase const & test) {
    Open(test);
    Close(RunSteps(test));
}

// Opening a test resets its record but not the word, in which the failures of the test before
// would still stand.
void TestEngine::Open(TestCase const & test) {
    m_Suite.OpenTest(test.isActualTest, test.name);
    m_Log.ClearTestStatus();
    m_Log.InitTest();
    m_Log.StartTest(test.name, 0);
}

TEST_STATUS TestEngine::RunSteps(TestCase const & test) {
    TEST_STATUS const status = Guard(test);
    CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(false);
    if (!OperatorHasAborted()) return status;
    m_Suite.CurrentTestLog()->m_AbortedByUser = true;
    WriteUnanswered();
    return status | TEST_STATUS_ABORT;
}

// Names the question that has aborted the run, if it was one.
void TestEngine::WriteUnanswered() {
    auto const prompts = m_Suite.Prompts();
    if (prompts.empty() || !prompts.back().hasAborted) return;
    m_Log.Write(
        TEST_STATUS_ABORT, "The question \"%s\" was not answered: %s.", prompts.back().question,
        prompts.back().reason);
}

TEST_STATUS TestEngine::Guard(TestCase const & test) {
    try {
        CExceptionSwitch const armed;
        return test.run(m_Log);
    } catch (std::exception const & failure) {
        if (!IsOperatorsAbort(failure))
            m_Log.Write(TEST_STATUS_ERROR, "Exception thrown: %s", failure.what());
    } catch (...) {
        m_Log.Write(TEST_STATUS_ERROR, "Exception thrown: <unknown type: no message>");
    }
    return TEST_STATUS_ABORT;
}

void TestEngine::Close(TEST_STATUS status) {
    m_Log.StopTest(status);
    m_Suite.CloseTest();
}
