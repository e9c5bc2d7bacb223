// How a test asks the operator, question by question.
//
// An answer counts only when the question returns TS_SUCCESS: after a time-out the variable holds
// what it held before.
#include "OperatorTests.h"

#include <memory>
#include <string>

#include "app/CAppState.h"
#include "prompts/CMXUserInput.h"
#include "siblings/Keelbase.h"

namespace {

constexpr unsigned long WithoutEnd = 0xFFFFFFFF;
constexpr unsigned long Shortly = 5000;

std::vector<std::string> const & Speeds() {
    static std::vector<std::string> const speeds = {"low speed", "full speed", "high speed"};
    return speeds;
}

CMXUserInput & Operator() { return *CAppState::UserInput(); }

// Whether there is an answer; otherwise the log says why there is none.
bool IsAnswered(CMXLog & log, TS_STATUS status) {
    if (status == TS_SUCCESS) return true;
    bool const timedOut = status == TS_DIALOG_TIMED_OUT;
    log.Write(TEST_STATUS_WARNING, timedOut ? "No answer in time" : "No answer (0x%08X)", status);
    return false;
}

void AskForReadiness(CMXLog & log) {
    std::string text = "Connect the device.";
    std::string button = "It is connected";
    if (IsAnswered(
            log, Operator().DisplayInfoToUser(&text, WithoutEnd, true, nullptr, &button, nullptr)))
        log.Write(TEST_STATUS_INFO, "The operator has connected the device");
}

void AskForLight(CMXLog & log) {
    std::string text = "Is the device's light on?";
    std::string on = "Yes";
    std::string off = "No";
    bool answer = false;
    if (IsAnswered(
            log,
            Operator().GetBooleanDecision(&text, &on, &off, &answer, WithoutEnd, nullptr, nullptr)))
        log.Write(TEST_STATUS_INFO, "The light is %s", answer ? "on" : "off");
}

void AskForPorts(CMXLog & log) {
    std::string title = "Ports";
    std::string text = "How many ports has the hub, 1 to 15?";
    unsigned long ports = 4;
    if (IsAnswered(
            log, Operator().GetInteger(
                     &title, &text, &ports, false, WithoutEnd, nullptr, 15, 1, nullptr)))
        log.Write(TEST_STATUS_INFO, "The hub has %u ports", ports);
}

void AskForSerial(CMXLog & log) {
    std::wstring title = L"Serial number";
    std::wstring text = L"What stands on the label?";
    std::wstring serial;
    if (IsAnswered(log, Operator().GetString(&title, &text, &serial, WithoutEnd, nullptr, nullptr)))
        log.Write(TEST_STATUS_INFO, "The label says \"%S\"", serial);
}

void AskForSpeed(CMXLog & log) {
    std::string text = "At which speed is the device connected?";
    auto speeds = Speeds();
    unsigned long speed = 2;
    if (IsAnswered(
            log,
            Operator().GetSelectionFromList(&text, &speeds, &speed, Shortly, nullptr, nullptr)))
        log.Write(TEST_STATUS_INFO, "It is connected at %s", Speeds().at(speed));
}

void AskForSpeedOrNone(CMXLog & log) {
    std::string text = "Which speed is tested next?";
    std::string choose = "Test";
    std::string none = "None";
    auto speeds = Speeds();
    unsigned long speed = 0;
    bool aborted = false;
    if (!IsAnswered(
            log,
            Operator().GetSelectionFromListAllowAbort(
                &text, &choose, &none, &speeds, &speed, &aborted, WithoutEnd, nullptr, nullptr)))
        return;
    log.Write(TEST_STATUS_INFO, "Next: %s", aborted ? std::string("none") : Speeds().at(speed));
}

void AskForSpeeds(CMXLog & log) {
    std::string text = "Which speeds does the device have?";
    auto speeds = Speeds();
    std::vector<unsigned long> * chosen = nullptr;
    TS_STATUS const status = Operator().GetMultipleSelectionsFromList(
        &text, &speeds, &chosen, WithoutEnd, nullptr, nullptr);
    std::unique_ptr<std::vector<unsigned long>> const owned(chosen);
    if (!IsAnswered(log, status)) return;
    for (unsigned long const speed : *owned)
        log.Write(TEST_STATUS_INFO, "It has %s", Speeds().at(speed));
}

void AskForFile(CMXLog & log) {
    CSafeString file("");
    if (Operator().SelectSingleFile(file, L"Choose a recording", L"Recordings|*.bin|", true))
        log.Write(TEST_STATUS_INFO, "Chosen: %s", file);
    else
        log.Write(TEST_STATUS_INFO, "No recording was chosen");
}

void AskForFiles(CMXLog & log) {
    std::vector<CSafeString> * chosen = nullptr;
    bool const isChosen =
        Operator().SelectMultipleFiles(chosen, L"Choose reports", L"Reports|*.html|", false);
    std::unique_ptr<std::vector<CSafeString>> const owned(chosen);
    if (!isChosen) {
        log.Write(TEST_STATUS_INFO, "No reports were chosen");
        return;
    }
    for (CSafeString const & file : *owned)
        log.Write(TEST_STATUS_INFO, "Report: %s", file);
}

TestCase Utility(std::string const & name, void (*ask)(CMXLog &)) {
    return {"Operator: " + name, false, [ask](CMXLog & log) {
                ask(log);
                return log.TestStatus();
            }};
}

} // namespace

std::vector<TestCase> OperatorTests() {
    return {
        Utility("information", AskForReadiness),
        Utility("choice", AskForLight),
        Utility("number", AskForPorts),
        Utility("text", AskForSerial),
        Utility("list with a time-out", AskForSpeed),
        Utility("list with a way out", AskForSpeedOrNone),
        Utility("several of a list", AskForSpeeds),
        Utility("file", AskForFile),
        Utility("several files", AskForFiles)};
}
