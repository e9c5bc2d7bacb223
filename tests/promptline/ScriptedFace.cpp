// The face of the tests, in the place of the operator's.
#include "promptline/ScriptedFace.h"

std::function<void(SharedDialog const &)> ScriptedFace::onShow;
std::atomic<int> ScriptedFace::shown = 0;
std::atomic<int> ScriptedFace::removed = 0;
SharedDialog ScriptedFace::last;

void ScriptedFace::Clear() {
    onShow = nullptr;
    shown = removed = 0;
    last.reset();
}

namespace {

class TestFace : public Face {
public:
    void Show(SharedDialog const & dialog) override {
        ScriptedFace::last = dialog;
        ++ScriptedFace::shown;
        if (ScriptedFace::onShow) ScriptedFace::onShow(dialog);
    }
    void Remove(SharedDialog const &) override { ++ScriptedFace::removed; }
};

} // namespace

// By its linker name.
extern "C" std::unique_ptr<Face>
__wrap__Z17MakeOperatorsFaceR4PumpP15CPromptListener(Pump &, CPromptListener *) {
    return std::make_unique<TestFace>();
}
