// Cleans texts: one decoder, and what each form makes of its code points.
#include "siblings/quillonlog/reports/CleanText.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include <nlohmann/json.hpp>

namespace {

constexpr char32_t Replacement = 0xFFFD;

struct Decoded {
    char32_t point;
    std::size_t size;
};

std::uint8_t ByteAt(std::string_view text, std::size_t at) {
    return at < text.size() ? static_cast<std::uint8_t>(text[at]) : 0;
}

bool IsWithin(std::uint8_t byte, std::uint8_t first, std::uint8_t last) {
    return byte >= first && byte <= last;
}

// How many bytes a lead byte announces; 0: it is none.
std::size_t LengthOf(std::uint8_t lead) {
    if (IsWithin(lead, 0xC2, 0xDF)) return 2;
    if (IsWithin(lead, 0xE0, 0xEF)) return 3;
    return IsWithin(lead, 0xF0, 0xF4) ? 4 : 0;
}

// Neither overlong forms nor surrogates nor points above the last.
bool IsSecond(std::uint8_t lead, std::uint8_t byte) {
    if (lead == 0xE0) return IsWithin(byte, 0xA0, 0xBF);
    if (lead == 0xED) return IsWithin(byte, 0x80, 0x9F);
    if (lead == 0xF0) return IsWithin(byte, 0x90, 0xBF);
    if (lead == 0xF4) return IsWithin(byte, 0x80, 0x8F);
    return IsWithin(byte, 0x80, 0xBF);
}

// The character at the front, which is not in ASCII; of an ill-formed one as much as could begin
// one.
Decoded Decode(std::string_view text) {
    std::uint8_t const lead = ByteAt(text, 0);
    std::size_t const length = LengthOf(lead);
    if (length == 0 || !IsSecond(lead, ByteAt(text, 1))) return {Replacement, 1};
    char32_t point = lead & (0x7F >> length);
    point = point << 6 | (ByteAt(text, 1) & 0x3F);
    for (std::size_t at = 2; at < length; ++at) {
        if (!IsWithin(ByteAt(text, at), 0x80, 0xBF)) return {Replacement, at};
        point = point << 6 | (ByteAt(text, at) & 0x3F);
    }
    return {point, length};
}

bool IsNoCharacter(char32_t point) {
    return (point & 0xFFFE) == 0xFFFE || (point >= 0xFDD0 && point <= 0xFDEF);
}

bool IsControl(char32_t point) { return point < 0x20 || (point >= 0x7F && point < 0xA0); }

void AppendHex(std::string & out, char32_t value, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        out += "0123456789ABCDEF"[value >> shift & 0xF];
}

void AppendControl(std::string & out, char32_t point) {
    out += "\\x";
    AppendHex(out, point, 2);
}

void AppendNoCharacter(std::string & out, char32_t point) {
    out += "\\u{";
    AppendHex(out, point, point > 0xFFFFF ? 6 : point > 0xFFFF ? 5 : 4);
    out += '}';
}

// Bytes that stand for themselves.
constexpr std::array<bool, 256> PlainBytes() {
    std::array<bool, 256> plain{};
    for (std::size_t byte = 0x20; byte < 0x7F; ++byte)
        plain[byte] = true;
    for (char const mark : {'&', '<', '>', '"', '\''})
        plain[static_cast<std::size_t>(mark)] = false;
    return plain;
}

constexpr auto IsPlain = PlainBytes();

std::size_t PlainLength(std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && IsPlain[static_cast<std::uint8_t>(text[length])])
        ++length;
    return length;
}

char const * EntityOf(char mark) {
    switch (mark) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return nullptr;
    }
}

struct BlankForms {
    char const * lineEnd;
    char const * tab;
};

constexpr BlankForms InElement = {"\n", "\t"};
// A reader makes blanks of them unless they come as references.
constexpr BlankForms InAttribute = {"&#10;", "&#9;"};

// One character of ASCII that does not stand for itself; the number of bytes that it took.
std::size_t AppendSpecial(std::string & out, std::string_view text, BlankForms const & blanks) {
    char const mark = text.front();
    if (char const * const entity = EntityOf(mark)) {
        out += entity;
    } else if (mark == '\n') {
        out += blanks.lineEnd;
    } else if (mark == '\t') {
        out += blanks.tab;
    } else if (text.starts_with("\r\n")) {
        out += blanks.lineEnd;
        return 2;
    } else {
        AppendControl(out, static_cast<char32_t>(mark));
    }
    return 1;
}

std::size_t AppendBeyondAscii(std::string & out, std::string_view text) {
    auto const [point, size] = Decode(text);
    if (IsControl(point))
        AppendControl(out, point);
    else if (IsNoCharacter(point))
        AppendNoCharacter(out, point);
    else if (point == Replacement)
        out += "\xEF\xBF\xBD";
    else
        out += text.substr(0, size);
    return size;
}

void Append(std::string & out, std::string_view text, BlankForms const & blanks) {
    for (;;) {
        std::size_t const plain = PlainLength(text);
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty()) return;
        bool const isAscii = static_cast<std::uint8_t>(text.front()) < 0x80;
        text.remove_prefix(
            isAscii ? AppendSpecial(out, text, blanks) : AppendBeyondAscii(out, text));
    }
}

bool IsAscii(std::string_view text) {
    for (char const byte : text)
        if (static_cast<std::uint8_t>(byte) >= 0x80) return false;
    return true;
}

bool IsPrintable(std::string_view text) {
    return std::all_of(
        text.begin(), text.end(), [](char byte) { return byte >= 0x20 && byte < 0x7F; });
}

// Nearly every text of a run.
void AppendPrintableJson(std::string & out, std::string_view text) {
    out += '"';
    for (auto mark = text.find_first_of("\"\\"); mark != text.npos;
         mark = text.find_first_of("\"\\")) {
        out.append(text.substr(0, mark)).append("\\").append(text.substr(mark, 1));
        text.remove_prefix(mark + 1);
    }
    out.append(text).append("\"");
}

std::string WellFormed(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        std::size_t size = 1;
        if (static_cast<std::uint8_t>(text.front()) >= 0x80) {
            Decoded const decoded = Decode(text);
            size = decoded.size;
            if (decoded.point == Replacement)
                out += "\xEF\xBF\xBD";
            else
                out += text.substr(0, size);
        } else {
            out += text.front();
        }
        text.remove_prefix(size);
    }
    return out;
}

} // namespace

void CleanText::AppendMarkup(std::string & out, std::string_view text) {
    Append(out, text, InElement);
}

void CleanText::AppendAttribute(std::string & out, std::string_view text) {
    Append(out, text, InAttribute);
}

void CleanText::AppendJson(std::string & out, std::string_view text) {
    if (IsPrintable(text)) return AppendPrintableJson(out, text);
    nlohmann::json const value(IsAscii(text) ? std::string(text) : WellFormed(text));
    out += value.dump();
}

std::string CleanText::Markup(std::string_view text) {
    std::string out;
    AppendMarkup(out, text);
    return out;
}

std::string CleanText::Attribute(std::string_view text) {
    std::string out;
    AppendAttribute(out, text);
    return out;
}

std::string CleanText::Cut(std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes) return std::string(text);
    while (bytes > 0 && (static_cast<std::uint8_t>(text[bytes]) & 0xC0) == 0x80)
        --bytes;
    return std::string(text.substr(0, bytes)) + "\xE2\x80\xA6";
}
