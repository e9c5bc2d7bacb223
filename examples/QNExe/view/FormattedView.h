// The host's side of a formatted log: takes the text out when the library rings, and shows it.
//
// For the window thread. TakeOver is quick and belongs into the window's procedure, where a test
// may wait for it; Render is slow and comes after the test has gone on.
#pragma once

#include <cstdio>
#include <deque>
#include <memory>
#include <string>

#include "examples/QNExe/view/TableReader.h"
#include "examples/QNExe/view/TerminalView.h"
#include "output/COutputBuffer.h"

// A terminal on which the environment wants colours. Without them a formatted log does not tell a
// failure from a remark.
bool IsColorTerminal(std::FILE * stream);

class FormattedView {
public:
    // Shows on `stream`, which stays the caller's: styled and with progress when it is a terminal
    // and the environment has nothing against it.
    explicit FormattedView(std::FILE * stream);

    // Takes the table out and reads the progress. `testWaits`: the update was sent, not posted, so
    // the texts may be read too. True when there is something to render.
    bool TakeOver(bool testWaits);

    void Render();

    // No line of progress is shown while it is held.
    void HoldProgress(bool hold) { m_View.HoldProgress(hold); }

private:
    struct Delete {
        void operator()(COutputBuffer::DataTable * table) const {
            COutputBuffer::DeleteDataTable(table);
        }
    };

    std::deque<std::unique_ptr<COutputBuffer::DataTable, Delete>> m_Tables;
    Progress m_Progress;
    bool m_ProgressIsNew = false;
    TableReader m_Reader;
    TerminalView m_View;
};
