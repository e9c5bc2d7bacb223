// Asks the operator: a choice without a time-out in the first test; in the second an entry is
// written while a question waits.
#include "Suite.h"
#include "app/CAppState.h"
#include "output/CUIUpdate.h"
#include "prompts/CMXUserInput.h"

namespace {

void Choose(CMXLog & log) {
    std::string text = "Is the light on?";
    bool answer = false;
    TS_STATUS const status = CAppState::UserInput()->GetBooleanDecision(
        &text, nullptr, nullptr, &answer, 0xFFFFFFFF, nullptr, nullptr);
    log.Write(TEST_STATUS_INFO, "status 0x%X, answer %u", status, answer);
}

void WriteWhileAsking(CMXLog & log) {
    std::wstring text = L"Which name?";
    std::wstring answer;
    CMXGuiEvent event(0);
    CAppState::UserInput()->GetString(nullptr, &text, &answer, 0, &event, nullptr);
    log.Write(TEST_STATUS_INFO, "an entry meanwhile");
    CUIUpdate::DoUpdate(true);
    event.WaitOnEvent(60'000);
    CAppState::UserInput()->TerminateDialog();
    log.Write(TEST_STATUS_INFO, "the name is \"%S\"", answer);
}

class AskingSuite : public TestSuite {
public:
    std::string Name() const override { return "asking"; }
    std::vector<TestCase> Tests() override {
        return {TrueTest("T1", Choose), TrueTest("T2", WriteWhileAsking)};
    }
};

} // namespace

MORVEX_TEST_SUITE(AskingSuite)
