// The fonts of the window, in the size that a resolution asks for.
#pragma once

#include <string>
#include <utility>

#include <windows.h>

// The first of the usual faces with characters of one width that the system has.
std::wstring FixedFace();

class Font {
public:
    // What the system writes its messages in.
    explicit Font(UINT dpi);
    Font(std::wstring const & face, int points, UINT dpi);
    Font(Font && other) noexcept : m_Handle(std::exchange(other.m_Handle, nullptr)) {}
    Font & operator=(Font && other) noexcept {
        std::swap(m_Handle, other.m_Handle);
        return *this;
    }
    ~Font() { DeleteObject(m_Handle); }

    HFONT Handle() const { return m_Handle; }

    // What the text takes, in pixels.
    SIZE SizeOf(std::wstring const & text) const;

private:
    HFONT m_Handle;
};
