// The text file of a run's log: kept here when the log itself shows its entries elsewhere, watched
// when the library's log writes the file too.
//
// For the thread that runs the tests. Every entry has left the process when its call returns: a
// crash loses none.
#pragma once

#include <cstdio>
#include <ios>
#include <memory>
#include <string>
#include <string_view>

#include "log/TestStatus.h"

// Throws std::runtime_error for a log that cannot be opened.
[[noreturn]] void RefuseLogFile(std::string const & name);

// Throws std::runtime_error for a log that lacks what the disk did not take.
[[noreturn]] void RefuseGapsInLogFile(std::string const & name);

// Status word, text and a line feed, as the console's log has them.
std::string LogLine(TEST_STATUS status, std::string_view text);

class LogFile {
public:
    // Appends. Throws std::runtime_error, whose text says what to do, when the file cannot be
    // opened.
    explicit LogFile(std::string const & name);

    // A line that cannot be written is lost: a log that cannot write does not stop a test.
    void Append(std::string const & line);

    // To be asked when the log has ended. Throws std::runtime_error when an entry was lost.
    void CheckWhole() const;

private:
    struct Close {
        void operator()(std::FILE * file) const { std::fclose(file); }
    };

    std::string const m_Name;
    std::unique_ptr<std::FILE, Close> m_File;
    bool m_IsWhole = true;
};

// For a log that writes the file itself and does not tell when it cannot. A disk that is full stays
// so as a rule, hence the file's end tells: behind what was there before stands the summary of the
// run.
class LogFileWatch {
public:
    // To be made before the log, when the file is there.
    explicit LogFileWatch(std::string const & name);

    // To be asked when the log has ended. Throws std::runtime_error when the summary is missing. A
    // pipe or a device is not looked at.
    void CheckWhole() const;

private:
    std::string const m_Name;
    std::streamoff const m_SizeBefore;
};
