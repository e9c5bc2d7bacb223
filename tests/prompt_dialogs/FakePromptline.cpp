// The stand-in of the dialog library.
#include "prompt_dialogs/FakePromptline.h"

#include <utility>

#include "siblings/Keelbase.h"

class CMXGuiEvent::Core {};
class CWnd {};

namespace {

FakePromptline & Fake() { return FakePromptline::Get(); }

void Call(std::function<void()> const & hook) {
    if (hook) hook();
}

std::string Narrow(std::wstring const & text) { return *Utf16ToUtf8(text); }
std::string Narrow(std::wstring const * text) { return text != nullptr ? Narrow(*text) : "-"; }
std::string Narrow(wchar_t const * text) { return text != nullptr ? *Utf16ToUtf8(text) : "-"; }
std::string Word(bool flag) { return flag ? "true" : "false"; }

class FakeState : public CHelperDialogState {
public:
    FakeState(unsigned long milliseconds, CMXGuiEvent * signal) {
        timeout = static_cast<std::uint32_t>(milliseconds);
        event = signal;
    }
    ~FakeState() override { Fake().Add("state gone"); }
};

CHelperDialogState * Init(
    std::string const & kind, std::vector<std::string> const & words,
    std::vector<void const *> const & places, unsigned long timeout, CMXGuiEvent * event) {
    std::string line = "init " + kind;
    for (auto const & word : words)
        line += ", " + word;
    Fake().Add(line + ", " + std::to_string(timeout));
    Fake().places = places;
    return new FakeState(timeout, event);
}

bool Select(std::string const & line, void const * place) {
    Fake().Add("select " + line);
    Fake().places = {place};
    return Fake().chosen;
}

} // namespace

FakePromptline & FakePromptline::Get() {
    static FakePromptline fake;
    return fake;
}

void FakePromptline::Clear() {
    Take();
    places.clear();
    inputEnabled = timedOut = chosen = false;
    timeout = 0;
    event = nullptr;
    state = nullptr;
    onCreate = onWait = onDestroyed = nullptr;
}

void FakePromptline::Add(std::string const & line) {
    std::scoped_lock const lock(guard);
    m_Lines.push_back(line);
}

std::vector<std::string> FakePromptline::Take() {
    std::scoped_lock const lock(guard);
    return std::exchange(m_Lines, {});
}

CMXGuiEvent::CMXGuiEvent(int signalled) { Fake().Add("event " + std::to_string(signalled)); }
CMXGuiEvent::~CMXGuiEvent() { Fake().Add("event gone"); }
TS_STATUS CMXGuiEvent::ClearEvent() {
    Fake().Add("clear");
    return TS_SUCCESS;
}
TS_STATUS CMXGuiEvent::SignalEvent() { return TS_SUCCESS; }
TS_STATUS CMXGuiEvent::WaitOnEvent(unsigned long milliseconds) {
    Fake().Add("wait " + std::to_string(milliseconds));
    Call(Fake().onWait);
    return TS_FAILED;
}

CHelperDialogState::CHelperDialogState() = default;
CHelperDialogState::~CHelperDialogState() = default;

CWnd * AppMainWnd() { return Fake().window; }

int PostHelperDialogCreateMessage(CWnd * window, long long number) {
    auto * const state = reinterpret_cast<CHelperDialogState *>(static_cast<intptr_t>(number));
    Fake().Add(window == Fake().window ? "create" : "create elsewhere");
    Fake().state = state;
    Fake().inputEnabled = state->inputEnabled;
    Fake().timeout = state->timeout;
    Fake().event = state->event;
    Call(Fake().onCreate);
    return 0;
}

int PostHelperDialogDestroyMessage(CWnd * window) {
    Fake().Add(window == Fake().window ? "destroy" : "destroy elsewhere");
    return 0;
}

TS_STATUS WaitForHelperDialogCreationToComplete() {
    Fake().Add("created");
    return TS_FAILED;
}

TS_STATUS WaitForHelperDialogDestructionToComplete() {
    Fake().Add("destroyed");
    Call(Fake().onDestroyed);
    return TS_FAILED;
}

void ResetHelperDialogs() { Fake().Add("forget"); }

bool DialogTimedOut() {
    Fake().Add("timed out?");
    return Fake().timedOut;
}

CHelperDialogState * InitDisplayInfoToUserDialog(
    std::wstring const & header, std::wstring * text, bool closable, unsigned long timeout,
    std::wstring * button, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Init(
        "info", {Narrow(header), Narrow(text), Word(closable), Narrow(button)}, {event, args},
        timeout, event);
}

CHelperDialogState * InitGetUserBooleanChoiceDialog(
    std::wstring const & header, std::wstring * text, std::wstring * first, std::wstring * second,
    bool * answer, unsigned long timeout, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Init(
        "choice", {Narrow(header), Narrow(text), Narrow(first), Narrow(second)},
        {answer, event, args}, timeout, event);
}

CHelperDialogState * InitGetUserItemDialog(
    std::wstring const & header, std::wstring * title, std::wstring * prompt, bool numeric,
    bool hexadecimal, unsigned long timeout, unsigned long * value, std::wstring * string,
    CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Init(
        "item", {Narrow(header), Narrow(title), Narrow(prompt), Word(numeric), Word(hexadecimal)},
        {value, string, event, args}, timeout, event);
}

CHelperDialogState * InitGetUserListSingleSelectionDialog(
    std::wstring const & header, std::wstring * text, std::vector<std::wstring> * list,
    unsigned long timeout, unsigned long * selection, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Init(
        "one", {Narrow(header), Narrow(text)}, {list, selection, event, args}, timeout, event);
}

CHelperDialogState * InitGetUserListSingleSelectionAllowAbortDialog(
    std::wstring const & header, std::wstring * text, std::wstring * first, std::wstring * second,
    std::vector<std::wstring> * list, unsigned long timeout, unsigned long * selection,
    bool * aborted, CMXGuiEvent * event, WINDOW_ARGS * args) {
    return Init(
        "one or out", {Narrow(header), Narrow(text), Narrow(first), Narrow(second)},
        {list, selection, aborted, event, args}, timeout, event);
}

CHelperDialogState * InitGetUserListSelectionsDialog(
    std::wstring const & header, std::wstring * text, std::vector<std::wstring> * list,
    unsigned long timeout, std::vector<unsigned long> ** selections, CMXGuiEvent * event,
    WINDOW_ARGS * args) {
    std::string const place = selections == nullptr    ? "no place"
                              : *selections == nullptr ? "null"
                                                       : "something";
    return Init(
        "several", {Narrow(header), Narrow(text), place}, {list, selections, event, args}, timeout,
        event);
}

bool SelectSingleFile(
    CSafeString & file, wchar_t const * const title, wchar_t const * const filter, bool mustExist) {
    return Select("file, " + Narrow(title) + ", " + Narrow(filter) + ", " + Word(mustExist), &file);
}

bool SelectMultipleFiles(
    std::vector<CSafeString> *& files, wchar_t const * const title, wchar_t const * const filter,
    bool mustExist) {
    return Select(
        "files, " + Narrow(title) + ", " + Narrow(filter) + ", " + Word(mustExist), &files);
}

bool SelectSingleVIF(CSafeString & file, wchar_t const * const title, bool mustExist) {
    return Select("VIF, " + Narrow(title) + ", " + Word(mustExist), &file);
}

bool SelectMultipleVIFs(
    std::vector<CSafeString> *& files, wchar_t const * const title, bool mustExist) {
    return Select("VIFs, " + Narrow(title) + ", " + Word(mustExist), &files);
}
