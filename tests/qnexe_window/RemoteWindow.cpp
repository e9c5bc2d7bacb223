// A window of another process, driven and read by messages.
#include "qnexe_window/RemoteWindow.h"

#include <cstring>
#include <stdexcept>
#include <thread>

#include <commctrl.h>
#include <gtest/gtest.h>

#include "siblings/Keelbase.h"

namespace {

// Memory in the process of a window.
class RemoteMemory {
public:
    RemoteMemory(HWND window, std::size_t size) : m_Size(size) {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        m_Process =
            OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, process);
        m_Memory = VirtualAllocEx(m_Process, nullptr, size, MEM_COMMIT, PAGE_READWRITE);
        if (m_Memory == nullptr) throw std::runtime_error("no memory in the window's process");
    }
    RemoteMemory(RemoteMemory const &) = delete;
    RemoteMemory & operator=(RemoteMemory const &) = delete;
    ~RemoteMemory() {
        VirtualFreeEx(m_Process, m_Memory, 0, MEM_RELEASE);
        CloseHandle(m_Process);
    }

    LPARAM Address() const { return reinterpret_cast<LPARAM>(m_Memory); }
    void Write(void const * bytes) {
        WriteProcessMemory(m_Process, m_Memory, bytes, m_Size, nullptr);
    }
    void Read(void * bytes) { ReadProcessMemory(m_Process, m_Memory, bytes, m_Size, nullptr); }

private:
    std::size_t m_Size;
    HANDLE m_Process;
    void * m_Memory;
};

struct Search {
    HWND owner;
    HWND found = nullptr;
};

BOOL CALLBACK OnWindow(HWND window, LPARAM lParam) {
    auto & search = *reinterpret_cast<Search *>(lParam);
    wchar_t name[16] = {};
    GetClassNameW(window, name, 16);
    bool const isDialog = std::wstring(name) == L"#32770" && IsWindowVisible(window) != 0;
    if (isDialog && GetWindow(window, GW_OWNER) == search.owner) search.found = window;
    return search.found == nullptr;
}

} // namespace

bool WaitFor(std::function<bool()> const & fact) {
    auto const end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!fact()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

std::string Narrow(std::wstring const & text) { return *Utf16ToUtf8(text); }

std::wstring RemoteWindow::Text() const {
    std::wstring text(static_cast<std::size_t>(Send(WM_GETTEXTLENGTH)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        Send(WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
    return text;
}

void RemoteWindow::Text(std::wstring const & text) const {
    Send(WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

std::wstring RemoteWindow::Part(int part) const {
    struct Shown {
        wchar_t text[128];
    };
    return Ask(SB_GETTEXTW, static_cast<WPARAM>(part), Shown{}).text;
}

CHARFORMAT2W RemoteWindow::LookOf(LONG first, LONG last) const {
    Ask(EM_EXSETSEL, 0, CHARRANGE{first, last});
    CHARFORMAT2W format = {};
    format.cbSize = sizeof format;
    return Ask(EM_GETCHARFORMAT, SCF_SELECTION, format);
}

CHARFORMAT2W RemoteWindow::LookOf(std::wstring const & text) const {
    auto const place = RichText().find(text);
    EXPECT_NE(place, std::wstring::npos);
    auto const first = static_cast<LONG>(place);
    return LookOf(first, first + static_cast<LONG>(text.size()));
}

std::wstring RemoteWindow::RichText() const {
    std::wstring text = Text();
    std::erase(text, L'\r');
    return text;
}

RemoteWindow RemoteWindow::Dialog() const {
    Search search{m_Window};
    DWORD const thread = GetWindowThreadProcessId(m_Window, nullptr);
    bool const isUp = WaitFor([&] {
        EnumThreadWindows(thread, OnWindow, reinterpret_cast<LPARAM>(&search));
        return search.found != nullptr;
    });
    EXPECT_TRUE(isUp) << "no dialog is up";
    return RemoteWindow(search.found);
}

void RemoteWindow::End(int command) const {
    Command(command);
    EXPECT_TRUE(WaitFor([&] { return IsWindow(m_Window) == 0; })) << "the dialog stays";
}

// The field of the name has one of two numbers, by the kind of the dialog.
void RemoteWindow::TakeFile(std::string const & name) const {
    RemoteWindow const combined = Child(0x47C);
    RemoteWindow const field = combined ? combined : Child(0x480);
    ASSERT_TRUE(field) << "the dialog has no field for a name";
    field.Text(*Utf8ToUtf16(name));
    End(IDOK);
}

void RemoteWindow::AskBytes(UINT message, WPARAM wParam, void * bytes, std::size_t size) const {
    RemoteMemory memory(m_Window, size);
    memory.Write(bytes);
    Send(message, wParam, memory.Address());
    memory.Read(bytes);
}
