// A window printed into a bitmap.
#include "qnexe_window/Picture.h"

#include <algorithm>
#include <memory>

#include <objidl.h>

using std::max;
using std::min;
#include <gdiplus.h>

namespace {

constexpr CLSID PngCoder = {
    0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

class PictureCoder {
public:
    PictureCoder() {
        Gdiplus::GdiplusStartupInput const input;
        Gdiplus::GdiplusStartup(&m_Token, &input, nullptr);
    }
    ~PictureCoder() { Gdiplus::GdiplusShutdown(m_Token); }

private:
    ULONG_PTR m_Token = 0;
};

DWORD PixelOf(COLORREF color) {
    return static_cast<DWORD>(GetRValue(color)) << 16 | static_cast<DWORD>(GetGValue(color)) << 8
           | GetBValue(color);
}

} // namespace

Picture::Picture(int width, int height)
    : m_Width(width), m_Height(height), m_Device(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void * pixels = nullptr;
    m_Bitmap = CreateDIBSection(m_Device, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    m_Pixels = static_cast<DWORD *>(pixels);
    m_Before = SelectObject(m_Device, m_Bitmap);
    RECT const all{0, 0, width, height};
    FillRect(m_Device, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
}

Picture::~Picture() {
    SelectObject(m_Device, m_Before);
    DeleteObject(m_Bitmap);
    DeleteDC(m_Device);
}

void Picture::Print(HWND window, POINT place) {
    // Controls leave their clipping behind, and erase whatever they may.
    int const state = SaveDC(m_Device);
    SetViewportOrgEx(m_Device, place.x, place.y, nullptr);
    RECT inside = {};
    GetClientRect(window, &inside);
    IntersectClipRect(m_Device, 0, 0, inside.right, inside.bottom);
    SendMessageW(window, WM_PRINT, reinterpret_cast<WPARAM>(m_Device), PRF_CLIENT | PRF_ERASEBKGND);
    RestoreDC(m_Device, state);
    GdiFlush();
}

std::size_t Picture::Count(COLORREF color, RECT const & area) const {
    std::size_t count = 0;
    for (LONG y = area.top; y < std::min<LONG>(area.bottom, m_Height); ++y)
        for (LONG x = area.left; x < std::min<LONG>(area.right, m_Width); ++x)
            count += (m_Pixels[y * m_Width + x] & 0xFFFFFF) == PixelOf(color) ? 1 : 0;
    return count;
}

bool Picture::SavePng(std::wstring const & file) const {
    PictureCoder const system;
    Gdiplus::Bitmap bitmap(
        m_Width, m_Height, m_Width * 4, PixelFormat32bppRGB, reinterpret_cast<BYTE *>(m_Pixels));
    return bitmap.Save(file.c_str(), &PngCoder, nullptr) == Gdiplus::Ok;
}
