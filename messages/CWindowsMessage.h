// A window message as an object that owns what it needs, so that a test can read it on its own
// thread after the window's procedure has returned.
//
// A message does not change once it is made, and belongs to one owner at a time: the window's
// procedure, the queue in CAppState, the test. There is no lock.
#pragma once

#include <cstdint>
#include <memory>

#include "app/Export.h"
#include "platform/BaseTypes.h"
#include "siblings/Keelbase.h"

class MORVEX_API CWindowsMessage {
public:
    // `name` is for display; null gives an empty one.
    CWindowsMessage(
        HWND const window, unsigned int message, unsigned long long wParam, long long lParam,
        char const * name);
    CWindowsMessage(CWindowsMessage const & other);
    virtual ~CWindowsMessage();

    // The message's own details, of several lines; empty for a message of no particular class.
    virtual CSafeString GetDetailsStr() const;

    // A line feed, then one line without a final line feed: code, name, window and arguments.
    //
    // Deliberate: of the window and of both arguments the low 32 bits show, padded to 16 digits in
    // the arguments.
    CSafeString GetDescriptionStr() const;

    HWND HWnd() const { return m_hWnd; }
    unsigned int MessageCode() const { return m_MessageCode; }
    unsigned long long WParam() const { return m_WParam; }
    long long LParam() const { return m_LParam; }

protected:
    HWND m_hWnd;
    std::uint32_t m_MessageCode;
    std::uint64_t m_WParam;
    std::int64_t m_LParam;
    CSafeString m_Name;
};

// The entry point for the owner of a window's procedure: makes an object of the class that the code
// has, CWMLButtonDown, CWMDeviceChange or else CWindowsMessage, to hand to
// CAppState::PushWindowsMessage. The last argument of a device event is read as the address of its
// record, or 0. Throws std::bad_alloc.
MORVEX_API std::unique_ptr<CWindowsMessage, void (*)(CWindowsMessage *)>
ConstructWindowsMessageOnHeap(
    HWND const window, unsigned int message, unsigned long long wParam, long long lParam);

// The deleter of every owning pointer. Null does nothing.
MORVEX_API void DeleteWindowsMessageFromHeap(CWindowsMessage * message);
