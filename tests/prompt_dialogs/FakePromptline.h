// Stands in for the dialog library: keeps every call as a line and does what a test tells it to.
//
// A library of its own, linked in front of the real one. The lines:
//   init <kind> <texts and values>       an Init... function
//   event <int>, clear, wait <ms>, event gone
//   create, created                      request for a dialog, wait for it
//   destroy, destroyed
//   state gone
//   timed out?                           the verdict was asked
//   forget                               ResetHelperDialogs
//   select <what>                        a chooser
// Places that only pass through are kept beside them. May be called from any thread.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "siblings/Promptline.h"

class PROMPTLINE_API FakePromptline {
public:
    static FakePromptline & Get();

    // Forgets everything, the behaviour too.
    void Clear();

    void Add(std::string const & line);
    // What came since the last call.
    std::vector<std::string> Take();

    // The arguments of the last Init... function or chooser that are no texts: list, outputs,
    // event, window arguments, in the order of the arguments.
    std::vector<void const *> places;

    // What is read off the state when its dialog is created.
    bool inputEnabled = false;
    std::uint32_t timeout = 0;
    CMXGuiEvent * event = nullptr;
    CHelperDialogState * state = nullptr;

    bool timedOut = false;
    bool chosen = false;
    CWnd * window = reinterpret_cast<CWnd *>(0x1234);
    std::function<void()> onCreate;
    std::function<void()> onWait;
    std::function<void()> onDestroyed;

    std::mutex guard;

private:
    std::vector<std::string> m_Lines;
};
