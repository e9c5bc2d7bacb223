// Keeps the entries of a run in a text file, when the log itself shows them elsewhere.
//
// For the thread that runs the tests. Every entry has left the process when its call returns: a
// crash loses none.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "siblings/QuillonLog.h"

// Throws std::runtime_error for a log that cannot be opened.
[[noreturn]] void RefuseLogFile(std::string const & name);

// Status word, text and a line feed, as the console's log has them but for the blank line after a
// text that ends its own line: the record keeps texts without that end.
std::string LineOf(CTestLogEntry const & entry);

class LogFile : public CTestSuiteListener {
public:
    // Appends. Throws std::runtime_error, whose text says what to do, when the file cannot be
    // opened.
    explicit LogFile(std::string const & name);

    // An entry that cannot be written is lost: a log that cannot write does not stop a test.
    void EntryWritten(CTestLog const & test, CTestLogEntry const & entry) override;

private:
    struct Close {
        void operator()(std::FILE * file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Close> m_File;
};
