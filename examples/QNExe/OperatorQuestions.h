// Serves the library's questions to the operator on the window thread, and keeps them in the
// suite's record.
//
// Made and ended on the window thread, while the window lives.
#pragma once

#include "siblings/Promptline.h"
#include "siblings/QuillonLog.h"

class HostWindow;

class OperatorQuestions : private CPromptListener {
public:
    // Throws std::runtime_error, whose text says what to do, when questions cannot be served.
    OperatorQuestions(HostWindow & window, CTestSuiteLog & suite);
    ~OperatorQuestions() override;

private:
    void PromptShown() override;
    void PromptGone() override;
    void PromptEnded(CPromptRecord const & record) override;

    HostWindow & m_Window;
    CTestSuiteLog & m_Suite;
    CPromptService m_Service;
};
