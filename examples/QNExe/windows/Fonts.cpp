// The fonts of the window.
#include "examples/QNExe/windows/Fonts.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr int PointsInInch = 72;

int CALLBACK OnFace(LOGFONTW const *, TEXTMETRICW const *, DWORD, LPARAM found) {
    *reinterpret_cast<bool *>(found) = true;
    return 0;
}

bool IsThere(wchar_t const * face) {
    LOGFONTW wanted = {};
    wanted.lfCharSet = DEFAULT_CHARSET;
    std::copy_n(
        face, std::min(std::wstring(face).size() + 1, std::size_t{LF_FACESIZE}), wanted.lfFaceName);
    bool found = false;
    HDC const screen = GetDC(nullptr);
    EnumFontFamiliesExW(screen, &wanted, OnFace, reinterpret_cast<LPARAM>(&found), 0);
    ReleaseDC(nullptr, screen);
    return found;
}

HFONT MessageFont(UINT dpi) {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    if (SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi) == 0)
        return nullptr;
    return CreateFontIndirectW(&metrics.lfMessageFont);
}

HFONT FontOf(std::wstring const & face, int points, UINT dpi) {
    return CreateFontW(
        -MulDiv(points, static_cast<int>(dpi), PointsInInch), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
        FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
        FIXED_PITCH | FF_MODERN, face.c_str());
}

} // namespace

std::wstring FixedFace() {
    for (wchar_t const * const face : {L"Cascadia Mono", L"Consolas", L"DejaVu Sans Mono"})
        if (IsThere(face)) return face;
    return L"Courier New";
}

Font::Font(UINT dpi) : m_Handle(MessageFont(dpi)) {}

Font::Font(std::wstring const & face, int points, UINT dpi) : m_Handle(FontOf(face, points, dpi)) {}

SIZE Font::SizeOf(std::wstring const & text) const {
    SIZE size = {};
    HDC const screen = GetDC(nullptr);
    HGDIOBJ const before = SelectObject(screen, m_Handle);
    GetTextExtentPoint32W(screen, text.c_str(), static_cast<int>(text.size()), &size);
    SelectObject(screen, before);
    ReleaseDC(nullptr, screen);
    return size;
}
