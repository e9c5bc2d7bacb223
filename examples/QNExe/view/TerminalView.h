// Shows the log of a run on a stream as it grows, and on a terminal a line of progress beneath it.
//
// For one thread. The stream is borrowed.
#pragma once

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "examples/QNExe/view/StatusLine.h"
#include "examples/QNExe/view/TextLook.h"

class TerminalView {
public:
    struct Settings {
        // Looks as control sequences.
        bool styled = false;
        // A line of progress; only for a terminal that can erase a line.
        bool progress = false;
        // The width of the terminal, asked anew for each line of progress, as windows change size.
        std::function<std::size_t()> columns = [] { return std::size_t{80}; };
    };

    TerminalView(std::FILE * stream, Settings settings);
    TerminalView(TerminalView const &) = delete;
    TerminalView & operator=(TerminalView const &) = delete;
    // Takes the line of progress away.
    ~TerminalView();

    // Each call is one write, so that log and progress never mix. What cannot be written is lost:
    // a display that is gone does not stop a test.
    void Show(std::vector<StyledText> const & pieces);
    void Show(Progress const & progress);

    // While held no line of progress is drawn; something else has the last line.
    void HoldProgress(bool hold);

private:
    void Put(std::string const & text);
    std::string Erase();
    std::string Draw();

    std::FILE * m_Stream;
    Settings m_Settings;
    Progress m_Progress;
    bool m_StatusShown = false;
    bool m_IsHeld = false;
    // Progress is not drawn behind half a line.
    bool m_AtLineStart = true;
};
