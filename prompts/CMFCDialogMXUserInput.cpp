// One dialog at a time, between the thread that asks and the threads that end it.
//
// The state is made and shown by the asking thread and deleted by whichever thread terminates, so
// every step that touches it holds stateGuard, and finds out there whether it is still there. The
// guard is below m_DialogMutex, and no update is sent under it.
#include "prompts/CMFCDialogMXUserInput.h"

#include <cstring>
#include <mutex>
#include <new>
#include <set>
#include <utility>

#include "output/CUIUpdate.h"

constinit CHelperDialogState * CMFCDialogMXUserInput::m_ActiveDialogState = nullptr;
constinit std::atomic<bool> CMFCDialogMXUserInput::m_DialogActive = false;
constinit std::atomic<bool> CMFCDialogMXUserInput::m_CurrentlyTerminating = false;

namespace {

std::mutex stateGuard;

// Held from the claim to be the terminating thread until that thread has the mutex: one that comes
// second must not be there first.
std::mutex terminationGate;

constexpr DWORD WithoutEnd = 0xFFFFFFFF;

// The objects whose mutex and lock are their own; copies have those of another.
class Originals {
public:
    void Add(void const * object) {
        std::scoped_lock const lock(m_Guard);
        m_Objects.insert(object);
    }
    bool Remove(void const * object) {
        std::scoped_lock const lock(m_Guard);
        return m_Objects.erase(object) != 0;
    }

private:
    std::mutex m_Guard;
    std::set<void const *> m_Objects;
};

Originals & AllOriginals() {
    static Originals originals;
    return originals;
}

class MutexScope {
public:
    explicit MutexScope(HANDLE mutex) : m_Mutex(mutex) { WaitForSingleObject(m_Mutex, INFINITE); }
    MutexScope(MutexScope const &) = delete;
    MutexScope & operator=(MutexScope const &) = delete;
    ~MutexScope() { ReleaseMutex(m_Mutex); }

private:
    HANDLE const m_Mutex;
};

void UpdateAndMeetAbort(bool force) {
    CUIUpdate::SendUpdate(force);
    CUIUpdate::GetUIUpdate()->CheckAbort();
}

} // namespace

CMFCDialogMXUserInput::CMFCDialogMXUserInput() { Open(); }

CMFCDialogMXUserInput::CMFCDialogMXUserInput(CMXLog * const log, std::wstring const & header)
    : CMXUserInput(log, header) {
    Open();
}

CMFCDialogMXUserInput::CMFCDialogMXUserInput(CMXLog * const log, std::string const & header)
    : CMXUserInput(log, header) {
    Open();
}

CMFCDialogMXUserInput::CMFCDialogMXUserInput(CMXLog * const log) : CMXUserInput(log) { Open(); }

void CMFCDialogMXUserInput::Open() {
    AllOriginals().Add(this);
    new (&m_DialogLock) CLockMgr;
    m_CurrentlyTerminating = false;
    ResetHelperDialogs();
    m_DialogMutex = CreateMutexA(nullptr, FALSE, nullptr);
}

CMFCDialogMXUserInput::CMFCDialogMXUserInput(CMFCDialogMXUserInput const & other)
    : CMXUserInput(other), m_DialogMutex(other.m_DialogMutex) {
    std::memcpy(
        static_cast<void *>(&m_DialogLock), static_cast<void const *>(&other.m_DialogLock),
        sizeof m_DialogLock);
}

CMFCDialogMXUserInput & CMFCDialogMXUserInput::operator=(CMFCDialogMXUserInput const & other) {
    if (this == &other) return *this;
    CMXUserInput::operator=(other);
    AllOriginals().Remove(this);
    m_DialogMutex = other.m_DialogMutex;
    std::memcpy(
        static_cast<void *>(&m_DialogLock), static_cast<void const *>(&other.m_DialogLock),
        sizeof m_DialogLock);
    return *this;
}

CMFCDialogMXUserInput::~CMFCDialogMXUserInput() {
    DeleteState();
    m_CurrentlyTerminating = false;
    ResetHelperDialogs();
    if (!AllOriginals().Remove(this)) return;
    CloseHandle(m_DialogMutex);
    m_DialogLock.~CLockMgr();
}

TS_STATUS CMFCDialogMXUserInput::Reset() {
    m_CurrentlyTerminating = false;
    ResetHelperDialogs();
    return TS_SUCCESS;
}

bool CMFCDialogMXUserInput::IsDialogActive() {
    CLockScope const lock(m_DialogLock);
    return m_DialogActive;
}

bool CMFCDialogMXUserInput::AcquireActiveDialog() {
    CLockScope const lock(m_DialogLock);
    return !m_DialogActive.exchange(true);
}

bool CMFCDialogMXUserInput::ReleaseActiveDialog() {
    CLockScope const lock(m_DialogLock);
    return m_DialogActive.exchange(false);
}

// Asking.

template <typename Init>
TS_STATUS CMFCDialogMXUserInput::Ask(Init const & init) {
    if (!AcquireActiveDialog()) return TS_DIALOG_BUSY;
    HoldState(init());
    return CreateHelperDialog(nullptr);
}

// What was held stays as it is: another question may show it still.
void CMFCDialogMXUserInput::HoldState(CHelperDialogState * state) {
    std::scoped_lock const guard(stateGuard);
    m_ActiveDialogState = state;
}

void CMFCDialogMXUserInput::DeleteState() {
    std::scoped_lock const guard(stateGuard);
    delete std::exchange(m_ActiveDialogState, nullptr);
}

TS_STATUS CMFCDialogMXUserInput::CreateHelperDialog(CHelperDialogState * const) {
    CMXGuiEvent * event = nullptr;
    if (!EnableState(event)) return EndedByAnother();
    std::unique_ptr<CMXGuiEvent> privateEvent;
    if (event == nullptr) {
        UpdateAndMeetAbort(true);
        privateEvent = std::make_unique<CMXGuiEvent>(0);
    }
    DWORD timeout = 0;
    if (!ShowState(privateEvent.get(), timeout)) return EndedByAnother();
    if (!privateEvent) return TS_SUCCESS;
    privateEvent->WaitOnEvent(timeout);
    return DialogEnded(std::move(privateEvent));
}

// Both are false when the state is gone: another thread has terminated the dialog.
bool CMFCDialogMXUserInput::EnableState(CMXGuiEvent *& event) {
    std::scoped_lock const guard(stateGuard);
    if (m_ActiveDialogState == nullptr) return false;
    m_ActiveDialogState->inputEnabled = m_InputEnabled;
    event = m_ActiveDialogState->event;
    return true;
}

bool CMFCDialogMXUserInput::ShowState(CMXGuiEvent * privateEvent, DWORD & timeout) {
    std::scoped_lock const guard(stateGuard);
    CHelperDialogState * const state = m_ActiveDialogState;
    if (state == nullptr) return false;
    if (privateEvent != nullptr) state->event = privateEvent;
    if (state->timeout == 0) state->timeout = WithoutEnd;
    timeout = state->timeout;
    state->event->ClearEvent();
    PostHelperDialogCreateMessage(AppMainWnd(), reinterpret_cast<std::intptr_t>(state));
    WaitForHelperDialogCreationToComplete();
    return true;
}

// Under the mutex a termination is over or has not begun.
TS_STATUS CMFCDialogMXUserInput::DialogEnded(std::unique_ptr<CMXGuiEvent> privateEvent) {
    TS_STATUS result = TS_DIALOG_BUSY;
    {
        MutexScope const mutex(m_DialogMutex);
        std::scoped_lock const guard(stateGuard);
        if (m_ActiveDialogState != nullptr)
            result = DialogTimedOut() ? TS_DIALOG_TIMED_OUT : TS_SUCCESS;
    }
    privateEvent.reset();
    TerminateDialog();
    return result;
}

TS_STATUS CMFCDialogMXUserInput::EndedByAnother() {
    TerminateDialog();
    return TS_DIALOG_BUSY;
}

// Ending.

TS_STATUS CMFCDialogMXUserInput::TerminateDialog() {
    if (EnterTermination()) DestroyDialog();
    ReleaseActiveDialog();
    ReleaseMutex(m_DialogMutex);
    m_CurrentlyTerminating = false;
    UpdateAndMeetAbort(false);
    return TS_SUCCESS;
}

// Takes the mutex. False: another thread was first, and by now has destroyed the dialog.
bool CMFCDialogMXUserInput::EnterTermination() {
    {
        std::scoped_lock const gate(terminationGate);
        if (!m_CurrentlyTerminating.exchange(true)) {
            WaitForSingleObject(m_DialogMutex, INFINITE);
            return true;
        }
    }
    WaitForSingleObject(m_DialogMutex, INFINITE);
    return false;
}

void CMFCDialogMXUserInput::DestroyDialog() {
    std::scoped_lock const guard(stateGuard);
    if (m_ActiveDialogState == nullptr) return;
    PostHelperDialogDestroyMessage(AppMainWnd());
    WaitForHelperDialogDestructionToComplete();
    delete std::exchange(m_ActiveDialogState, nullptr);
}

// The plain questions.

TS_STATUS CMFCDialogMXUserInput::GetSelectionFromList(
    std::wstring * prompt, std::vector<std::wstring> * list, unsigned long * selection,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Ask([&] {
        return InitGetUserListSingleSelectionDialog(
            m_DialogHeader, prompt, list, timeout, selection, event, args);
    });
}

TS_STATUS CMFCDialogMXUserInput::GetSelectionFromListAllowAbort(
    std::wstring * first, std::wstring * second, std::wstring * third,
    std::vector<std::wstring> * list, unsigned long * selection, bool * aborted,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Ask([&] {
        return InitGetUserListSingleSelectionAllowAbortDialog(
            m_DialogHeader, first, second, third, list, timeout, selection, aborted, event, args);
    });
}

TS_STATUS CMFCDialogMXUserInput::GetMultipleSelectionsFromList(
    std::wstring * prompt, std::vector<std::wstring> * list,
    std::vector<unsigned long> ** selections, unsigned long timeout, CMXGuiEvent * event,
    WINDOW_ARGS * args) {
    if (!AcquireActiveDialog()) return TS_DIALOG_BUSY;
    if (selections != nullptr) *selections = nullptr;
    HoldState(InitGetUserListSelectionsDialog(
        m_DialogHeader, prompt, list, timeout, selections, event, args));
    // Deliberate: claim and state stay behind.
    // Pinned by CMFCDialogMXUserInputTest.SelectionsWithoutAPlaceKeepTheClaimAndShowNothing.
    if (selections == nullptr) return TS_NULL_RESULT;
    return CreateHelperDialog(nullptr);
}

TS_STATUS CMFCDialogMXUserInput::DisplayInfoToUser(
    std::wstring * text, unsigned long timeout, bool flag, CMXGuiEvent * event,
    std::wstring * button, WINDOW_ARGS * args) {
    return Ask([&] {
        return InitDisplayInfoToUserDialog(
            m_DialogHeader, text, flag, timeout, button, event, args);
    });
}

TS_STATUS CMFCDialogMXUserInput::GetBooleanDecision(
    std::wstring * first, std::wstring * second, std::wstring * third, bool * answer,
    unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Ask([&] {
        return InitGetUserBooleanChoiceDialog(
            m_DialogHeader, first, second, third, answer, timeout, event, args);
    });
}

TS_STATUS CMFCDialogMXUserInput::GetString(
    std::wstring * title, std::wstring * prompt, std::wstring * answer, unsigned long timeout,
    CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Ask([&] {
        return InitGetUserItemDialog(
            m_DialogHeader, title, prompt, false, false, timeout, nullptr, answer, event, args);
    });
}

// The choosers.

bool CMFCDialogMXUserInput::SelectSingleFile(
    CSafeString & file, wchar_t const * const first, wchar_t const * const second, bool flag) {
    UpdateAndMeetAbort(true);
    return ::SelectSingleFile(file, first, second, flag);
}

bool CMFCDialogMXUserInput::SelectMultipleFiles(
    std::vector<CSafeString> *& files, wchar_t const * const first, wchar_t const * const second,
    bool flag) {
    UpdateAndMeetAbort(true);
    return ::SelectMultipleFiles(files, first, second, flag);
}

bool CMFCDialogMXUserInput::SelectSingleVIF(
    CSafeString & file, wchar_t const * const message, wchar_t const * const third, bool fourth) {
    ShowMessage(message);
    return ::SelectSingleVIF(file, third, fourth);
}

bool CMFCDialogMXUserInput::SelectMultipleVIFs(
    std::vector<CSafeString> *& files, wchar_t const * const message, wchar_t const * const third,
    bool fourth) {
    ShowMessage(message);
    return ::SelectMultipleVIFs(files, third, fourth);
}

void CMFCDialogMXUserInput::ShowMessage(wchar_t const * message) {
    if (message == nullptr || *message == 0) return;
    std::wstring text = std::wstring(message) + L"\n\nClick 'OK' to continue.";
    DisplayInfoToUser(&text, WithoutEnd, true, nullptr, nullptr, nullptr);
}
