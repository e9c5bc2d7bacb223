// The log of a run in a rich-edit control.
#include "examples/QNExe/windows/LogPane.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <richedit.h>

#include "examples/QNExe/windows/Fonts.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "siblings/Keelbase.h"

namespace {

constexpr LONG TwipsInPoint = 20;
constexpr LONG FontSize = 9 * TwipsInPoint;
// One step of a batch, and how long a batch may last: more would be felt at the keyboard.
constexpr std::size_t CharactersInStep = 4096;
constexpr auto BatchTime = std::chrono::milliseconds(20);
constexpr UINT PauseMilliseconds = 10;

// The code page of the system's wide texts.
constexpr UINT Utf16 = 1200;

LRESULT Send(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return SendMessageW(window, message, wParam, lParam);
}

template <typename Record>
LPARAM Address(Record & record) {
    return reinterpret_cast<LPARAM>(&record);
}

void SetEffect(CHARFORMAT2W & format, DWORD effect, bool on) {
    format.dwMask |= effect;
    if (on) format.dwEffects |= effect;
}

// Every attribute is specified: what is not in the look is the control's own.
CHARFORMAT2W FormatOf(TextLook const & look) {
    CHARFORMAT2W format = {};
    format.cbSize = sizeof format;
    format.dwMask = CFM_COLOR | CFM_BACKCOLOR;
    SetEffect(format, CFE_BOLD, look.bold);
    SetEffect(format, CFE_ITALIC, look.italic);
    SetEffect(format, CFE_UNDERLINE, look.underline);
    if (!look.color) format.dwEffects |= CFE_AUTOCOLOR;
    if (!look.backColor) format.dwEffects |= CFE_AUTOBACKCOLOR;
    format.crTextColor = look.color.value_or(0);
    format.crBackColor = look.backColor.value_or(0);
    return format;
}

void SetDefaultFont(HWND window) {
    CHARFORMAT2W format = FormatOf({});
    format.dwMask |= CFM_FACE | CFM_SIZE;
    format.yHeight = FontSize;
    std::wstring const face = FixedFace();
    std::copy_n(
        face.c_str(), std::min(face.size() + 1, std::size_t{LF_FACESIZE}), format.szFaceName);
    Send(window, EM_SETCHARFORMAT, SCF_ALL, Address(format));
}

// As much as makes a step: whole lines, unless one alone is longer.
std::size_t StepOf(std::wstring_view text) {
    if (text.size() <= CharactersInStep) return text.size();
    auto const end = text.substr(0, CharactersInStep).rfind(L'\n');
    return end != text.npos ? end + 1 : CharactersInStep;
}

// The reader's selection and place, kept while text is added behind them.
class KeptSelection {
public:
    explicit KeptSelection(HWND window) : m_Window(window) {
        Send(window, EM_EXGETSEL, 0, Address(m_Selection));
        Send(window, EM_GETSCROLLPOS, 0, Address(m_Place));
        Send(window, WM_SETREDRAW, FALSE, 0);
    }
    KeptSelection(KeptSelection const &) = delete;
    KeptSelection & operator=(KeptSelection const &) = delete;
    // A control that does not draw does not scroll either.
    ~KeptSelection() {
        Send(m_Window, EM_EXSETSEL, 0, Address(m_Selection));
        Send(m_Window, WM_SETREDRAW, TRUE, 0);
        Send(m_Window, EM_SETSCROLLPOS, 0, Address(m_Place));
        InvalidateRect(m_Window, nullptr, TRUE);
    }

private:
    HWND m_Window;
    CHARRANGE m_Selection = {};
    POINT m_Place = {};
};

HMODULE LoadControl() {
    HMODULE const library = LoadLibraryExW(L"msftedit.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr) throw std::runtime_error("the system has no rich-edit control.");
    return library;
}

DWORD CALLBACK TakeBytes(DWORD_PTR cookie, BYTE * bytes, LONG count, LONG * taken) {
    reinterpret_cast<std::string *>(cookie)->append(
        reinterpret_cast<char const *>(bytes), static_cast<std::size_t>(count));
    *taken = count;
    return 0;
}

} // namespace

LogPane::LogPane(HWND parent) : m_Library(LoadControl()) {
    // Without a horizontal scroll bar long lines are wrapped: the whole of a failure is seen.
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_VSCROLL | WS_TABSTOP | ES_MULTILINE
                            | ES_READONLY | ES_AUTOVSCROLL | ES_NOHIDESEL;
    m_Handle = CreateWindowExW(
        WS_EX_CLIENTEDGE, L"RICHEDIT50W", L"", style, 0, 0, 0, 0, parent,
        reinterpret_cast<HMENU>(INT_PTR{ID_LOG_VIEW}), nullptr, nullptr);
    if (m_Handle == nullptr) throw std::runtime_error("the log's control cannot be made.");
    SetWindowLongPtrW(m_Handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    Send(m_Handle, EM_EXLIMITTEXT, 0, 0x7FFFFFFE);
    Send(m_Handle, EM_SETUNDOLIMIT, 0, 0);
    SetDefaultFont(m_Handle);
}

LogPane::~LogPane() {
    if (IsWindow(m_Handle) != 0) DestroyWindow(m_Handle);
    FreeLibrary(m_Library);
}

void LogPane::Add(std::vector<StyledText> const & pieces) {
    for (auto const & [text, look] : pieces) {
        std::wstring_view rest = text;
        while (!rest.empty()) {
            std::size_t const step = StepOf(rest);
            m_Waiting.push_back({std::wstring(rest.substr(0, step)), look});
            rest.remove_prefix(step);
        }
    }
    // The timer bears the place of this object as its number.
    if (IsWaiting())
        SetTimer(m_Handle, reinterpret_cast<UINT_PTR>(this), PauseMilliseconds, OnTimer);
}

void LogPane::Clear() {
    m_Waiting.clear();
    SetWindowTextW(m_Handle, L"");
    SetDefaultFont(m_Handle);
}

void LogPane::OnTimer(HWND, UINT, UINT_PTR timer, DWORD) {
    reinterpret_cast<LogPane *>(timer)->ShowBatch();
}

void LogPane::ShowBatch() {
    bool const follows = IsAtEnd();
    auto const end = std::chrono::steady_clock::now() + BatchTime;
    {
        KeptSelection const kept(m_Handle);
        while (IsWaiting() && std::chrono::steady_clock::now() < end) {
            Append(m_Waiting.front());
            m_Waiting.pop_front();
        }
    }
    if (follows) Send(m_Handle, WM_VSCROLL, SB_BOTTOM, 0);
    if (IsWaiting()) return;
    KillTimer(m_Handle, reinterpret_cast<UINT_PTR>(this));
    m_WhenShown();
}

void LogPane::Append(StyledText const & piece) {
    CHARRANGE end{-1, -1};
    CHARFORMAT2W format = FormatOf(piece.look);
    Send(m_Handle, EM_EXSETSEL, 0, Address(end));
    Send(m_Handle, EM_SETCHARFORMAT, SCF_SELECTION, Address(format));
    Send(m_Handle, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(piece.text.c_str()));
}

// Whoever has scrolled back reads, and is not taken away from there.
bool LogPane::IsAtEnd() const {
    GETTEXTLENGTHEX measure{GTL_NUMCHARS, Utf16};
    auto const end = Send(m_Handle, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&measure), 0);
    POINTL place = {};
    Send(m_Handle, EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&place), end);
    RECT area = {};
    GetClientRect(m_Handle, &area);
    return place.y <= area.bottom;
}

void LogPane::SetDpi(UINT dpi) { Send(m_Handle, EM_SETZOOM, dpi, GetDpiForSystem()); }

SIZE LogPane::SizeOf(int columns, int lines) const {
    HDC const screen = GetDC(m_Handle);
    UINT const dpi = GetDpiForWindow(m_Handle);
    Font const font(FixedFace(), FontSize / TwipsInPoint, dpi);
    HGDIOBJ const before = SelectObject(screen, font.Handle());
    TEXTMETRICW metrics = {};
    GetTextMetricsW(screen, &metrics);
    SelectObject(screen, before);
    ReleaseDC(m_Handle, screen);
    return {columns * metrics.tmAveCharWidth, lines * metrics.tmHeight};
}

std::string LogPane::Text() const {
    GETTEXTLENGTHEX measure{GTL_NUMCHARS | GTL_PRECISE, Utf16};
    auto const length = Send(m_Handle, EM_GETTEXTLENGTHEX, reinterpret_cast<WPARAM>(&measure), 0);
    std::wstring text(static_cast<std::size_t>(std::max<LRESULT>(length, 0)) + 1, L'\0');
    GETTEXTEX how{};
    how.cb = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    how.codepage = Utf16;
    auto const size = Send(
        m_Handle, EM_GETTEXTEX, reinterpret_cast<WPARAM>(&how),
        reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(size));
    std::replace(text.begin(), text.end(), L'\r', L'\n');
    return *Utf16ToUtf8(text);
}

std::string LogPane::RichText() const {
    std::string bytes;
    EDITSTREAM stream{reinterpret_cast<DWORD_PTR>(&bytes), 0, TakeBytes};
    // The program's own code page, UTF-8, would make a dialect of it that few programs read.
    constexpr WPARAM western = 1252;
    Send(m_Handle, EM_STREAMOUT, SF_RTF | SF_USECODEPAGE | western << 16, Address(stream));
    return bytes;
}
