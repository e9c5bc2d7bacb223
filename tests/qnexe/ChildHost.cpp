// The program QNExe as a child of a test.
#include "qnexe/ChildHost.h"

#include <fstream>
#include <iterator>
#include <ostream>
#include <random>
#include <regex>

#include "platform/Environment.h"

namespace {

void Replace(std::string & text, char const * pattern, char const * mark) {
    text = std::regex_replace(text, std::regex(pattern), mark);
}

std::filesystem::path NewFolder() {
    std::random_device seed;
    auto const name = "qnexe-test-" + std::to_string(seed()) + '-' + std::to_string(seed());
    auto const folder = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directories(folder);
    return folder;
}

// Beside the test's files, which some tests list.
std::filesystem::path SessionOf(std::filesystem::path const & folder) {
    return folder.string() + "-session";
}

std::filesystem::path Program() { return ProgramFolder() / ProgramFileName("QNExe"); }

} // namespace

std::string Normalized(std::string const & bytes) {
    std::string text = TextOfBytes(bytes);
    Replace(text, "[A-Z][a-z]{2} \\d\\d, \\d{4} - \\d\\d:\\d\\d:\\d\\d", "<time>");
    Replace(text, "Duration:  \\d+ seconds?\\.", "Duration:  <seconds>.");
    return text;
}

std::string Opened(std::string const & level) {
    return "INFO    Test log initialized.\nINFO    Log Level: " + level
           + "\nINFO    User Input module initialized\n";
}

std::string Started() { return "INFO    Start time: <time>\r\n\n"; }

std::string Stopped(std::string const & test, std::string const & counts) {
    return "INFO    \nStop time: <time>\n"
           "INFO    Duration:  <seconds>.\n\n"
           "INFO    Stopping Test [ "
           + test + ":\n     Number of: " + counts + " ]\r\n\r\n\n";
}

std::string Summary(std::string const & counts, int passed, int failed) {
    return "INFO    TEST SUITE SUMMARY:\n    [ " + counts
           + " ]\n\n"
             "INFO    TEST RESULTS:\n    [ Passed ("
           + std::to_string(passed) + "); Failed (" + std::to_string(failed) + ") ]\n";
}

ChildHost::ChildHost() : m_Folder(NewFolder()) {
    std::filesystem::create_directories(SessionOf(m_Folder));
    SetEnvironment("XDG_RUNTIME_DIR", SessionOf(m_Folder).string().c_str());
}

ChildHost::~ChildHost() {
    m_Child.reset();
    ClearEnvironment("XDG_RUNTIME_DIR");
    std::error_code ignored;
    std::filesystem::remove_all(SessionOf(m_Folder), ignored);
    std::filesystem::remove_all(m_Folder, ignored);
}

std::string ChildHost::Suite(std::string const & name) {
    return (ProgramFolder() / "test-suites" / (name + SUITE_SUFFIX)).string();
}

std::string ChildHost::Contents(std::string const & file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

ChildProcess & ChildHost::Start(std::vector<std::string> const & arguments) {
    m_Child = std::make_unique<ChildProcess>(Program(), arguments, m_Folder);
    return *m_Child;
}

ChildHost::Result ChildHost::Finish() {
    auto const end = m_Child->Wait();
    if (!end) ADD_FAILURE() << "the program does not end";
    return {
        end ? end->code : std::nullopt, Normalized(m_Child->Output()),
        Normalized(m_Child->Error())};
}

void PrintTo(ChildHost::Result const & result, std::ostream * stream) {
    *stream << "exit code " << (result.code ? std::to_string(*result.code) : "none")
            << "\n-- standard output:\n"
            << result.output << "\n-- standard error:\n"
            << result.error;
}
