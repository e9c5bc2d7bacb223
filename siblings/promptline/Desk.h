// The bookkeeping of dialogs: requests from any thread, dialogs on the thread of the main window,
// and one verdict on each.
//
// A dialog is open until its first end, whichever thread brings it: an answer, its time-out, a
// request to destroy it, or that nobody can answer. Under the desk's lock the end writes the
// answer, notes the verdict and signals the event, so no later end changes anything. What the face
// shows and what the host hears follows on the window's thread, before any later request is served.
#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/Messaging.h"
#include "siblings/promptline/EventCore.h"
#include "siblings/promptline/PromptState.h"

class Face;

// The main window as the contract hands it out.
class CWnd {
public:
    HWND handle = nullptr;
};

struct Dialog {
    using Clock = std::chrono::steady_clock;

    Question question;
    StoreReply store;
    std::shared_ptr<CMXGuiEvent::Core> event;
    // Whose dialog it is; null for a chooser. Never followed.
    CHelperDialogState const * state = nullptr;
    Clock::time_point begun = Clock::now();
    std::optional<Clock::time_point> deadline{};

    // Whole seconds until the time-out, at least 0; empty without one.
    std::optional<long long> SecondsLeft() const;
};

using SharedDialog = std::shared_ptr<Dialog const>;

class Desk {
public:
    // The one desk of the process, never ended: states may outlive every static.
    static Desk & The();

    // The service's side, on the window's thread. `face` and `listener` stay the caller's.
    void Open(HWND window, HWND mainWindow, Face * face, CPromptListener * listener);
    void Close();

    // Serves one request: the messages of the desk's own window.
    static constexpr UINT CreateRequest = WM_APP + 1;
    static constexpr UINT DestroyRequest = WM_APP + 2;
    static constexpr UINT ChooseRequest = WM_APP + 3;
    static constexpr UINT SettleRequest = WM_APP + 4;
    void Serve(UINT message, LPARAM parameter);

    // The face's side, on the window's thread. Nothing happens to a dialog that has ended.
    void Answer(SharedDialog const & dialog, Reply const & reply, char const * source);
    void LeaveUnanswered(SharedDialog const & dialog, std::string const & reason);
    bool IsOpen(SharedDialog const & dialog);

    // Ends what is overdue. True while an open dialog has a time-out.
    bool Tick();
    void AbortAll(std::string const & reason);

    // Any thread.
    CWnd * MainWindow();
    bool Post(UINT message, CHelperDialogState * state);
    bool WaitForCreation();
    bool WaitForDestruction();
    bool TimedOut();
    void Reset();
    void Forget(CHelperDialogState const * state);
    // Shows a question without a state and waits for its end.
    void Choose(Question const & question, StoreReply const & store);

private:
    struct Ended {
        SharedDialog dialog;
        CPromptRecord record;
    };
    // How a dialog ends.
    struct End {
        // Null: without an answer.
        Reply const * reply = nullptr;
        bool timedOut = false;
        bool wantsAbort = false;
        std::string source = "none";
        std::string reason{};
    };

    Desk() = default;

    void Create(CHelperDialogState * state);
    void Destroy();
    void ShowChoosers();
    void Settle();

    // These are called under the lock. False: it had ended before.
    bool Finish(SharedDialog const & dialog, End const & end);
    bool FinishOverdue(Dialog::Clock::duration slack);
    void FinishAll(std::string const & reason);
    void RefuseRequests();
    SharedDialog Opened(PromptState const & state);

    void EndNow(SharedDialog const & dialog, End const & end);
    void AskToSettle();

    std::mutex m_Lock;
    HWND m_Window = nullptr;
    CWnd m_MainWindow;
    Face * m_Face = nullptr;
    CPromptListener * m_Listener = nullptr;
    bool m_TimedOut = false;
    // Set while nothing is under way.
    CMXGuiEvent::Core m_Created{true};
    CMXGuiEvent::Core m_Destroyed{true};
    // Posted and not yet served.
    std::vector<CHelperDialogState *> m_Requested;
    std::vector<SharedDialog> m_RequestedChoosers;
    std::vector<SharedDialog> m_Open;
    std::vector<Ended> m_Ended;
};
