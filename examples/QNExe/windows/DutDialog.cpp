// The dialog of the device under test.
#include "examples/QNExe/windows/DutDialog.h"

#include <string>

#include "examples/QNExe/windows/Controls.h"
#include "examples/QNExe/windows/IdleState.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "settings/CDUTInfo.h"
#include "settings/Registry.h"
#include "siblings/Keelbase.h"

namespace {

constexpr long NotFound = 2;

struct Field {
    int control;
    std::wstring (CDUTInfo::*get)() const;
    void (CDUTInfo::*set)(std::wstring const &);
};
constexpr Field Fields[] = {
    {ID_DUT_TID, &CDUTInfo::TID, &CDUTInfo::TID},
    {ID_DUT_TEST_BED, &CDUTInfo::TestBed, &CDUTInfo::TestBed},
    {ID_DUT_ROOM, &CDUTInfo::RoomNumber, &CDUTInfo::RoomNumber},
    {ID_DUT_COMMENTS, &CDUTInfo::Comments, &CDUTInfo::Comments},
};

CDUTInfo & Record() { return *CAppState::DUTInfo(); }

void ShowRecord(HWND dialog) {
    for (Field const & field : Fields)
        SetDlgItemTextW(dialog, field.control, (Record().*field.get)().c_str());
}

void TakeFields(HWND dialog) {
    for (Field const & field : Fields)
        (Record().*field.set)(*Utf8ToUtf16(ControlText(dialog, field.control)));
}

std::string LastReason() {
    std::string reason = GetLastRegErrMsg();
    reason.erase(reason.find_last_not_of("\r\n") + 1);
    return reason;
}

// The record tells of no failure; the registry does.
void Reply(HWND dialog, std::string const & done, std::string const & failed) {
    bool const well = GetLastRegErrCode() == 0;
    ControlText(dialog, ID_DUT_REPLY, well ? done : failed + ": " + LastReason());
}

void Load(HWND dialog) {
    Record().Load();
    ShowRecord(dialog);
    if (GetLastRegErrCode() == NotFound)
        ControlText(dialog, ID_DUT_REPLY, "Nothing is stored.");
    else
        Reply(dialog, "Loaded what is stored.", "The record cannot be read");
}

void Save(HWND dialog) {
    TakeFields(dialog);
    Record().Save();
    Reply(dialog, "Saved. The next run logs it.", "The record cannot be stored");
}

void Clear(HWND dialog) {
    Record().Clear();
    ShowRecord(dialog);
    if (GetLastRegErrCode() == NotFound)
        ControlText(dialog, ID_DUT_REPLY, "Nothing was stored.");
    else
        Reply(dialog, "Cleared, here and in the store.", "The record cannot be cleared");
}

void Do(HWND dialog, int command) {
    if (command == ID_DUT_LOAD) Load(dialog);
    if (command == ID_DUT_SAVE || command == IDOK) Save(dialog);
    if (command == ID_DUT_CLEAR) Clear(dialog);
    if (command == IDCANCEL) EndDialog(dialog, 0);
}

INT_PTR CALLBACK Receive(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) {
        Load(dialog);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    Do(dialog, LOWORD(wParam));
    return TRUE;
}

} // namespace

void ShowDutDialog(HWND owner) {
    IdleState const state;
    DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_DUT_DIALOG), owner, Receive, 0);
}
