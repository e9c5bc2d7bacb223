// The record of the device under test in the registry, and what the operator hears of failures.
#include "settings/CDUTInfo.h"

#include "app/CAppState.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "settings/Registry.h"
#include "siblings/Keelbase.h"

namespace {

constexpr wchar_t TIDName[] = L"TestIdentNumber";
constexpr wchar_t TestBedName[] = L"TestBed";
constexpr wchar_t RoomNumberName[] = L"RoomNumber";
constexpr wchar_t CommentsName[] = L"Comments";

constexpr unsigned int ErrorLevel = 1;
constexpr unsigned int NotFoundLevel = 5;
constexpr unsigned long ReportColor = 0x7F007F;

std::wstring s_DUTKey;

// Deliberate: built once; the application's later names are not seen.
// Pinned by CDUTInfoRegistryTest.ALaterApplicationNameHasNoEffectOnTheKey.
void InitDUTKey() {
    if (!s_DUTKey.empty()) return;
    GetQNKey(s_DUTKey);
    std::string const * const application = CAppState::ApplicationName();
    if (application == nullptr) return;
    // Deliberate: below the product's key, where the VIF files' key stands beside it.
    // Pinned by CDUTInfoRegistryTest.TheRecordLiesBelowTheProductsKeyUnderTheApplicationsName.
    s_DUTKey += L'\\' + *Utf8ToUtf16(*application);
}

void Show(CBasicFormattedString<wchar_t> const & message, unsigned int level) {
    COutputBuffer * const buffer = CUIUpdate::GetBuffer();
    if (buffer != nullptr) buffer->AddVerbose(message, level, ReportColor);
}

// Deliberate: the message names the value, not the key.
// Pinned by CDUTInfoRegistryTest.AMissingRecordIsReportedTwiceAtLevelOne.
void ShowFailure(
    wchar_t const * operation, std::wstring const & name, unsigned int level,
    bool quietIfNotFound) {
    if (GetLastRegErrCode() == ERROR_FILE_NOT_FOUND && quietIfNotFound) {
        Show(CBasicFormattedString<wchar_t>(L"Key %s not found in registry.\n", name), level);
        return;
    }
    auto const reason = Utf8ToUtf16(GetLastRegErrMsg());
    Show(
        CBasicFormattedString<wchar_t>(
            L"Registry %s Error: %s  key = %s.\n", operation, *reason, name),
        ErrorLevel);
}

void ReportRegistryFailure(
    wchar_t const * operation, std::wstring const & name, unsigned int level,
    bool quietIfNotFound) {
    ShowFailure(operation, name, level, quietIfNotFound);
    CUIUpdate::SendUpdate(true);
    CUIUpdate::GetUIUpdate()->CheckAbort();
}

void Write(wchar_t const * name, std::wstring const & text) {
    if (!TS_SetRegistryString(HKEY_LOCAL_MACHINE, s_DUTKey.c_str(), name, text))
        ReportRegistryFailure(L"Write", name, 0, false);
}

void Retrieve(wchar_t const * name, std::wstring & text) {
    if (!TS_GetRegistryString(HKEY_LOCAL_MACHINE, s_DUTKey.c_str(), name, text))
        ReportRegistryFailure(L"Retrieve", name, 0, false);
}

void Delete(wchar_t const * name) {
    if (!TS_DeleteRegistryVal(HKEY_LOCAL_MACHINE, s_DUTKey.c_str(), name))
        ReportRegistryFailure(L"Delete", name, NotFoundLevel, true);
}

} // namespace

void CDUTInfo::Load() {
    ResetMembers();
    RetrieveAllFromRegistry();
}

void CDUTInfo::Save() {
    InitDUTKey();
    Write(TIDName, m_TID);
    Write(TestBedName, m_TestBed);
    Write(RoomNumberName, m_RoomNumber);
    Write(CommentsName, m_Comments);
}

void CDUTInfo::Clear() {
    InitDUTKey();
    for (wchar_t const * const name : {TIDName, TestBedName, RoomNumberName, CommentsName})
        Delete(name);
    ResetMembers();
}

bool CDUTInfo::DUTExists() const {
    InitDUTKey();
    std::wstring id;
    std::wstring room;
    Retrieve(TIDName, id);
    Retrieve(RoomNumberName, room);
    return !id.empty() && !room.empty();
}

void CDUTInfo::ResetMembers() {
    m_TID.clear();
    m_TestBed.clear();
    m_RoomNumber.clear();
    m_Comments.clear();
}

void CDUTInfo::RetrieveAllFromRegistry() {
    InitDUTKey();
    Retrieve(TIDName, m_TID);
    Retrieve(TestBedName, m_TestBed);
    Retrieve(RoomNumberName, m_RoomNumber);
    Retrieve(CommentsName, m_Comments);
}
