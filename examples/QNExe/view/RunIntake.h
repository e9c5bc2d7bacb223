// What a view takes out of the library at an update: the tables of text, and the progress.
//
// For the window thread.
#pragma once

#include <deque>
#include <memory>
#include <optional>

#include "examples/QNExe/view/StatusLine.h"
#include "output/COutputBuffer.h"

class RunIntake {
public:
    struct Delete {
        void operator()(COutputBuffer::DataTable * table) const {
            COutputBuffer::DeleteDataTable(table);
        }
    };
    using Table = std::unique_ptr<COutputBuffer::DataTable, Delete>;

    // `testWaits`: the update was sent, not posted, so the texts may be read too. True when there
    // is something to give.
    bool TakeOver(bool testWaits);

    // The oldest table that was not given yet; null when there is none.
    Table NextTable();

    // The progress, if it has changed since it was given.
    std::optional<Progress> NewProgress();

private:
    std::deque<Table> m_Tables;
    Progress m_Progress;
    bool m_ProgressIsNew = false;
};
