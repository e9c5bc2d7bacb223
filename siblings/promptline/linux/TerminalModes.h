// Keeps a terminal usable while a line is edited in it: a signal that ends or stops the process
// finds it as it was before, and one that was stopped and goes on edits again.
//
// One at a time in a process, since signals are the process's; made and ended by the thread that
// edits. SIGABRT, SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP and SIGCONT then do what they did
// before, a handler's work included; one that is ignored stays so.
#pragma once

class TerminalModes {
public:
    // Call it before the terminal of standard input is changed for editing.
    TerminalModes();
    TerminalModes(TerminalModes const &) = delete;
    TerminalModes & operator=(TerminalModes const &) = delete;
    // Call it when the terminal has been changed back.
    ~TerminalModes();

    // The terminal has been changed for editing. False: it is not so any more, because the process
    // was stopped before this could be noted.
    bool Edited();

    // Readable from when the process goes on behind a stop until TakeContinued; -1 when the system
    // had none to give.
    static int ContinuedDescriptor();
    static bool TakeContinued();
};
