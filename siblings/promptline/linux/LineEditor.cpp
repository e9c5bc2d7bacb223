// A line by libedit, which hands over after each key.
#include "siblings/promptline/linux/LineEditor.h"

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <optional>
#include <string_view>
#include <utility>

#include <histedit.h>
#include <locale.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include "siblings/Keelbase.h"
#include "siblings/promptline/linux/TerminalModes.h"

namespace {

constexpr wchar_t EndOfInputKey = 4;
constexpr wchar_t Unreadable = 0xFFFD;

// A key such as an arrow sends its bytes at once. What has begun like one and stays so is dropped:
// the thread has others to serve.
constexpr int RestOfKeyMilliseconds = 100;

// libedit reads and writes in the thread's locale.
class Utf8Scope {
public:
    Utf8Scope() : m_Before(uselocale(Utf8())) {}
    Utf8Scope(Utf8Scope const &) = delete;
    Utf8Scope & operator=(Utf8Scope const &) = delete;
    ~Utf8Scope() { uselocale(m_Before); }

private:
    // Null without such a locale; then the thread's own stays.
    static locale_t Utf8() {
        static locale_t const locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    locale_t const m_Before;
};

std::size_t Columns() {
    winsize size = {};
    bool const known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : 80;
}

bool IsDumb() {
    char const * const term = std::getenv("TERM");
    return term == nullptr || *term == 0 || std::string_view(term) == "dumb";
}

} // namespace

struct LineEditor::Parts {
    std::optional<TerminalModes> modes;
    // Null while there is no question: to have one changes the terminal.
    EditLine * line = nullptr;
    bool isActive = false;
    bool isHidden = false;
    bool hasEnded = false;
    Prompt prompt;
    Complete complete;
    // What libedit points to while it draws.
    std::wstring shownPrompt;

    static Parts & Of(EditLine * line) {
        void * parts = nullptr;
        el_wget(line, EL_CLIENTDATA, &parts);
        return *static_cast<Parts *>(parts);
    }

    static wchar_t * GivePrompt(EditLine * line) {
        Parts & parts = Of(line);
        if (parts.prompt) parts.shownPrompt = parts.prompt();
        return parts.shownPrompt.data();
    }

    static unsigned char CompleteWord(EditLine * line, int) {
        Parts & parts = Of(line);
        if (!parts.complete) return CC_ERROR;
        LineInfoW const * const info = el_wline(line);
        bool wrote = false;
        auto const added = parts.complete(std::wstring(info->buffer, info->cursor), wrote);
        if (!added.empty()) el_winsertstr(line, added.c_str());
        if (wrote) return CC_REDISPLAY;
        return added.empty() ? CC_ERROR : CC_REFRESH;
    }

    bool ReadByte(char & byte) {
        pollfd input = {STDIN_FILENO, POLLIN, 0};
        if (poll(&input, 1, RestOfKeyMilliseconds) != 1) return false;
        hasEnded = read(STDIN_FILENO, &byte, 1) != 1;
        return !hasEnded;
    }

    // libedit's own way does not tell the end of input from a key that leaves the line empty.
    static int ReadKey(EditLine * line, wchar_t * key) {
        std::mbstate_t state = {};
        for (char byte; Of(line).ReadByte(byte);) {
            std::size_t const size = std::mbrtowc(key, &byte, 1, &state);
            if (size == static_cast<std::size_t>(-2)) continue;
            if (size == static_cast<std::size_t>(-1)) *key = Unreadable;
            return 1;
        }
        return 0;
    }

    // An answer is what was typed behind its question: what came before is dropped.
    void Open() {
        if (line != nullptr) return;
        modes.emplace();
        tcflush(STDIN_FILENO, TCIFLUSH);
        line = el_init("prompt", stdin, stderr, stderr);
        if (line == nullptr) return modes.reset();
        hasEnded = false;
        el_wset(line, EL_CLIENTDATA, this);
        el_wset(line, EL_EDITOR, L"emacs");
        el_wset(line, EL_GETCFN, ReadKey);
        el_wset(line, EL_SIGNAL, 0);
        el_wset(line, EL_PROMPT, GivePrompt);
        el_wset(line, EL_ADDFN, L"complete-path", L"Complete a path", CompleteWord);
        el_wset(line, EL_BIND, L"^I", L"complete-path", nullptr);
        // These wait for a second key, and take its absence for the end of input.
        for (wchar_t const * const key : {L"^R", L"^S", L"^V"})
            el_wset(line, EL_BIND, L"-r", key, nullptr);
    }

    void Close() {
        if (line != nullptr) el_end(std::exchange(line, nullptr));
        modes.reset();
    }

    // How many rows above the cursor the line has.
    std::size_t RowsAbove() const {
        LineInfoW const * const info = el_wline(line);
        auto const typed = static_cast<std::size_t>(info->cursor - info->buffer);
        return (shownPrompt.size() + typed) / Columns();
    }
};

LineEditor::LineEditor() : m_Parts(std::make_unique<Parts>()) {}
LineEditor::~LineEditor() { End(); }

bool LineEditor::IsActive() const { return m_Parts->isActive; }
bool LineEditor::CanRedraw() const { return !IsDumb(); }

void LineEditor::Begin(Prompt prompt, Complete complete) {
    Utf8Scope const utf8;
    m_Parts->Open();
    if (m_Parts->line == nullptr) return;
    m_Parts->prompt = std::move(prompt);
    m_Parts->complete = std::move(complete);
    m_Parts->isActive = true;
    m_Parts->isHidden = false;
    el_wset(m_Parts->line, EL_UNBUFFERED, 1);
    // Who stops the program as soon as the question shows finds the editor begun once more.
    for (int i = 0; i < 3 && !m_Parts->modes->Edited(); ++i) {
        el_wset(m_Parts->line, EL_UNBUFFERED, 0);
        el_wset(m_Parts->line, EL_UNBUFFERED, 1);
    }
}

void LineEditor::End() {
    Utf8Scope const utf8;
    if (m_Parts->isActive && !m_Parts->isHidden) Write(L"\n");
    if (m_Parts->isActive) EndLine();
    m_Parts->Close();
}

void LineEditor::EndLine() {
    Utf8Scope const utf8;
    m_Parts->isActive = false;
    el_wset(m_Parts->line, EL_UNBUFFERED, 0);
    // What was typed and not finished is not the beginning of the next line.
    el_reset(m_Parts->line);
}

LineEditor::Outcome LineEditor::Read(std::wstring & line) {
    Utf8Scope const utf8;
    int count = 0;
    wchar_t const * const text = el_wgets(m_Parts->line, &count);
    if (m_Parts->hasEnded) return Outcome::EndOfInput;
    if (text == nullptr) return Outcome::More;
    std::wstring const typed(text, static_cast<std::size_t>(count));
    if (typed == std::wstring(1, EndOfInputKey)) return Outcome::EndOfInput;
    if (typed.empty() || (typed.back() != L'\n' && typed.back() != L'\r')) return Outcome::More;
    line = typed.substr(0, typed.size() - 1);
    return Outcome::Line;
}

void LineEditor::Hide() {
    if (!m_Parts->isActive || m_Parts->isHidden) return;
    m_Parts->isHidden = true;
    if (IsDumb()) return Write(L"\n");
    std::wstring erase = L"\r";
    if (auto const rows = m_Parts->RowsAbove(); rows > 0)
        erase += L"\x1b[" + std::to_wstring(rows) + L"A";
    Write(erase + L"\x1b[J");
}

void LineEditor::Redraw() {
    if (!m_Parts->isActive || !m_Parts->isHidden) return;
    Utf8Scope const utf8;
    m_Parts->isHidden = false;
    el_wset(m_Parts->line, EL_REFRESH);
}

int LineEditor::ContinuedDescriptor() { return TerminalModes::ContinuedDescriptor(); }

// The cursor stands somewhere else now: nothing of the old line is taken away.
void LineEditor::RedrawContinued() {
    if (!TerminalModes::TakeContinued() || !m_Parts->isActive) return;
    m_Parts->isHidden = true;
    Redraw();
}

void LineEditor::Write(std::wstring const & text) {
    std::string const bytes = *Utf16ToUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
    std::fflush(stderr);
}
