// The operator's face of these tests: shows nothing, and answers when a test says so.
#pragma once

#include <atomic>
#include <functional>

#include "siblings/promptline/Face.h"

struct ScriptedFace {
    // Called on the window's thread with each dialog that is shown.
    static std::function<void(SharedDialog const &)> onShow;
    static std::atomic<int> shown;
    static std::atomic<int> removed;
    // The dialog that was shown last; read it while no other is being shown.
    static SharedDialog last;

    static void Clear();
};
