// A test suite in its shared library: loaded, checked against the contract, and made.
//
// The library is unloaded with this object; every suite that it made, and everything that a suite
// handed out, is gone before. Belongs to one thread at a time.
#pragma once

#include <memory>
#include <string>

#include "examples/QNExe/Module.h"
#include "examples/TestSuite.h"

class SuiteLibrary {
public:
    // Throws std::runtime_error, whose text says what to do, when the file is not a suite for this
    // program. A name without a folder is one in the current folder.
    explicit SuiteLibrary(std::string const & file);
    SuiteLibrary(SuiteLibrary const &) = delete;
    SuiteLibrary & operator=(SuiteLibrary const &) = delete;
    ~SuiteLibrary();

    // Throws what the suite's constructor throws.
    std::unique_ptr<TestSuite> MakeSuite() const;

private:
    void CheckContract() const;

    std::string m_File;
    Module m_Module;
};
