// Where a run is shown: its text, its progress and, as far as a view counts them, its verdicts.
//
// For the window thread, but for what says otherwise. TakeOver is quick and belongs into the
// window's procedure, where a test may wait for it; Render comes after the test has gone on.
#pragma once

#include <string>

class CTestSuiteListener;

class RunView {
public:
    virtual ~RunView() = default;

    // Takes the table out and reads the progress. `testWaits`: the test thread stands still, so
    // texts and records may be read too. True when there is something to render.
    virtual bool TakeOver(bool testWaits) = 0;

    virtual void Render() = 0;

    // The run is over and its records are whole; the test thread stands still.
    virtual void AtEnd() {}

    // What the console is told besides the log, for whoever does not see the console: a notice or
    // a problem, in UTF-8 without a line end.
    virtual void Tell(std::string const &) {}
    virtual void TellProblem(std::string const &) {}

    // While held something else has the place of the progress.
    virtual void HoldProgress(bool hold) = 0;

    // Who is to hear of the run's entries, on the test thread; null for nobody. It stays the view's
    // and outlives the run.
    virtual CTestSuiteListener * Listener() { return nullptr; }

    // On Windows: whether the message is a key for the view, which then has had it. `message` is a
    // MSG.
    virtual bool TakesMessage(void *) { return false; }
};
