// A line by libedit, which hands over after each key.
#include "siblings/promptline/linux/LineEditor.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

#include <histedit.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "siblings/Keelbase.h"

namespace {

constexpr wchar_t EndOfInputKey = 4;

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
    EditLine * line = nullptr;
    bool isActive = false;
    bool isHidden = false;
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

    void Open() {
        line = el_init("prompt", stdin, stderr, stderr);
        if (line == nullptr) return;
        el_wset(line, EL_CLIENTDATA, this);
        el_wset(line, EL_EDITOR, L"emacs");
        el_wset(line, EL_SIGNAL, 0);
        el_wset(line, EL_PROMPT, GivePrompt);
        el_wset(line, EL_ADDFN, L"complete-path", L"Complete a path", CompleteWord);
        el_wset(line, EL_BIND, L"^I", L"complete-path", nullptr);
    }

    // How many rows above the cursor the line has.
    std::size_t RowsAbove() const {
        LineInfoW const * const info = el_wline(line);
        auto const typed = static_cast<std::size_t>(info->cursor - info->buffer);
        return (shownPrompt.size() + typed) / Columns();
    }
};

LineEditor::LineEditor() : m_Parts(std::make_unique<Parts>()) {
    Utf8Scope const utf8;
    m_Parts->Open();
}

LineEditor::~LineEditor() {
    Utf8Scope const utf8;
    if (m_Parts->isActive) End();
    if (m_Parts->line != nullptr) el_end(m_Parts->line);
}

bool LineEditor::IsActive() const { return m_Parts->isActive; }
bool LineEditor::CanRedraw() const { return !IsDumb(); }

void LineEditor::Begin(Prompt prompt, Complete complete) {
    if (m_Parts->line == nullptr) return;
    Utf8Scope const utf8;
    m_Parts->prompt = std::move(prompt);
    m_Parts->complete = std::move(complete);
    m_Parts->isActive = true;
    m_Parts->isHidden = false;
    el_wset(m_Parts->line, EL_UNBUFFERED, 1);
}

void LineEditor::End() {
    if (!m_Parts->isActive) return;
    if (!m_Parts->isHidden) Write(L"\n");
    EndLine();
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
    if (text == nullptr) return count < 0 ? Outcome::EndOfInput : Outcome::More;
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

void LineEditor::Write(std::wstring const & text) {
    std::string const bytes = *Utf16ToUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), stderr);
    std::fflush(stderr);
}
