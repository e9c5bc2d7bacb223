// How far a run is.
#include "examples/QNExe/windows/ProgressPane.h"

#include <algorithm>

#include <commctrl.h>

#include "examples/QNExe/windows/Controls.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "siblings/Keelbase.h"

namespace {

std::wstring TwoDigits(unsigned int number) {
    return (number < 10 ? L":0" : L":") + std::to_wstring(number);
}

std::wstring LabelOf(Progress const & progress) {
    if (progress.range <= 0) return {};
    int const position = std::clamp(progress.position, 0, progress.range);
    return std::to_wstring(position) + L" of " + std::to_wstring(progress.range) + L"  "
           + *Utf8ToUtf16(progress.label);
}

} // namespace

std::wstring TimeText(unsigned int seconds) {
    unsigned int const minutes = seconds / 60;
    if (minutes < 60) return std::to_wstring(minutes) + TwoDigits(seconds % 60);
    return std::to_wstring(minutes / 60) + TwoDigits(minutes % 60) + TwoDigits(seconds % 60);
}

ProgressPane::ProgressPane(HWND parent)
    : m_Bar(MakeControl(parent, PROGRESS_CLASSW, L"Progress", PBS_SMOOTH, ID_PROGRESS_BAR)),
      m_Label(MakeControl(
          parent, L"STATIC", L"", SS_LEFT | SS_NOPREFIX | SS_CENTERIMAGE | SS_ENDELLIPSIS,
          ID_PROGRESS_LABEL)),
      m_Time(MakeControl(
          parent, L"STATIC", TimeText(0).c_str(), SS_RIGHT | SS_CENTERIMAGE, ID_PROGRESS_TIME)) {}

void ProgressPane::Show(Progress const & progress) {
    SendMessageW(m_Bar, PBM_SETRANGE32, 0, std::max(progress.range, 0));
    SendMessageW(m_Bar, PBM_SETPOS, static_cast<WPARAM>(std::max(progress.position, 0)), 0);
    SetWindowTextW(m_Label, LabelOf(progress).c_str());
}

void ProgressPane::Start() {
    m_Start = Clock::now();
    m_Runs = true;
    Show({});
    ShowTime(0);
}

void ProgressPane::ShowTime(unsigned int givenSeconds) {
    if (!m_Runs) return;
    auto const passed = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - m_Start);
    unsigned int const seconds =
        givenSeconds != 0 ? givenSeconds : static_cast<unsigned int>(passed.count());
    if (m_Shown == seconds) return;
    m_Shown = seconds;
    SetWindowTextW(m_Time, TimeText(seconds).c_str());
}

void ProgressPane::Place(RECT const & area, HFONT font, int gap) {
    int const height = area.bottom - area.top;
    int const time = 4 * height;
    int const bar = (area.right - area.left) / 3;
    PlaceControl(m_Bar, {area.left, area.top, area.left + bar, area.bottom}, font);
    PlaceControl(
        m_Label, {area.left + bar + gap, area.top, area.right - time - gap, area.bottom}, font);
    PlaceControl(m_Time, {area.right - time, area.top, area.right, area.bottom}, font);
}
