// Takes text and progress out of the library.
#include "examples/QNExe/view/RunIntake.h"

#include <utility>

#include "output/CUIUpdate.h"

bool RunIntake::TakeOver(bool testWaits) {
    CUIUpdate const & update = *CUIUpdate::GetUIUpdate();
    Progress progress{update.ProgressPosition(), update.ProgressRange(), m_Progress.label};
    if (testWaits) progress.label = update.ProgressLabel();
    if (progress != m_Progress) {
        m_Progress = std::move(progress);
        m_ProgressIsNew = true;
    }
    if (COutputBuffer * const buffer = CUIUpdate::GetBuffer())
        if (COutputBuffer::DataTable * const table = buffer->GetText())
            m_Tables.emplace_back(table);
    return m_ProgressIsNew || !m_Tables.empty();
}

RunIntake::Table RunIntake::NextTable() {
    if (m_Tables.empty()) return nullptr;
    Table table = std::move(m_Tables.front());
    m_Tables.pop_front();
    return table;
}

std::optional<Progress> RunIntake::NewProgress() {
    if (!std::exchange(m_ProgressIsNew, false)) return std::nullopt;
    return m_Progress;
}
