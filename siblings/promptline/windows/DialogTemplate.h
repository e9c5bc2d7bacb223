// A dialog box described in memory, item by item.
//
// Measures are dialog units: a quarter of a character wide, an eighth of one high.
#pragma once

#include <string>
#include <vector>

#include "platform/BaseTypes.h"

class DialogTemplate {
public:
    enum class Control : WORD { Button = 0x80, Edit = 0x81, Text = 0x82, List = 0x83 };

    struct Box {
        int x;
        int y;
        int width;
        int height;
    };

    DialogTemplate(std::wstring const & title, int width);

    // Styles beyond "visible child".
    void Add(Control control, WORD id, DWORD style, Box const & box, std::wstring const & text);

    // The finished description; the object keeps it.
    DLGTEMPLATE const * Finish(int height);

private:
    void Align();
    void Put(DWORD value);
    void Put(Box const & box);
    void Put(std::wstring const & text);

    std::vector<WORD> m_Words;
    WORD m_Items = 0;
};
