// A dialog box in memory, in the layout that the system calls DLGTEMPLATEEX.
#include "siblings/promptline/windows/DialogTemplate.h"

namespace {

constexpr WORD FontSize = 8;

// Where a word stands in the layout.
constexpr std::size_t ItemsAt = 8;
constexpr std::size_t HeightAt = 12;

constexpr DWORD WindowStyle =
    WS_POPUP | WS_VISIBLE | WS_CAPTION | DS_SETFONT | DS_MODALFRAME | DS_CENTER | DS_SETFOREGROUND;

} // namespace

DialogTemplate::DialogTemplate(std::wstring const & title, int width) {
    m_Words = {1, 0xFFFF};
    Put(DWORD{0});
    Put(DWORD{WS_EX_APPWINDOW});
    Put(WindowStyle);
    m_Words.push_back(0);
    Put(Box{0, 0, width, 0});
    m_Words.insert(m_Words.end(), {0, 0});
    Put(title);
    m_Words.insert(m_Words.end(), {FontSize, FW_NORMAL, DEFAULT_CHARSET << 8});
    Put(L"MS Shell Dlg");
}

void DialogTemplate::Add(
    Control control, WORD id, DWORD style, Box const & box, std::wstring const & text) {
    Align();
    Put(DWORD{0});
    Put(DWORD{0});
    Put(style | WS_CHILD | WS_VISIBLE);
    Put(box);
    Put(DWORD{id});
    m_Words.insert(m_Words.end(), {0xFFFF, static_cast<WORD>(control)});
    Put(text);
    m_Words.push_back(0);
    ++m_Items;
}

DLGTEMPLATE const * DialogTemplate::Finish(int height) {
    m_Words[ItemsAt] = m_Items;
    m_Words[HeightAt] = static_cast<WORD>(height);
    return reinterpret_cast<DLGTEMPLATE const *>(m_Words.data());
}

// Items begin at a multiple of four bytes.
void DialogTemplate::Align() {
    if (m_Words.size() % 2 != 0) m_Words.push_back(0);
}

void DialogTemplate::Put(DWORD value) {
    m_Words.push_back(LOWORD(value));
    m_Words.push_back(HIWORD(value));
}

void DialogTemplate::Put(Box const & box) {
    for (int const measure : {box.x, box.y, box.width, box.height})
        m_Words.push_back(static_cast<WORD>(measure));
}

void DialogTemplate::Put(std::wstring const & text) {
    m_Words.insert(m_Words.end(), text.begin(), text.end());
    m_Words.push_back(0);
}
