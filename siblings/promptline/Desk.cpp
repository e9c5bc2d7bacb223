// The bookkeeping of dialogs.
#include "siblings/promptline/Desk.h"

#include <algorithm>
#include <utility>

#include "siblings/Keelbase.h"
#include "siblings/promptline/Face.h"
#include "siblings/promptline/Reply.h"

namespace {

// A wait may end early by a part of the system's tick. A dialog whose asker has waited that long is
// overdue all the same.
constexpr std::chrono::milliseconds EarlyWaits{32};

std::chrono::milliseconds Milliseconds(std::uint32_t count) {
    return std::chrono::milliseconds(count);
}

CPromptRecord RecordOf(Dialog const & dialog, Reply const * reply) {
    CPromptRecord record;
    record.question = *Utf16ToUtf8(dialog.question.Name());
    if (reply != nullptr) record.answer = TextOf(dialog.question, *reply);
    record.seconds = std::chrono::duration<double>(Dialog::Clock::now() - dialog.begun).count();
    return record;
}

bool IsHelper(SharedDialog const & dialog) { return dialog->state != nullptr; }

} // namespace

std::optional<long long> Dialog::SecondsLeft() const {
    if (!deadline) return std::nullopt;
    auto const left = std::chrono::ceil<std::chrono::seconds>(*deadline - Clock::now());
    return std::max<long long>(left.count(), 0);
}

Desk & Desk::The() {
    static Desk & desk = *new Desk;
    return desk;
}

// The service's side.

void Desk::Open(HWND window, HWND mainWindow, Face * face, CPromptListener * listener) {
    std::scoped_lock const lock(m_Lock);
    m_Window = window;
    m_MainWindow.handle = mainWindow;
    m_Face = face;
    m_Listener = listener;
}

void Desk::Close() {
    {
        std::scoped_lock const lock(m_Lock);
        m_Window = nullptr;
        FinishAll("the program has ended");
        RefuseRequests();
        m_Created.Signal();
        m_Destroyed.Signal();
    }
    Settle();
    std::scoped_lock const lock(m_Lock);
    m_Face = nullptr;
    m_Listener = nullptr;
}

void Desk::Serve(UINT message, LPARAM parameter) {
    switch (message) {
    case CreateRequest:
        Create(reinterpret_cast<CHelperDialogState *>(static_cast<std::intptr_t>(parameter)));
        break;
    case DestroyRequest:
        Destroy();
        break;
    case ChooseRequest:
        ShowChoosers();
        break;
    default:
        Settle();
    }
}

void Desk::Create(CHelperDialogState * state) {
    SharedDialog dialog;
    {
        std::scoped_lock const lock(m_Lock);
        if (std::erase(m_Requested, state) != 0)
            dialog = Opened(static_cast<PromptState const &>(*state));
    }
    if (dialog) m_Face->Show(dialog);
    Settle();
    m_Created.Signal();
}

SharedDialog Desk::Opened(PromptState const & state) {
    auto dialog = std::make_shared<Dialog>();
    dialog->question = state.question;
    dialog->question.inputEnabled = state.inputEnabled;
    dialog->store = state.store;
    if (state.event != nullptr) dialog->event = state.event->GetCore();
    dialog->state = &state;
    if (state.timeout != 0xFFFFFFFF) dialog->deadline = dialog->begun + Milliseconds(state.timeout);
    m_Open.push_back(dialog);
    return dialog;
}

void Desk::Destroy() {
    {
        std::scoped_lock const lock(m_Lock);
        auto const last = std::find_if(m_Open.rbegin(), m_Open.rend(), IsHelper);
        if (last != m_Open.rend()) {
            SharedDialog const dialog = *last;
            Finish(dialog, {.reason = "ended by the test"});
        }
    }
    Settle();
    m_Destroyed.Signal();
}

void Desk::ShowChoosers() {
    std::vector<SharedDialog> requested;
    {
        std::scoped_lock const lock(m_Lock);
        requested.swap(m_RequestedChoosers);
        m_Open.insert(m_Open.end(), requested.begin(), requested.end());
    }
    for (auto const & dialog : requested)
        m_Face->Show(dialog);
    Settle();
}

// Tells of what has ended.
void Desk::Settle() {
    std::vector<Ended> ended;
    {
        std::scoped_lock const lock(m_Lock);
        ended.swap(m_Ended);
    }
    for (auto const & [dialog, record] : ended) {
        if (m_Face != nullptr) m_Face->Remove(dialog);
        bool const isAsked = dialog->question.kind != QuestionKind::Notice;
        if (m_Listener != nullptr && isAsked) m_Listener->PromptEnded(record);
    }
}

// The face's side.

void Desk::Answer(SharedDialog const & dialog, Reply const & reply, char const * source) {
    EndNow(dialog, {.reply = &reply, .source = source});
}

void Desk::LeaveUnanswered(SharedDialog const & dialog, std::string const & reason) {
    EndNow(dialog, {.timedOut = true, .wantsAbort = !dialog->deadline, .reason = reason});
}

void Desk::EndNow(SharedDialog const & dialog, End const & end) {
    {
        std::scoped_lock const lock(m_Lock);
        Finish(dialog, end);
    }
    Settle();
}

bool Desk::IsOpen(SharedDialog const & dialog) {
    std::scoped_lock const lock(m_Lock);
    return std::find(m_Open.begin(), m_Open.end(), dialog) != m_Open.end();
}

bool Desk::Tick() {
    bool isTimed = false;
    {
        std::scoped_lock const lock(m_Lock);
        FinishOverdue({});
        isTimed = std::any_of(m_Open.begin(), m_Open.end(), [](auto const & dialog) {
            return dialog->deadline.has_value();
        });
    }
    Settle();
    if (isTimed) m_Face->Tick();
    return isTimed;
}

void Desk::AbortAll(std::string const & reason) {
    {
        std::scoped_lock const lock(m_Lock);
        FinishAll(reason);
    }
    Settle();
}

bool Desk::Finish(SharedDialog const & dialog, End const & end) {
    if (std::erase(m_Open, dialog) == 0) return false;
    CPromptRecord record = RecordOf(*dialog, end.reply);
    record.source = end.source;
    record.reason = end.reason;
    record.wantsAbort = end.wantsAbort;
    if (end.reply != nullptr) dialog->store(*end.reply);
    if (IsHelper(dialog)) m_TimedOut = end.timedOut;
    m_Ended.push_back({dialog, std::move(record)});
    if (dialog->event) dialog->event->Signal();
    return true;
}

bool Desk::FinishOverdue(Dialog::Clock::duration slack) {
    auto const now = Dialog::Clock::now() + slack;
    std::vector<SharedDialog> overdue;
    std::copy_if(
        m_Open.begin(), m_Open.end(), std::back_inserter(overdue),
        [now](auto const & dialog) { return dialog->deadline && *dialog->deadline <= now; });
    for (auto const & dialog : overdue)
        Finish(dialog, {.timedOut = true, .reason = "timed out"});
    return !overdue.empty();
}

void Desk::FinishAll(std::string const & reason) {
    for (auto const & dialog : std::vector<SharedDialog>(m_Open))
        Finish(dialog, {.timedOut = true, .reason = reason});
}

// Any thread.

CWnd * Desk::MainWindow() {
    std::scoped_lock const lock(m_Lock);
    return m_Window != nullptr ? &m_MainWindow : nullptr;
}

bool Desk::Post(UINT message, CHelperDialogState * state) {
    std::scoped_lock const lock(m_Lock);
    CMXGuiEvent::Core & done = message == CreateRequest ? m_Created : m_Destroyed;
    if (state != nullptr) m_Requested.push_back(state);
    done.Clear();
    auto const number = static_cast<LPARAM>(reinterpret_cast<std::intptr_t>(state));
    if (m_Window != nullptr && PostMessageA(m_Window, message, 0, number) != 0) return true;
    done.Signal();
    RefuseRequests();
    return false;
}

// What nobody will serve ends as what nobody can answer.
void Desk::RefuseRequests() {
    for (CHelperDialogState * const state : std::exchange(m_Requested, {})) {
        m_TimedOut = true;
        if (state->event != nullptr) state->event->SignalEvent();
    }
    for (auto const & dialog : std::exchange(m_RequestedChoosers, {}))
        dialog->event->Signal();
}

bool Desk::WaitForCreation() {
    m_Created.Wait(INFINITE);
    return MainWindow() != nullptr;
}

bool Desk::WaitForDestruction() {
    m_Destroyed.Wait(INFINITE);
    return MainWindow() != nullptr;
}

bool Desk::TimedOut() {
    std::scoped_lock const lock(m_Lock);
    if (FinishOverdue(EarlyWaits)) AskToSettle();
    return m_TimedOut;
}

void Desk::Reset() {
    std::scoped_lock const lock(m_Lock);
    m_TimedOut = false;
    m_Created.Signal();
    m_Destroyed.Signal();
}

void Desk::Forget(CHelperDialogState const * state) {
    std::scoped_lock const lock(m_Lock);
    std::erase(m_Requested, state);
    auto const found = std::find_if(
        m_Open.begin(), m_Open.end(), [state](auto const & open) { return open->state == state; });
    if (found == m_Open.end()) return;
    SharedDialog const dialog = *found;
    Finish(dialog, {.reason = "ended by the test"});
    AskToSettle();
}

void Desk::Choose(Question const & question, StoreReply const & store) {
    auto const dialog = std::make_shared<Dialog>();
    dialog->question = question;
    dialog->store = store;
    dialog->event = std::make_shared<CMXGuiEvent::Core>(false);
    HWND window = nullptr;
    {
        std::scoped_lock const lock(m_Lock);
        m_RequestedChoosers.push_back(dialog);
        window = m_Window;
        if (window == nullptr || PostMessageA(window, ChooseRequest, 0, 0) == 0) RefuseRequests();
    }
    dialog->event->Wait(INFINITE);
    // The host hears of the end before the caller goes on.
    SendMessageA(window, SettleRequest, 0, 0);
}

void Desk::AskToSettle() {
    if (m_Window == nullptr)
        m_Ended.clear();
    else
        PostMessageA(m_Window, SettleRequest, 0, 0);
}
