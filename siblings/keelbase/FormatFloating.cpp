// Floating values as text, from the digits that std::to_chars gives.
//
// Of a precision only the part that can change digits is asked of it; the zeros behind are ours.
// A `double` has at most 1074 digits behind the point.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "siblings/keelbase/FormatFloating.h"

namespace keelbase {
namespace {

constexpr int MostDigits = 1100;

struct Halves {
    std::string_view mantissa;
    std::string_view exponent; // with its letter; empty: none
};

// One number's text under construction in the caller's room.
class Writer {
public:
    explicit Writer(char (&room)[FloatingRoom]) : m_Begin(room), m_End(room) {}

    void Write(double number, std::chars_format form, int precision) {
        m_End = std::to_chars(m_Begin, Limit(), number, form, std::min(precision, MostDigits)).ptr;
    }
    void WriteShortestHexadecimal(double number) {
        m_End = std::to_chars(m_Begin, Limit(), number, std::chars_format::hex).ptr;
    }

    // Inserts the point that a number without fraction lacks.
    void InsertPoint() {
        std::size_t const at = Split().mantissa.size();
        if (std::string_view(m_Begin, at).find('.') != std::string_view::npos) return;
        std::copy_backward(m_Begin + at, m_End, m_End + 1);
        m_Begin[at] = '.';
        ++m_End;
    }

    void RaiseCase() {
        std::transform(m_Begin, m_End, m_Begin, [](char character) {
            return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                        : character;
        });
    }

    // An `e` in front of a sign begins an exponent, which it never does as a hexadecimal digit.
    Halves Split() const {
        std::string_view const all(m_Begin, static_cast<std::size_t>(m_End - m_Begin));
        std::size_t const sign = all.find_first_of("+-");
        std::size_t const at = sign == std::string_view::npos ? all.size() : sign - 1;
        return {all.substr(0, at), all.substr(at)};
    }

    int Exponent() const {
        std::string_view const text = Split().exponent;
        int exponent = 0;
        std::from_chars(text.data() + 2, text.data() + text.size(), exponent);
        return text[1] == '-' ? -exponent : exponent;
    }

private:
    // One character stays free for a point.
    char * Limit() const { return m_Begin + FloatingRoom - 2; }

    char * m_Begin;
    char * m_End;
};

constexpr char Lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string_view SignOf(Directive const & directive, double number) {
    if (std::signbit(number)) return "-";
    if (directive.Has(Directive::Plus)) return "+";
    return directive.Has(Directive::Blank) ? " " : "";
}

std::string_view NameOf(double number, bool upper) {
    if (std::isnan(number)) return upper ? "NAN" : "nan";
    return upper ? "INF" : "inf";
}

double NumberOf(FormatArgument const & value) {
    if (value.GetKind() == FormatArgument::Kind::Floating) return value.GetFloating();
    std::uint64_t const number = IntegerOf(value);
    return value.GetKind() == FormatArgument::Kind::Signed
               ? static_cast<double>(static_cast<std::int64_t>(number))
               : static_cast<double>(number);
}

// Writes %#g, which keeps its trailing zeros: the form follows from the exponent that the
// scientific form has after rounding. Answers the digits behind the point that were asked for.
int WriteGeneralWithZeros(Writer & writer, double number, int precision) {
    writer.Write(number, std::chars_format::scientific, precision - 1);
    int const exponent = writer.Exponent();
    if (exponent < -4 || exponent >= precision) return precision - 1;
    writer.Write(number, std::chars_format::fixed, precision - 1 - exponent);
    return precision - 1 - exponent;
}

// Answers the digits behind the point that were asked for, 0 where zeros behind are cut.
int WriteDigits(Writer & writer, Directive const & directive, double number) {
    char const form = Lower(directive.letter);
    int const asked = std::min(directive.precision, MostFill);
    int const precision = asked < 0 ? 6 : asked;
    switch (form) {
    case 'a':
        if (asked < 0)
            writer.WriteShortestHexadecimal(number);
        else
            writer.Write(number, std::chars_format::hex, asked);
        return asked;
    case 'e':
        writer.Write(number, std::chars_format::scientific, precision);
        return precision;
    case 'f':
        writer.Write(number, std::chars_format::fixed, precision);
        return precision;
    default:
        if (directive.Has(Directive::Alternate))
            return WriteGeneralWithZeros(writer, number, std::max(precision, 1));
        writer.Write(number, std::chars_format::general, std::max(precision, 1));
        return 0;
    }
}

// What stands between sign and digits: the sign alone, or with the hexadecimal prefix.
std::string_view HexadecimalPrefix(std::string_view sign, bool upper) {
    if (sign == "-") return upper ? "-0X" : "-0x";
    if (sign == "+") return upper ? "+0X" : "+0x";
    if (sign == " ") return upper ? " 0X" : " 0x";
    return upper ? "0X" : "0x";
}

} // namespace

std::uint64_t WholePart(double number) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    if (std::isnan(number)) return 0;
    if (number >= limit) return std::numeric_limits<std::int64_t>::max();
    if (number < -limit) return std::uint64_t{1} << 63;
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(number));
}

FloatingParts SplitFloating(
    Directive const & directive, FormatArgument const & value, char (&room)[FloatingRoom]) {
    double const number = NumberOf(value);
    bool const upper = directive.letter != Lower(directive.letter);
    FloatingParts parts;
    parts.prefix = SignOf(directive, number);
    parts.isFinite = std::isfinite(number);
    if (!parts.isFinite) {
        parts.digits = NameOf(number, upper);
        return parts;
    }
    Writer writer(room);
    int const fraction = WriteDigits(writer, directive, std::fabs(number));
    if (directive.Has(Directive::Alternate)) writer.InsertPoint();
    if (upper) writer.RaiseCase();
    if (Lower(directive.letter) == 'a') parts.prefix = HexadecimalPrefix(parts.prefix, upper);
    Halves const halves = writer.Split();
    parts.digits = halves.mantissa;
    parts.zeros = static_cast<std::size_t>(std::max(fraction - MostDigits, 0));
    parts.exponent = halves.exponent;
    return parts;
}

} // namespace keelbase
