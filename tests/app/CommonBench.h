// What the start of a suite and its banner need around them, and what both leave behind, as lines.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/CommonWrapped.h"
#include "log/CMXLog.h"
#include "log/LogBench.h"
#include "output/Doorbell.h"

using Pairs = CTestSuiteLog::Pairs;

inline std::string WordOf(TEST_STATUS status) {
    switch (status) {
    case TEST_STATUS_ABORT:
        return "ABORT ";
    case TEST_STATUS_ERROR:
        return "ERROR ";
    case TEST_STATUS_WARNING:
        return "WARNING ";
    case TEST_STATUS_INFO:
        return "INFO ";
    default:
        return std::to_string(status) + ' ';
    }
}

// Keeps its entries as lines, with the look behind them if the caller has given one.
class LineLog : public CMXLog {
public:
    Lines Take() { return std::exchange(m_Lines, {}); }

protected:
    TS_STATUS
    InternalWrite(TEST_STATUS status, char const * const text, CFormatInfo const * look) override {
        std::string const given = look != nullptr ? " | " + Line(*look) : "";
        m_Lines.push_back(WordOf(status) + text + given);
        return TS_SUCCESS;
    }

private:
    Lines m_Lines;
};

// Registry values of the system's key by name; another key, and another name, are not there.
class FakeRegistry {
public:
    std::vector<std::pair<std::string, std::string>> m_Values;

private:
    static constexpr LSTATUS Missing = ERROR_FILE_NOT_FOUND;

    LSTATUS Query(std::string const & name, BYTE * data, DWORD & size) const {
        for (auto const & [known, text] : m_Values) {
            if (known != name) continue;
            size = static_cast<DWORD>(text.size() + 1);
            if (data != nullptr) std::memcpy(data, text.c_str(), size);
            return LSTATUS{};
        }
        return Missing;
    }

    Diversion<LSTATUS(HKEY, char const *, DWORD, REGSAM, HKEY *)> const m_Open{
        wrapped_RegOpenKeyExA,
        [](HKEY key, char const * subkey, DWORD, REGSAM, HKEY * result) -> LSTATUS {
            std::string const wanted = "Software\\Microsoft\\Windows NT\\CurrentVersion";
            if (key != HKEY_LOCAL_MACHINE || subkey != wanted) return Missing;
            *result = key;
            return LSTATUS{};
        }};
    Diversion<LSTATUS(HKEY, char const *, DWORD *, DWORD *, BYTE *, DWORD *)> const m_Query{
        wrapped_RegQueryValueExA,
        [this](HKEY, char const * name, DWORD *, DWORD *, BYTE * data, DWORD * size) {
            return Query(name, data, *size);
        }};
    Diversion<LSTATUS(HKEY)> const m_Close{wrapped_RegCloseKey, [](HKEY) { return LSTATUS{}; }};
};

class CommonBench : public testing::Test {
protected:
    CommonBench() { CUIUpdate::GetUIUpdate(WindowNumber(7)); }

    // The messages to the host's window since the last call.
    Lines Rings() { return m_Bell.Take(); }

    // The operator's abort, armed.
    static void Abort() {
        CUIUpdate::GetUIUpdate()->AbortFunction(true);
        CUIUpdate::GetUIUpdate()->ThrowExceptionOnAbort(true);
    }

    Doorbell m_Bell;
    LogBench m_Bench;
};
