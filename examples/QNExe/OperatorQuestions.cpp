// The library's questions at the host.
#include "examples/QNExe/OperatorQuestions.h"

#include "examples/QNExe/HostWindow.h"

OperatorQuestions::OperatorQuestions(HostWindow & window, CTestSuiteLog & suite)
    : m_Window(window), m_Suite(suite), m_Service(window.Handle(), this) {
    m_Window.Questions(&m_Service);
}

OperatorQuestions::~OperatorQuestions() { m_Window.Questions(nullptr); }

void OperatorQuestions::PromptShown() { HostWindow::QuestionShown(true); }

void OperatorQuestions::PromptGone() { HostWindow::QuestionShown(false); }

void OperatorQuestions::PromptEnded(CPromptRecord const & record) {
    m_Suite.AddPrompt(
        {.question = record.question,
         .answer = record.answer,
         .source = record.source,
         .reason = record.reason,
         .seconds = record.seconds,
         .hasAborted = record.wantsAbort});
    if (record.wantsAbort) HostWindow::AskForAbort();
}
