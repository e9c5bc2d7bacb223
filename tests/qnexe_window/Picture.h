// A window printed into a bitmap, without a display.
#pragma once

#include <cstddef>
#include <string>

#include <windows.h>

class Picture {
public:
    // White, in pixels.
    Picture(int width, int height);
    Picture(Picture const &) = delete;
    Picture & operator=(Picture const &) = delete;
    ~Picture();

    // Has the window draw its inside at this place.
    void Print(HWND window, POINT place);

    // How many pixels have this colour, in an area.
    std::size_t Count(COLORREF color, RECT const & area) const;
    std::size_t Count(COLORREF color) const { return Count(color, {0, 0, m_Width, m_Height}); }

    // By the system's own coder. False: it cannot be written.
    bool SavePng(std::wstring const & file) const;

private:
    int m_Width;
    int m_Height;
    HDC m_Device;
    HBITMAP m_Bitmap;
    HGDIOBJ m_Before;
    DWORD * m_Pixels = nullptr;
};
