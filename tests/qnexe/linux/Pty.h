// A program at a terminal of its own, driven as a person would: what it shows, and what is typed.
//
// For one thread. The child is killed if it still runs at the end.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>
#include <termios.h>

class Pty {
public:
    using Variables = std::vector<std::pair<std::string, std::string>>;

    // Starts the program on a terminal of its own; `variables` are set besides the environment, in
    // which nothing else speaks of colours.
    Pty(std::string const & program, std::vector<std::string> const & arguments,
        Variables const & variables, unsigned short columns = 80);
    Pty(Pty const &) = delete;
    Pty & operator=(Pty const &) = delete;
    ~Pty();

    void Type(std::string const & keys);

    // Sends the program a signal.
    void Signal(int signal);

    // The modes that the terminal has now; the program's, before it changes them.
    termios Modes() const;
    void SetModes(termios const & modes);

    // Reads until the text has come so often. False: the child has ended or a minute is over.
    bool WaitFor(std::string const & text, int times = 1);

    // Reads to the child's end and gives its exit code; empty when a signal ended it or a minute
    // is over.
    std::optional<int> Finish();
    // The same with the signal that ended it; empty without one.
    std::optional<int> FinishBySignal();

    // Everything that was shown so far, with the line ends that the program wrote.
    std::string Shown() const;

private:
    bool ReadSome();
    int CountOf(std::string const & text) const;
    // The status that the system keeps of a child that has ended.
    std::optional<int> FinalStatus();

    int m_Terminal = -1;
    pid_t m_Child = -1;
    std::string m_Shown;
    std::chrono::steady_clock::time_point m_Deadline;
};
