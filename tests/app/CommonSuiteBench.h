// A suite that is started and ended on a bench.
#pragma once

#include <string>

#include "app/Common.h"
#include "app/CommonBench.h"
#include "prompts/CMFCDialogMXUserInput.h"

class CommonSuiteBench : public CommonBench {
protected:
    ~CommonSuiteBench() override {
        m_Bell.m_OnRing = nullptr;
        CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(false);
        End();
    }

    static inline std::string const OpeningLines[] = {
        "INFO Test log initialized.", "INFO Log Level: Normal",
        "INFO User Input module initialized"};

    TS_STATUS Init() {
        return Common_InitTestSuite(
            m_Log, m_Type, m_UserInput, m_Header, m_Buffer, m_Versions, m_LogFileName,
            m_MakeGlobal);
    }

    TS_STATUS End() { return Common_EndTestSuite(m_Log, m_UserInput); }

    // What the suite's record has of the start.
    Lines Entries() {
        Lines lines;
        for (auto const & entry : m_Bench.m_Suite.CurrentTestLog()->Entries())
            lines.push_back(WordOf(entry.status) + entry.text);
        return lines;
    }

    std::wstring Header() const {
        struct Peek : CMFCDialogMXUserInput {
            static std::wstring Of(CMXUserInput const & input) {
                return input.*&Peek::m_DialogHeader;
            }
        };
        return Peek::Of(*m_UserInput);
    }

    // What there is now.
    std::string Moment() {
        std::string moment = std::to_string(Entries().size()) + " entries";
        if (m_Log != nullptr) moment += ", log";
        if (CAppState::UserInput() != nullptr) moment += ", held input";
        if (m_UserInput != nullptr) moment += ", input";
        return moment;
    }

    CMXLog * m_Log = nullptr;
    CMXUserInput * m_UserInput = nullptr;
    tagTS_LOG_TYPE m_Type = TS_LOG_HTML;
    char const * m_Header = nullptr;
    COutputBuffer * m_Buffer = &m_Bench.m_Buffer;
    bool m_Versions = false;
    char * m_LogFileName = nullptr;
    bool m_MakeGlobal = true;
    Lines m_Moments;
};
