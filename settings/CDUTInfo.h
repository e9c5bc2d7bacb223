// What a test house records about the device under test, in memory and in the registry.
//
// The stored record lies in the product's key under the application's name as it was at the
// process's first call of Load, Save, Clear or DUTExists; CAppState must be up by then. These four
// return no status: each value that fails is told to the operator through the output buffer, and
// the next one is tried. After such a message the operator's abort can leave them as
// CQNRunTimeException; values that were not tried yet stay as they are.
//
// There is no lock: a record belongs to the thread that works the host's dialogs.
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

    // Takes over what is stored; texts that cannot be read are empty afterwards.
    void Load();
    void Save();

    // Deletes the stored texts and then empties the record. The key stays.
    void Clear();

    // Whether an identification number and a room are stored, both not empty. The record itself
    // has no part in it.
    bool DUTExists() const;

private:
    void ResetMembers();
    void RetrieveAllFromRegistry();

    std::wstring m_TID;
    std::wstring m_TestBed;
    std::wstring m_RoomNumber;
    std::wstring m_Comments;
};
