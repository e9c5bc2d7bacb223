// Formats and tables as lines of text, so that a test compares them whole and reads like a log.
//
// A line names each field of a record that is not zero, then the range; a range that is not the
// library's to set is marked "own". An entry begins with its text in quotes, or "-" without one.
#pragma once

#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "output/CFormatInfo.h"
#include "output/COutputBuffer.h"

using Lines = std::vector<std::string>;

inline std::string Number(char const * format, unsigned long value) {
    char text[32];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

inline std::string Escaped(std::wstring const & text) {
    std::string out = "\"";
    for (wchar_t const character : text) {
        if (character >= L' ' && character < 0x7F)
            out += static_cast<char>(character);
        else
            out += Number("\\%lx", static_cast<unsigned long>(character));
    }
    return out + '"';
}

class RecordLine {
public:
    explicit RecordLine(CHARFORMAT2A const & r) {
        if (r.cbSize != 0) m_Line = Number("size=%lu ", r.cbSize);
        m_Line += "mask=" + Number("%08lX", r.dwMask) + " effects=" + Number("%08lX", r.dwEffects);
        Add(" height", static_cast<DWORD>(r.yHeight));
        Add(" offset", static_cast<DWORD>(r.yOffset));
        Add(" color", r.crTextColor, "%06lX");
        Add(" charset", r.bCharSet);
        Add(" pitch", r.bPitchAndFamily);
        AddFace(r);
        Add(" weight", r.wWeight);
        Add(" spacing", static_cast<WORD>(r.sSpacing));
        Add(" back", r.crBackColor, "%06lX");
        Add(" lcid", r.lcid);
        Add(" cookie", r.dwCookie);
        Add(" style", static_cast<WORD>(r.sStyle));
        Add(" kerning", r.wKerning);
        Add(" underlinetype", r.bUnderlineType);
        Add(" animation", r.bAnimation);
        Add(" author", r.bRevAuthor);
        Add(" underlinecolor", r.bUnderlineColor);
    }

    std::string const & Text() const { return m_Line; }

private:
    void Add(char const * name, unsigned long value, char const * format = "%lu") {
        if (value != 0) m_Line += std::string(name) + '=' + Number(format, value);
    }

    // All 32 characters without the zeros at the end: what stands behind a NUL shows.
    void AddFace(CHARFORMAT2A const & r) {
        std::wstring face(std::begin(r.szFaceName), std::end(r.szFaceName));
        face.erase(face.find_last_not_of(L'\0') + 1);
        if (!face.empty()) m_Line += " face=" + Escaped(face);
    }

    std::string m_Line;
};

inline std::string Line(CHARFORMAT2A const & record) { return RecordLine(record).Text(); }

inline std::string Line(CFormatInfo const & look) {
    return Line(look.format) + " @" + std::to_string(look.range.cpMin) + ','
           + std::to_string(look.range.cpMax) + (look.autoRange ? "" : " own");
}

// Takes what has come in, as the host does.
inline Lines Take(COutputBuffer & buffer) {
    Lines lines;
    auto * const table = buffer.GetText();
    if (table == nullptr) return lines;
    for (auto const & [text, look] : *table)
        lines.push_back((text != nullptr ? Escaped(*text) : "-") + ' ' + Line(look));
    COutputBuffer::DeleteDataTable(table);
    return lines;
}

// A zeroed record, padding included.
inline CHARFORMAT2A Record(DWORD mask, DWORD effects) {
    CHARFORMAT2A record;
    std::memset(&record, 0, sizeof record);
    record.dwMask = mask;
    record.dwEffects = effects;
    return record;
}
