// A run as the operator's window shows it.
#include "examples/QNExe/windows/WindowRunView.h"

#include <string>

#include "app/CAppState.h"
#include "examples/QNExe/windows/MainWindow.h"
#include "output/CUIUpdate.h"
#include "siblings/Keelbase.h"

namespace {

// The title as the test wishes it; the name is taken once.
void TakeTitle(HWND window) {
    CUIUpdate & update = *CUIUpdate::GetUIUpdate();
    if (!update.DoSetName()) return;
    SetWindowTextW(window, (update.GetTestSuiteName() + L" - QNExe").c_str());
    update.DoSetName(false);
}

// The system's cursor of this name; null when none is wished for.
HCURSOR WishedCursor() {
    CUIUpdate const & update = *CUIUpdate::GetUIUpdate();
    return update.SetCursor() ? LoadCursorW(nullptr, update.GetNewCursor()) : nullptr;
}

} // namespace

void WindowRunView::Begin() {
    m_Reader = {};
    m_Tally.Begin();
    m_Window.SetCursor(nullptr);
    m_Window.Log().Clear();
    m_Window.Counts().Show({});
    m_Window.Progress().Start();
    SetWindowTextW(m_Window.Handle(), L"QNExe");
}

// Always true: the clock goes on.
bool WindowRunView::TakeOver(bool testWaits) {
    m_Intake.TakeOver(testWaits);
    if (testWaits) ReadTexts();
    return true;
}

// What only a test thread that stands still lets read.
void WindowRunView::ReadTexts() {
    if (CTestSuiteLog * const suite = CAppState::TestSuiteLog()) m_Tally.Sum(*suite);
    TakeTitle(m_Window.Handle());
    m_Window.SetCursor(WishedCursor());
}

void WindowRunView::Render() {
    while (auto const table = m_Intake.NextTable())
        m_Window.Log().Add(m_Reader.Read(*table));
    if (auto const progress = m_Intake.NewProgress()) m_Window.Progress().Show(*progress);
    m_Window.Progress().ShowTime(CUIUpdate::GetUIUpdate()->ProgressTime());
    m_Window.Counts().Show(m_Tally.Now());
}

void WindowRunView::AtEnd() {
    TakeOver(true);
    Render();
}

void WindowRunView::Tell(std::string const & text) { AddLine(text, {}); }

void WindowRunView::TellProblem(std::string const & text) {
    AddLine(text, {.bold = true, .color = RGB(0xB0, 0, 0)});
}

void WindowRunView::AddLine(std::string const & text, TextLook const & look) {
    m_Window.Log().Add({{*Utf8ToUtf16(text) + L"\r\n", look}});
}

bool WindowRunView::TakesMessage(void * message) {
    return m_Window.TakesMessage(*static_cast<MSG *>(message));
}
