// What a test house records about the device under test.
//
// A plain record without a lock: it belongs to the thread that works the host's dialogs.
#pragma once

#include <string>

#include "app/Export.h"

class MORVEX_API CDUTInfo {
public:
    // The test identification number.
    std::wstring TID() const { return m_TID; }
    void TID(std::wstring const & id) { m_TID = id; }

    std::wstring TestBed() const { return m_TestBed; }
    void TestBed(std::wstring const & bed) { m_TestBed = bed; }

    std::wstring RoomNumber() const { return m_RoomNumber; }
    void RoomNumber(std::wstring const & room) { m_RoomNumber = room; }

    std::wstring Comments() const { return m_Comments; }
    void Comments(std::wstring const & comments) { m_Comments = comments; }

private:
    std::wstring m_TID;
    std::wstring m_TestBed;
    std::wstring m_RoomNumber;
    std::wstring m_Comments;
};
