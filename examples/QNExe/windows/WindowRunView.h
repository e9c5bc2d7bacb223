// A run as the operator's window shows it.
//
// For the window thread, but for the listener.
#pragma once

#include <string>

#include "examples/QNExe/view/RunIntake.h"
#include "examples/QNExe/view/RunView.h"
#include "examples/QNExe/view/TableReader.h"
#include "examples/QNExe/view/TextLook.h"
#include "examples/QNExe/view/VerdictCounts.h"

class MainWindow;

class WindowRunView : public RunView {
public:
    explicit WindowRunView(MainWindow & window) : m_Window(window) {}

    // Empties the window for a new run.
    void Begin();

    bool TakeOver(bool testWaits) override;
    void Render() override;
    void AtEnd() override;
    void Tell(std::string const & text) override;
    void TellProblem(std::string const & text) override;
    // Questions have windows of their own.
    void HoldProgress(bool) override {}
    CTestSuiteListener * Listener() override { return &m_Tally; }
    bool TakesMessage(void * message) override;

private:
    void ReadTexts();
    void AddLine(std::string const & text, TextLook const & look);

    MainWindow & m_Window;
    RunIntake m_Intake;
    TableReader m_Reader;
    VerdictTally m_Tally;
};
