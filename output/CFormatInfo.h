// How a run of displayed text looks: one rich-edit character format, and the part of a text item
// that it covers.
//
// A format knows two things about each attribute. `dwMask` says whether the format specifies it;
// `dwEffects` and the value fields say as what. An attribute that is not specified is left to
// whatever is in force around it, so the ...IsSet queries tell "specified", never "on".
//
// A format is plain data of the thread that built it. The default format is the process's: once
// set it never changes, so it is read without a lock.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>

#include "app/Export.h"
#include "platform/RichEdit.h"

// Colours by name, in the layout 0x00BBGGRR. Any other COLORREF may be cast to it.
enum EColor : std::uint32_t {
    eColorBlack = 0x000000,
    eColorWhite = 0xFFFFFF,
    eColorGray = 0x7F7F7F,
    eColorRed = 0x0000FF,
    eColorGreen = 0x00FF00,
    eColorBlue = 0xFF0000,
    eColorYellow = 0x00FFFF,
    eColorMagenta = 0xFF00FF,
    eColorCyan = 0xFFFF00,
};

struct MORVEX_API CFormatInfo {
    // Characters of the text item, counted from its start.
    _charrange range{0, 0};
    CHARFORMAT2A format;
    // The range is not the caller's: it becomes the whole item when the item is added.
    bool autoRange = true;

    // The blank format: specifies nothing, both colours automatic. It and the five forms below
    // start from a zeroed record, so a reader has to set `cbSize`.
    //
    // `bold` and `italic` are specified either way, as on or off. `weight` counts only with bold;
    // without it the weight is 400. A colour is an `unsigned long`: a literal before flags needs
    // its suffix, as in CFormatInfo(0x0000FFul, true, 700).
    CFormatInfo() { MakeBlank(); }
    CFormatInfo(unsigned long color);
    CFormatInfo(unsigned long color, bool bold, unsigned short weight);
    CFormatInfo(unsigned long color, bool italic, bool bold, unsigned short weight);
    CFormatInfo(bool bold, unsigned short weight);
    CFormatInfo(bool italic, bool bold, unsigned short weight);

    // The whole record as it stands, `cbSize` included.
    CFormatInfo(CHARFORMAT2A const & record) { CopyRecord(record); }
    CFormatInfo(CHARFORMAT2W const & record);

    // Copies carry range and flag too, and every byte of the record: FormatEqual looks at all.
    CFormatInfo(CFormatInfo const & other) noexcept
        : range(other.range), autoRange(other.autoRange) {
        CopyRecord(other.format);
    }
    CFormatInfo & operator=(CFormatInfo const & other) noexcept {
        range = other.range;
        autoRange = other.autoRange;
        CopyRecord(other.format);
        return *this;
    }

    virtual ~CFormatInfo() = default;

    // The value is stored whole; bits above the low 24 stay.
    void setColor(unsigned long color);
    void setColor(EColor color);
    void setColor(unsigned char red, unsigned char green, unsigned char blue);

    // Deliberate: mixes by exclusive-or and keeps the low 24 bits, so adding twice undoes itself.
    void addColor(unsigned long const & value);

    // Specifies the automatic colour. The stored colour stays, and colorIsSet stays true.
    void clearColor();
    bool colorIsSet() const { return (format.dwMask & CFM_COLOR) != 0; }

    // The same rules for the background.
    void setBackColor(unsigned long color);
    void setBackColor(EColor color);
    void setBackColor(unsigned char red, unsigned char green, unsigned char blue);
    void clearBackColor();
    bool backColorIsSet() const { return (format.dwMask & CFM_BACKCOLOR) != 0; }

    // Specifies boldness and weight together. Off: the weight becomes 400 whatever is passed.
    void setBold(bool const & on, unsigned short const & weight);
    bool boldIsSet() const { return (format.dwMask & (CFM_BOLD | CFM_WEIGHT)) != 0; }
    void setItalic(bool const & on);
    bool italicIsSet() const { return (format.dwMask & CFM_ITALIC) != 0; }
    void setUnderline(bool const & on);
    bool underlineIsSet() const { return (format.dwMask & CFM_UNDERLINE) != 0; }

    // The mask has no bit for it.
    void setPitchAndFamily(unsigned char const & value);

    // Replaces the whole record, `cbSize` included; range and flag stay. Both forms take a
    // CHARFORMAT2A, which must not be null.
    void setStyle(CHARFORMAT2A const * record);
    void setStyle(void const * record);

    // Back to what CFormatInfo() makes.
    void ClearFormat();

    // Fills in what this format leaves open from the format around it, and returns this format's
    // record. Effects only ever gain bits.
    //
    // Deliberate: of the values only the two colours are inherited. Any other field is taken from
    // `other` when neither side specifies it; one that `other` alone specifies keeps this format's
    // value, although the mask now claims it.
    CHARFORMAT2A & MergeFormat(CHARFORMAT2A const & other);

    // Whether `have` already gives everything that `wanted` asks for: the same record byte for
    // byte, or the same but for masks where `have` holds each bit of `wanted` and no bit of
    // `extraMask` besides.
    static bool
    FormatEqual(CHARFORMAT2A const & have, CHARFORMAT2A const & wanted, unsigned long extraMask);

    // Keeps a copy of the record as the process's default. Only the first call counts. The host
    // makes it before text flows; COutputBuffer has it under its lock.
    static void InitializeDefaultFormat(CHARFORMAT2A const & record);

    // Not to be called before InitializeDefaultFormat: there is no record then.
    static CHARFORMAT2A const & GetDefaultFormat() {
        return *m_DefaultFormat.load(std::memory_order_acquire);
    }

    // Copy the record field by field between the two widths; the face name goes through UTF-8.
    // A name of 32 units or more fills the field and has no terminator. `cbSize` is copied, not
    // corrected.
    static void WideToNarrow(CHARFORMAT2A & out, CHARFORMAT2W const & in);
    static void NarrowToWide(CHARFORMAT2W & out, CHARFORMAT2A const & in);

private:
    void CopyRecord(CHARFORMAT2A const & record) noexcept {
        if (&record != &format) std::memcpy(&format, &record, sizeof format);
    }
    void MakeBlank() noexcept {
        std::memset(&format, 0, sizeof format);
        format.dwEffects = CFE_AUTOCOLOR | CFE_AUTOBACKCOLOR;
    }

    static std::atomic<CHARFORMAT2A const *> m_DefaultFormat;
};
