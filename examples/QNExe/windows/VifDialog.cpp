// The dialog in which the VIF files are chosen.
#include "examples/QNExe/windows/VifDialog.h"

#include <string>
#include <vector>

#include "examples/QNExe/windows/Controls.h"
#include "examples/QNExe/windows/FileDialogs.h"
#include "examples/QNExe/windows/IdleState.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "settings/Registry.h"
#include "siblings/Keelbase.h"

namespace {

constexpr long NotFound = 2;
constexpr FileKind VifFiles{L"Choose a VIF file", L"VIF files\0*.xml\0All files\0*.*\0"};

LRESULT SendToList(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    return SendDlgItemMessageW(dialog, ID_VIF_DFP_LIST, message, wParam, lParam);
}

void AddToList(HWND dialog, std::string const & file) {
    SendToList(dialog, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Utf8ToUtf16(file)->c_str()));
}

std::string Entry(HWND dialog, WPARAM place) {
    auto const length = SendToList(dialog, LB_GETTEXTLEN, place, 0);
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    SendToList(dialog, LB_GETTEXT, place, reinterpret_cast<LPARAM>(text.data()));
    return *Utf16ToUtf8(text);
}

void Fill(HWND dialog) {
    CAppState::ReadUFPVifFromRegistry();
    CAppState::ReadDFPVifsFromRegistry();
    if (CAppState::UFPVifLoaded()) ControlText(dialog, ID_VIF_UFP, *CAppState::UFPVifName());
    if (!CAppState::DFPVifLoaded()) return;
    for (CSafeString const & name : *CAppState::DFPVifNames())
        AddToList(dialog, name.get());
}

void Browse(HWND dialog) {
    auto const files = AskForFiles(dialog, VifFiles, false);
    if (!files.empty()) ControlText(dialog, ID_VIF_UFP, files.front());
}

void Add(HWND dialog) {
    for (std::string const & file : AskForFiles(dialog, VifFiles, true))
        AddToList(dialog, file);
}

void Remove(HWND dialog) {
    for (auto place = SendToList(dialog, LB_GETCOUNT, 0, 0) - 1; place >= 0; --place)
        if (SendToList(dialog, LB_GETSEL, static_cast<WPARAM>(place), 0) > 0)
            SendToList(dialog, LB_DELETESTRING, static_cast<WPARAM>(place), 0);
}

std::vector<CSafeString> Names(HWND dialog) {
    std::vector<CSafeString> names;
    auto const count = SendToList(dialog, LB_GETCOUNT, 0, 0);
    for (LRESULT place = 0; place < count; ++place)
        names.emplace_back(Entry(dialog, static_cast<WPARAM>(place)).c_str());
    return names;
}

// That there was no list to replace is no failure.
bool Store(HWND dialog) {
    CAppState::UFPVifName(ControlText(dialog, ID_VIF_UFP));
    if (!CAppState::WriteUFPVifToRegistry()) return false;
    CAppState::DFPVifNames(Names(dialog));
    CAppState::WriteDFPVifsToRegistry();
    return GetLastRegErrCode() == 0 || GetLastRegErrCode() == NotFound;
}

void Save(HWND dialog) {
    if (Store(dialog))
        EndDialog(dialog, IDOK);
    else
        ControlText(dialog, ID_VIF_REPLY, "The choice cannot be stored: " + GetLastRegErrMsg());
}

void Do(HWND dialog, int command) {
    if (command == ID_VIF_UFP_BROWSE) Browse(dialog);
    if (command == ID_VIF_DFP_ADD) Add(dialog);
    if (command == ID_VIF_DFP_REMOVE) Remove(dialog);
    if (command == IDOK) Save(dialog);
    if (command == IDCANCEL) EndDialog(dialog, IDCANCEL);
}

INT_PTR CALLBACK Receive(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) {
        Fill(dialog);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    Do(dialog, LOWORD(wParam));
    return TRUE;
}

} // namespace

void ShowVifDialog(HWND owner) {
    IdleState const state;
    DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_VIF_DIALOG), owner, Receive, 0);
}
