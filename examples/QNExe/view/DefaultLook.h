// The look of text that names none.
#pragma once

#include "output/CFormatInfo.h"
#include "output/COutputBuffer.h"

// Before the first text, once a process; more often does nothing. The look specifies everything
// that a log changes, so that a return to it undoes every change.
inline void InitializeDefaultLook() {
    CFormatInfo look;
    look.setBold(false, 400);
    look.setItalic(false);
    look.setUnderline(false);
    look.clearColor();
    look.clearBackColor();
    look.format.cbSize = sizeof look.format;
    COutputBuffer::InitializeDefaultFormatInfo(look.format);
}
