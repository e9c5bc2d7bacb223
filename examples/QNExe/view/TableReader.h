// Reads the tables that a COutputBuffer hands out, and says which text is shown in which look.
//
// A host keeps one reader for as long as its display lives, because a look that one table has set
// goes on in the next. The reader belongs to the thread that shows the text; it borrows a table
// only while it reads it. Copy it for a host of your own.
#pragma once

#include <vector>

#include "examples/QNExe/view/TextLook.h"
#include "output/COutputBuffer.h"

class TableReader {
public:
    // The pieces in order, none of them empty; neighbours differ in look.
    //
    // The blank that ends each text of a table is there for the next text to join at; it is not
    // shown.
    std::vector<StyledText> Read(COutputBuffer::DataTable const & table);

private:
    // What text without a look of its own is shown in.
    TextLook m_Look;
};
