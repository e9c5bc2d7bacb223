// Child processes by CreateProcessW.
#include "platform/ChildProcess.h"

#include <system_error>

#include <windows.h>

#include "platform/Host.h"

struct ChildProcess::Native {
    HANDLE process = nullptr;
    bool killed = false;
    bool interrupted = false;
};

namespace {

constexpr DWORD KilledCode = 0xDEAD;
constexpr DWORD InterruptedCode = 0xC000013A;

[[noreturn]] void Fail(std::string const & what) {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

// A file that the child inherits as one of its streams.
class Stream {
public:
    Stream(std::filesystem::path const & file, DWORD access, DWORD creation) {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        DWORD const shared = FILE_SHARE_READ | FILE_SHARE_WRITE;
        m_Handle = CreateFileW(file.c_str(), access, shared, &inherited, creation, 0, nullptr);
        if (m_Handle == INVALID_HANDLE_VALUE) Fail(file.string());
    }
    Stream(Stream const &) = delete;
    Stream & operator=(Stream const &) = delete;
    ~Stream() { CloseHandle(m_Handle); }

    HANDLE Get() const { return m_Handle; }

private:
    HANDLE m_Handle;
};

std::wstring FromUtf8(std::string const & text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
}

// Arguments with a quote or a final backslash do not occur here.
std::wstring
CommandLineOf(std::filesystem::path const & program, std::vector<std::string> const & words) {
    std::wstring line = L'"' + program.wstring() + L'"';
    for (auto const & word : words)
        line += L" \"" + FromUtf8(word) + L'"';
    return line;
}

BOOL WINAPI IgnoreEvent(DWORD) { return TRUE; }

// The default handler of Windows ends a process with a code of its own, that of Wine with 0.
bool IsInterruptedCode(DWORD code, bool interrupted) {
    return code == InterruptedCode || (interrupted && code == 0 && UnderWine());
}

ChildProcess::End EndOf(DWORD code, bool killed, bool interrupted) {
    ChildProcess::End end;
    end.killed = killed && code == KilledCode;
    end.interrupted = IsInterruptedCode(code, interrupted);
    if (!end.killed && !end.interrupted) end.code = static_cast<int>(code);
    return end;
}

} // namespace

std::filesystem::path ProgramFolder() {
    wchar_t path[MAX_PATH];
    DWORD const length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    if (length == 0 || length == MAX_PATH) Fail("GetModuleFileNameW");
    return std::filesystem::path(path).parent_path();
}

std::string ProgramFileName(std::string const & name) { return name + ".exe"; }

std::string TextOfBytes(std::string bytes) {
    for (auto at = bytes.find("\r\n"); at != bytes.npos; at = bytes.find("\r\n", at + 1))
        bytes.erase(at, 1);
    return bytes;
}

// A handler ignores for this process alone; the other way to ignore is inherited by children.
void PrepareInterruptions() {
    FreeConsole();
    if (AllocConsole() == 0) Fail("AllocConsole");
    SetConsoleCtrlHandler(IgnoreEvent, TRUE);
}

ChildProcess::ChildProcess(
    std::filesystem::path const & program, std::vector<std::string> const & arguments,
    std::filesystem::path const & folder)
    : m_OutputFile(folder / "stdout"),
      m_ErrorFile(folder / "stderr"),
      m_Native(std::make_unique<Native>()) {
    Stream const input("NUL", GENERIC_READ, OPEN_EXISTING);
    Stream const output(m_OutputFile, GENERIC_WRITE, CREATE_ALWAYS);
    Stream const error(m_ErrorFile, GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = input.Get();
    start.hStdOutput = output.Get();
    start.hStdError = error.Get();
    PROCESS_INFORMATION child = {};
    std::wstring line = CommandLineOf(program, arguments);
    if (CreateProcessW(
            program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
            &child)
        == 0)
        Fail(program.string());
    CloseHandle(child.hThread);
    m_Native->process = child.hProcess;
}

ChildProcess::~ChildProcess() {
    if (IsRunning()) {
        Kill();
        Wait();
    }
    CloseHandle(m_Native->process);
}

void ChildProcess::Poll() {
    if (m_End || WaitForSingleObject(m_Native->process, 0) != WAIT_OBJECT_0) return;
    DWORD code = 0;
    GetExitCodeProcess(m_Native->process, &code);
    m_End = EndOf(code, m_Native->killed, m_Native->interrupted);
}

// Ctrl-C reaches whoever shares the console: the child, and the test, which ignores it.
void ChildProcess::Interrupt() {
    m_Native->interrupted = true;
    if (GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) == 0) Fail("GenerateConsoleCtrlEvent");
}

void ChildProcess::Kill() {
    m_Native->killed = true;
    TerminateProcess(m_Native->process, KilledCode);
}
