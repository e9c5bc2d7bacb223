// What the operator does at the window: sets up runs, starts and aborts them, keeps their logs.
//
// One a process, for the window thread. A run has a test thread of its own; while it lasts the
// set-up and the records that it reads stay as they are.
#pragma once

#include <string>

#include "examples/QNExe/CommandLine.h"
#include "examples/QNExe/ExitCode.h"
#include "examples/QNExe/windows/MainWindow.h"
#include "examples/QNExe/windows/WindowRunView.h"

class OperatorSession {
public:
    // Keeps what the options say of device and VIF files, as a run does. Throws std::runtime_error
    // when the system has no window to give.
    explicit OperatorSession(HostOptions const & options);

    // Until the operator closes the window. The verdict of the last run; NoTestRan without one.
    ExitCode Serve();

    MainWindow & Window() { return m_Window; }

private:
    enum class Phase { Idle, Running, Aborting };

    void Do(int command);
    void OnClose();
    void Start();
    void Run();
    void RunHost();
    void Abort();
    void SetUp();
    void SaveLog();
    void SetPhase(Phase phase, std::wstring const & state);
    void EnableCommands();
    void ShowProblem(std::string const & text);

    HostOptions m_Options;
    MainWindow m_Window;
    WindowRunView m_View;
    Phase m_Phase = Phase::Idle;
    // A dialog of the window is up; commands wait until it is gone.
    bool m_IsAsking = false;
    bool m_StartAsked = false;
    bool m_CloseAsked = false;
    bool m_HasText = false;
    ExitCode m_Code = ExitCode::NoTestRan;
};
