// The question for a number, with its bounds.
#include <cstdint>

#include "log/CMXLog.h"
#include "prompts/CMFCDialogMXUserInput.h"

// Bounds and value have 32 bits, whatever `unsigned long` has.
struct CMFCDialogMXUserInput::IntegerQuestion {
    std::wstring * title;
    std::wstring * prompt;
    unsigned long * value;
    bool hexadecimal;
    unsigned long timeout;
    CMXGuiEvent * event;
    std::uint32_t upper;
    std::uint32_t lower;
    WINDOW_ARGS * args;

    bool HasBounds() const { return lower != 0 || upper != 0xFFFFFFFF; }

    // A time-out of 0 waits without end too, and still is not plain.
    bool IsPlain() const {
        return event == nullptr && static_cast<std::uint32_t>(timeout) == 0xFFFFFFFF;
    }

    bool CanBeAskedAgain() const { return HasBounds() && IsPlain(); }

    std::uint32_t Value() const { return static_cast<std::uint32_t>(*value); }
    bool IsInRange() const { return Value() >= lower && Value() <= upper; }
};

namespace {

constexpr char OperationName[] = "CMFCDialogMXUserInput::GetInteger";

bool IsFailure(TS_STATUS status) { return (status & TS_FAILED) != 0; }

} // namespace

TS_STATUS CMFCDialogMXUserInput::GetInteger(
    std::wstring * title, std::wstring * prompt, unsigned long * value, bool hexadecimal,
    unsigned long timeout, CMXGuiEvent * event, unsigned long upper, unsigned long lower,
    WINDOW_ARGS * args) {
    if (value == nullptr) return TS_NULL_RESULT;
    IntegerQuestion const question = {
        title,
        prompt,
        value,
        hexadecimal,
        timeout,
        event,
        static_cast<std::uint32_t>(upper),
        static_cast<std::uint32_t>(lower),
        args};
    if (!HasUsableBounds(question)) return TS_INVALID_BOUNDS;
    if (!AcquireActiveDialog()) return TS_DIALOG_BUSY;
    return AskForInteger(question);
}

bool CMFCDialogMXUserInput::HasUsableBounds(IntegerQuestion const & question) {
    if (question.upper >= question.lower) return true;
    if (m_Log != nullptr)
        m_Log->Write(
            TEST_STATUS_ABORT, Minimal, nullptr,
            "Invalid bounds - Upper bound cannot be less than Lower bound. "
            "(Upper = %u, Lower = %u)",
            question.upper, question.lower);
    return false;
}

TS_STATUS CMFCDialogMXUserInput::AskForInteger(IntegerQuestion const & question) {
    for (;;) {
        TS_STATUS const result = AskOnceForInteger(question);
        if (question.event != nullptr) return result;
        if (DialogTimedOut()) return IntegerTimedOut(question);
        if (IsFailure(result) || question.IsInRange()) return result;
        if (!question.CanBeAskedAgain()) break;
        // Deliberate: the claim is not taken again for the next round.
        // Pinned by CMFCDialogMXUserInputIntegerTest.AskingAgainLetsAnotherQuestionIn.
        DeleteState();
    }
    WriteOutOfRange(question);
    return TS_INVALID_BOUNDS;
}

TS_STATUS CMFCDialogMXUserInput::AskOnceForInteger(IntegerQuestion const & question) {
    HoldState(InitGetUserItemDialog(
        m_DialogHeader, question.title, question.prompt, true, question.hexadecimal,
        question.timeout, question.value, nullptr, question.event, question.args));
    if (question.HasBounds() && !question.IsPlain() && m_Log != nullptr)
        m_Log->Write(
            TEST_STATUS_WARNING, Quiet, nullptr,
            "%s: Bounds-checking is supported only in non-asynchronous dialogs with no time out "
            "set.",
            OperationName);
    return CreateHelperDialog(nullptr);
}

TS_STATUS CMFCDialogMXUserInput::IntegerTimedOut(IntegerQuestion const & question) {
    if (m_Log == nullptr) return TS_DIALOG_TIMED_OUT;
    // Deliberate: the number is the address of the name, cut to 32 bits; the value is not shown.
    // Pinned by CMFCDialogMXUserInputIntegerTest.ATimeOutIsLoggedWithTheAddressForTheValue.
    m_Log->Write(
        TEST_STATUS_WARNING, Diagnostic, nullptr,
        question.hexadecimal ? "Dialog timed out - Returning value: 0x%X."
                             : "Dialog timed out - Returning value: %u.",
        OperationName, question.Value());
    if (!question.IsInRange()) WriteOutOfRange(question);
    return TS_DIALOG_TIMED_OUT;
}

void CMFCDialogMXUserInput::WriteOutOfRange(IntegerQuestion const & question) {
    // Deliberate: MIN is the address of the name, cut to 32 bits, MAX is the lower bound.
    // Pinned by CMFCDialogMXUserInputIntegerTest.AnAnswerOutOfRangeIsLoggedWithShiftedNumbers.
    CBasicFormattedString<char> const text(
        question.hexadecimal ? "Value out of range: MIN=0x%X, MAX=0x%X."
                             : "Value out of range: MIN=%u, MAX=%u.",
        OperationName, question.lower, question.upper);
    m_Log->Write(
        TEST_STATUS_WARNING, Diagnostic, &CMXLog::DefaultFailFormat(), "%s",
        static_cast<char const *>(text));
}
