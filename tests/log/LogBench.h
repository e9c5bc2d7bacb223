// What a log needs around it: the process-wide state, a suite record, an output buffer.
//
// One bench at a time, and the log goes before it.
#pragma once

#include "app/CAppState.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "output/Transcript.h"
#include "settings/CIniArgs.h"
#include "siblings/QuillonLog.h"

class LogBench {
public:
    LogBench() {
        CAppState::InitAppState(ApplicationFamilyDefault);
        CAppState::SetIniArgs(m_Args);
        CAppState::TestSuiteLog(&m_Suite);
        COutputBuffer::InitializeDefaultFormatInfo(Record(CFM_SIZE, CFE_AUTOCOLOR));
        CUIUpdate::GetUIUpdate()->SetOutputBuffer(&m_Buffer);
    }
    ~LogBench() {
        CUIUpdate::FreeUIUpdate();
        CAppState::CleanupAppState();
    }
    LogBench(LogBench const &) = delete;
    LogBench & operator=(LogBench const &) = delete;

    CIniArgs m_Args;
    CTestSuiteLog m_Suite;
    COutputBuffer m_Buffer;
};
