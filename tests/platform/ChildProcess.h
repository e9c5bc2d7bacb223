// A real program run as a child: its arguments, what it prints, how it is interrupted and how it
// ends.
//
// Both outputs go to files in a folder of the test's own, so that nothing waits for a reader, and
// what the child wrote stays readable however it ended. Errors of the system throw
// std::system_error. For one thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The folder of the running test program, in which everything that was built stands.
std::filesystem::path ProgramFolder();

// `name` as the file name of a program.
std::string ProgramFileName(std::string const & name);

// The text that a program wrote, out of the bytes that its C library's text mode made of it.
std::string TextOfBytes(std::string bytes);

// To be called before a child is started that is to be interrupted. On Windows it gives the calling
// process a console of its own, which the children share, in place of the one that it has.
void PrepareInterruptions();

class ChildProcess {
public:
    static constexpr std::chrono::seconds DefaultPatience{60};

    struct End {
        // The exit code; empty when a signal or an interruption ended the child.
        std::optional<int> code;
        bool interrupted = false;
        bool killed = false;
    };

    // Starts the program with an empty standard input; the arguments are UTF-8. `folder` exists and
    // receives the outputs.
    ChildProcess(
        std::filesystem::path const & program, std::vector<std::string> const & arguments,
        std::filesystem::path const & folder);
    ChildProcess(ChildProcess const &) = delete;
    ChildProcess & operator=(ChildProcess const &) = delete;

    // Kills the child if it still runs.
    ~ChildProcess();

    // What has come so far, byte for byte.
    std::string Output() const;
    std::string Error() const;

    // Waits until that many bytes have come on standard output. False: the child has ended or the
    // patience is over.
    bool WaitForOutput(std::size_t bytes, std::chrono::milliseconds patience = DefaultPatience);

    bool IsRunning();

    // As the operator's Ctrl-C, after PrepareInterruptions.
    void Interrupt();

    // Ends the child at once, without a chance to clean up.
    void Kill();

    // Empty when the child still runs after the patience.
    std::optional<End> Wait(std::chrono::milliseconds patience = DefaultPatience);

private:
    // Looks once, and keeps what it sees.
    void Poll();

    // What the system knows the child by.
    struct Native;

    std::filesystem::path m_OutputFile;
    std::filesystem::path m_ErrorFile;
    std::optional<End> m_End;
    std::unique_ptr<Native> m_Native;
};
