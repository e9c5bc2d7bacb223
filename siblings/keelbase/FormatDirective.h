// One directive of a format: its flags, width, precision and length word, and the values behind
// the format in their order.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>

#include "siblings/Keelbase.h"

namespace keelbase {

// The bound of what a directive may ask for in filling characters, so that a text which was never
// meant as a format cannot ask for all memory.
inline constexpr int MostFill = 1'000'000;

// How many of a number's bits a directive writes; and, by the same words, the form of a text.
enum class LengthWord : std::uint8_t { None, Char, Short, Long, Wide, LongLong };

struct Directive {
    static constexpr unsigned Left = 1;
    static constexpr unsigned Plus = 2;
    static constexpr unsigned Blank = 4;
    static constexpr unsigned Alternate = 8;
    static constexpr unsigned Zeros = 16;

    bool Has(unsigned flag) const { return (flags & flag) != 0; }

    // The flags 0 and - together pad as - alone.
    bool PadsWithZeros() const { return (flags & (Zeros | Left)) == Zeros; }

    unsigned flags = 0;
    int width = 0;
    int precision = -1; // below 0: none
    LengthWord length = LengthWord::None;
    char letter = 0; // 0: the directive ends in no conversion letter
};

inline bool IsPointer(FormatArgument const & value) {
    return value.GetKind() >= FormatArgument::Kind::Narrow;
}

// The whole part of a floating value, held at the ends of the range; 0 for what is no number.
std::uint64_t WholePart(double number);

// A value as the integer that a directive sees: a pointer is its address.
inline std::uint64_t IntegerOf(FormatArgument const & value) {
    if (IsPointer(value)) return reinterpret_cast<std::uintptr_t>(value.GetPointer());
    if (value.GetKind() == FormatArgument::Kind::Floating) return WholePart(value.GetFloating());
    return value.GetNumber();
}

class ValueList {
public:
    ValueList(FormatArgument const * values, std::size_t count)
        : m_Next(values), m_End(values + count) {}

    // The next value, null when none is left.
    FormatArgument const * Take() { return m_Next != m_End ? m_Next++ : nullptr; }

    // The next value as a width or a precision, 0 when none is left.
    int TakeCount() {
        FormatArgument const * const value = Take();
        return value != nullptr ? static_cast<std::int32_t>(IntegerOf(*value)) : 0;
    }

private:
    FormatArgument const * m_Next;
    FormatArgument const * m_End;
};

// Reads one directive from behind its percent sign into a new one.
template <typename Character>
class DirectiveReader {
public:
    DirectiveReader(Character const * at, ValueList & values, Directive & directive)
        : m_At(at), m_Values(values), m_Directive(directive) {}

    // Returns what follows the directive.
    Character const * Read() {
        // Flags, digits, the star and the point all come before the letters.
        if (*m_At <= '9') {
            while (ReadFlag()) {
            }
            ReadWidth();
            ReadPrecision();
        }
        while (!ReadLetter() && ReadLengthWord()) {
        }
        return m_At;
    }

private:
    bool ReadFlag() {
        switch (*m_At) {
        case '-':
            m_Directive.flags |= Directive::Left;
            break;
        case '+':
            m_Directive.flags |= Directive::Plus;
            break;
        case ' ':
            m_Directive.flags |= Directive::Blank;
            break;
        case '#':
            m_Directive.flags |= Directive::Alternate;
            break;
        case '0':
            m_Directive.flags |= Directive::Zeros;
            break;
        default:
            return false;
        }
        ++m_At;
        return true;
    }

    void ReadWidth() {
        std::int64_t width = ReadCount();
        if (width < 0) {
            m_Directive.flags |= Directive::Left;
            width = -width;
        }
        m_Directive.width = static_cast<int>(std::min<std::int64_t>(width, MostFill));
    }

    void ReadPrecision() {
        if (*m_At != '.') return;
        ++m_At;
        m_Directive.precision = ReadCount();
    }

    int ReadCount() {
        if (*m_At == '*') {
            ++m_At;
            return m_Values.TakeCount();
        }
        int number = 0;
        for (; *m_At >= '0' && *m_At <= '9'; ++m_At) {
            int const digit = static_cast<int>(*m_At - '0');
            number = number > (INT_MAX - digit) / 10 ? INT_MAX : number * 10 + digit;
        }
        return number;
    }

    // A word may stand behind another; the last one counts.
    bool ReadLengthWord() {
        LengthWord const before = m_Directive.length;
        switch (*m_At) {
        case 'h':
            m_Directive.length = before == LengthWord::Short ? LengthWord::Char : LengthWord::Short;
            break;
        case 'l':
            m_Directive.length =
                before == LengthWord::Long ? LengthWord::LongLong : LengthWord::Long;
            break;
        case 'w':
            m_Directive.length = LengthWord::Wide;
            break;
        case 'j':
        case 'z':
        case 't':
        case 'L':
            m_Directive.length = LengthWord::LongLong;
            break;
        case 'I':
            ReadSizedWord();
            break;
        default:
            return false;
        }
        ++m_At;
        return true;
    }

    // I32, I64, and I alone, which has the width of a pointer. Stops at the word's last character.
    void ReadSizedWord() {
        bool const narrow = m_At[1] == '3' && m_At[2] == '2';
        bool const sized = narrow || (m_At[1] == '6' && m_At[2] == '4');
        m_Directive.length = narrow ? LengthWord::Long : LengthWord::LongLong;
        if (sized) m_At += 2;
    }

    bool ReadLetter() {
        switch (*m_At) {
        case 'd':
        case 'i':
        case 'u':
        case 'o':
        case 'x':
        case 'X':
        case 'a':
        case 'A':
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'c':
        case 'C':
        case 's':
        case 'S':
        case 'p':
        case 'n':
            m_Directive.letter = static_cast<char>(*m_At++);
            return true;
        default:
            return false;
        }
    }

    Character const * m_At;
    ValueList & m_Values;
    Directive & m_Directive;
};

} // namespace keelbase
