// The link between test code and the host's window: a doorbell one way, the abort the other.
//
// Test code leaves text in the COutputBuffer and progress here, then rings with one message that
// has no arguments. On it the host reads what it wants: GetBuffer, the progress, DoSetName with
// GetTestSuiteName, SetCursor with GetNewCursor. To ask for an abort it sets AbortFunction(true),
// and test code meets that at its next update, as an exception or as a status.
//
// Two kinds of thread come here. There is no lock. A forced update blocks the test thread while
// the host reads; after a posted one the host may read while the test goes on and see a newer
// value, so flags and numbers are atomic. The texts (m_ProgressLabel, m_TestSuiteName) are not:
// change them only where a forced update, or none yet, stands between the change and its reader.
// The object must exist before a second thread can reach it.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "app/Export.h"
#include "app/SharedValue.h"
#include "log/TestStatus.h"
#include "output/CCustomMessageHandler.h"

class COutputBuffer;

class MORVEX_API CUIUpdate : public CCustomMessageHandler {
public:
    // What the host's window receives, with both arguments 0.
    static constexpr unsigned int UpdateMessage = WM_APP + 20;

    CUIUpdate(CUIUpdate const & other);
    CUIUpdate & operator=(CUIUpdate const & other);
    ~CUIUpdate() override;

    // The one object, made at first use with a null window: no update reaches anybody then. A
    // forced one fails; an unforced one is queued to the calling thread itself, which has no use
    // for it. The second form is the host's, once its window exists.
    static CUIUpdate * GetUIUpdate();
    static CUIUpdate * GetUIUpdate(HWND__ * const window);

    // Ends the object, if there is one. Twice is harmless.
    static void FreeUIUpdate();

    static COutputBuffer * GetBuffer() { return GetUIUpdate()->GetOutputBuffer(); }

    // Rings the host and looks at no flag. Forced, or with CAppState's minimum interval at 0: waits
    // until the host has served it, and does not restart the interval. Otherwise posts, at most
    // once in more than the interval, and never waits.
    static void SendUpdate(bool force);

    // UpdateUI on the one object.
    static TS_STATUS DoUpdate(bool force) { return GetUIUpdate()->UpdateUI(force); }

    // Rings the host. TS_SUCCESS, or TS_ABORTED while the operator's abort stands; the first time
    // that it meets an armed abort it throws, as CheckAbort.
    TS_STATUS UpdateUI(bool force);

    // Throws CQNRunTimeException "Test Aborted by user." once for an abort that stands, if
    // ThrowExceptionOnAbort is on.
    void CheckAbort();

    // Rings the host, then throws CQNRunTimeException "Test aborted by Quillon." whatever the flags
    // say.
    [[noreturn]] void DoAbort(bool force);

    // Asks the host for another cursor, rings it, then CheckAbort. The text is borrowed until the
    // request ends.
    void SetCursor(wchar_t const * name);

    // Ends the request in the same way; without one it does nothing.
    void ResetCursor();

    // The operator's abort. Only the host sets and clears it.
    bool AbortFunction() const { return m_AbortFunction; }
    void AbortFunction(bool abort) { m_AbortFunction = abort; }

    // The host's own.
    bool AbortFunctionOnly() const { return m_AbortFunctionOnly; }
    void AbortFunctionOnly(bool abort) { m_AbortFunctionOnly = abort; }

    int ProgressRange() const { return m_ProgressRange; }
    void ProgressRange(int range) { m_ProgressRange = range; }
    int ProgressPosition() const { return m_ProgressPosition; }
    void ProgressPosition(int position) { m_ProgressPosition = position; }
    unsigned int ProgressTime() const { return m_ProgressTime; }
    void ProgressTime(unsigned int time) { m_ProgressTime = time; }
    std::string ProgressLabel() const { return m_ProgressLabel; }
    void ProgressLabel(std::string const & label) { m_ProgressLabel = label; }

    // Setting the name does not tell the host to take it: that is DoSetName(true).
    std::wstring const & GetTestSuiteName() const { return m_TestSuiteName; }
    void SetTestSuiteName(std::wstring const & name) { m_TestSuiteName = name; }
    bool DoSetName() const { return m_DoSetName; }
    void DoSetName(bool take) { m_DoSetName = take; }

    // Whether a cursor request is in force; only then GetNewCursor has a meaning.
    bool SetCursor() const { return m_SetCursor; }
    wchar_t const * GetNewCursor() const { return m_NewCursor; }

    // The buffer that the host shows. It stays the host's.
    COutputBuffer * GetOutputBuffer() const { return m_OutputBuffer; }
    void SetOutputBuffer(COutputBuffer * const buffer) { m_OutputBuffer = buffer; }

    // Whether an abort becomes an exception. Switching it off lets one abort be thrown again.
    bool ThrowExceptionOnAbort() const { return m_ThrowExceptionOnAbort; }
    void ThrowExceptionOnAbort(bool on) {
        m_ThrowExceptionOnAbort = on;
        if (!on) m_AbortThrown = false;
    }

    static void VerboseDisplay(bool on) { m_VerboseDisplay = on; }

private:
    explicit CUIUpdate(HWND__ * const window);

    SharedValue<bool> m_AbortFunction = false;
    SharedValue<bool> m_AbortFunctionOnly = false;
    SharedValue<bool> m_AbortThrown = false;
    std::string m_ProgressLabel;
    SharedValue<std::uint32_t> m_ProgressTime = 0;
    SharedValue<std::int32_t> m_ProgressRange = 0;
    SharedValue<std::int32_t> m_ProgressPosition = 0;
    std::wstring m_TestSuiteName;
    SharedValue<bool> m_DoSetName = false;
    SharedValue<bool> m_SetCursor = false;
    // Nothing reads it; copies carry it.
    std::int64_t m_CursorValue = 129;
    SharedValue<wchar_t const *> m_NewCursor = nullptr;
    COutputBuffer * m_OutputBuffer = nullptr;
    SharedValue<bool> m_ThrowExceptionOnAbort = false;

    static CUIUpdate * m_sTheUIUpdateObject;
    static std::atomic<std::uint64_t> m_dwLastMessageTime;
    static std::atomic<bool> m_VerboseDisplay;
};
