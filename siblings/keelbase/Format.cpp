// FormatValues: a text from a format and its values, in one pass.
#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include "siblings/Keelbase.h"
#include "siblings/keelbase/FormatBuffer.h"
#include "siblings/keelbase/FormatDirective.h"
#include "siblings/keelbase/FormatFloating.h"
#include "siblings/keelbase/FormatInteger.h"
#include "siblings/keelbase/FormatOutput.h"
#include "siblings/keelbase/Unicode.h"

std::uint32_t m_IndentLevel = 0;

namespace keelbase {
namespace {

// The characters of a text, none looked at beyond the precision.
template <typename Character>
std::size_t LengthWithin(Character const * text, int precision) {
    if (precision < 0) return std::char_traits<Character>::length(text);
    auto const most = static_cast<std::size_t>(precision);
    std::size_t length = 0;
    while (length < most && text[length] != 0)
        ++length;
    return length;
}

// These runs are too short for a call of the C library.
template <typename Character>
Character * Fill(Character * at, char character, std::size_t count) {
    for (; count != 0; --count)
        *at++ = static_cast<Character>(character);
    return at;
}

template <typename Character>
Character * Copy(Character * at, std::string_view text) {
    for (char const character : text)
        *at++ = static_cast<Character>(character);
    return at;
}

// Copies up to the first percent sign, and moves `from` there or to the end. There is room for all
// that is left.
template <typename Character>
Character * CopyLiteral(Character * at, Character const *& from, Character const * end) {
    while (from != end && *from != '%')
        *at++ = *from++;
    return at;
}

// The same by blocks of eight characters, each of them written whole.
char * CopyLiteral(char * at, char const *& from, char const * end) {
    if constexpr (std::endian::native == std::endian::little) {
        while (end - from >= 8) {
            std::uint64_t block;
            std::memcpy(&block, from, 8);
            std::memcpy(at, &block, 8);
            // The lowest marked byte is the first that is a percent sign.
            std::uint64_t const other = block ^ 0x2525252525252525u;
            std::uint64_t const marks =
                (other - 0x0101010101010101u) & ~other & 0x8080808080808080u;
            int const count = std::countr_zero(marks) / 8;
            from += count;
            at += count;
            if (marks != 0) return at;
        }
    }
    return CopyLiteral<char>(at, from, end);
}

// Every writer takes the place where it is to write and returns the one behind what it wrote.
template <typename Character>
class Formatter {
public:
    Formatter(FormatOutput<Character> & output, FormatArgument const * values, std::size_t count)
        : m_Output(output), m_Values(values, count) {}

    Character * Format(Character * at, Character const * format) {
        Character const * const end = format + std::char_traits<Character>::length(format);
        for (;;) {
            at = m_Output.Room(at, static_cast<std::size_t>(end - format));
            at = CopyLiteral(at, format, end);
            if (format == end) return at;
            ++format;
            if (*format == '%') {
                *at++ = *format++;
            } else {
                Directive directive;
                format = DirectiveReader<Character>(format, m_Values, directive).Read();
                at = Write(at, directive);
            }
        }
    }

private:
    static constexpr bool IsWide = sizeof(Character) == sizeof(wchar_t);

    Character * Write(Character * at, Directive & directive) {
        if (directive.letter == 0) return at;
        FormatArgument const * const value = m_Values.Take();
        if (value == nullptr) return at;
        switch (directive.letter) {
        case 'n':
            return at;
        case 's':
        case 'S':
            return WriteText(at, directive, *value);
        case 'c':
        case 'C':
            return WriteCharacter(at, directive, *value);
        case 'd':
        case 'i':
            return WriteSigned(at, directive, *value);
        case 'u':
            return WriteInteger<Decimal>(
                at, directive, UnsignedOf(directive, *value), IntegerPrefix());
        case 'o':
            return WriteOctal(at, directive, UnsignedOf(directive, *value));
        case 'x':
            return WriteHexadecimal<LowerHexadecimal>(
                at, directive, UnsignedOf(directive, *value), 'x');
        case 'X':
            return WriteHexadecimal<UpperHexadecimal>(
                at, directive, UnsignedOf(directive, *value), 'X');
        case 'p':
            directive.precision = AddressDigits;
            return WriteHexadecimal<UpperHexadecimal>(at, directive, IntegerOf(*value), 'X');
        default:
            return WriteFloating(at, directive, *value);
        }
    }

    static std::size_t MissingWidth(Directive const & directive, std::size_t length) {
        auto const width = static_cast<std::size_t>(directive.width);
        return width > length ? width - length : 0;
    }

    Character *
    WriteSigned(Character * at, Directive const & directive, FormatArgument const & value) {
        std::int64_t const number = SignedOf(directive, value);
        auto const magnitude = static_cast<std::uint64_t>(number);
        return WriteInteger<Decimal>(
            at, directive, number < 0 ? 0 - magnitude : magnitude, SignOf(directive, number));
    }

    template <typename Radix>
    Character *
    WriteHexadecimal(Character * at, Directive const & directive, std::uint64_t number, char mark) {
        return WriteInteger<Radix>(at, directive, number, BaseOf(directive, number, mark));
    }

    // The alternate form begins with a zero in any case.
    Character * WriteOctal(Character * at, Directive const & directive, std::uint64_t number) {
        IntegerPrefix prefix;
        if (directive.Has(Directive::Alternate) && WantedDigits(directive) <= Octal::Count(number))
            prefix.Add('0');
        return WriteInteger<Octal>(at, directive, number, prefix);
    }

    template <typename Radix>
    Character * WriteInteger(
        Character * at, Directive const & directive, std::uint64_t number,
        IntegerPrefix const & prefix) {
        unsigned const digits = Radix::Count(number);
        unsigned const wanted = WantedDigits(directive);
        unsigned const zeros = wanted > digits ? wanted - digits : 0;
        std::size_t const length = prefix.Length() + zeros + digits;
        std::size_t const fill = MissingWidth(directive, length);
        bool const left = directive.Has(Directive::Left);
        bool const padsWithZeros = directive.PadsWithZeros() && directive.precision < 0;
        at = m_Output.Room(at, length + fill);
        if (!left && !padsWithZeros) at = Fill(at, ' ', fill);
        at = prefix.Write(at);
        at = Fill(at, '0', zeros + (padsWithZeros ? fill : 0)) + digits;
        Radix::Write(number, at);
        return left ? Fill(at, ' ', fill) : at;
    }

    Character *
    WriteFloating(Character * at, Directive const & directive, FormatArgument const & value) {
        char room[FloatingRoom];
        FloatingParts const parts = SplitFloating(directive, value, room);
        std::size_t const length = parts.Length();
        std::size_t const fill = MissingWidth(directive, length);
        bool const left = directive.Has(Directive::Left);
        bool const zeros = directive.PadsWithZeros() && parts.isFinite;
        at = m_Output.Room(at, length + fill);
        if (!left && !zeros) at = Fill(at, ' ', fill);
        at = Copy(at, parts.prefix);
        if (zeros) at = Fill(at, '0', fill);
        at = Copy(at, parts.digits);
        at = Fill(at, '0', parts.zeros);
        at = Copy(at, parts.exponent);
        return left ? Fill(at, ' ', fill) : at;
    }

    // The form that the directive names for what does not tell its own: the format's own form, or
    // with a capital letter the other one; a length word goes before both.
    static bool NamesWide(Directive const & directive) {
        switch (directive.length) {
        case LengthWord::Char:
        case LengthWord::Short:
            return false;
        case LengthWord::Long:
        case LengthWord::Wide:
            return true;
        default:
            return IsWide == (directive.letter == 's' || directive.letter == 'c');
        }
    }

    Character *
    WriteText(Character * at, Directive const & directive, FormatArgument const & value) {
        using Kind = FormatArgument::Kind;
        Kind const kind = value.GetKind();
        bool const isText = kind == Kind::Narrow || kind == Kind::Wide || kind == Kind::Pointer;
        void const * const text = isText ? value.GetPointer() : nullptr;
        if (text == nullptr) return WriteWhole(at, directive, "(null)");
        if (kind == Kind::Wide || (kind == Kind::Pointer && NamesWide(directive)))
            return WriteWhole(at, directive, static_cast<wchar_t const *>(text));
        return WriteWhole(at, directive, static_cast<char const *>(text));
    }

    template <typename Source>
    Character * WriteWhole(Character * at, Directive const & directive, Source const * text) {
        return WriteSome(at, directive, text, LengthWithin(text, directive.precision));
    }

    template <typename Source>
    Character *
    WriteSome(Character * at, Directive const & directive, Source const * text, std::size_t count) {
        constexpr bool same = std::is_same_v<Source, Character>;
        constexpr std::size_t each = same || IsWide ? 1 : MaxBytesOfWide;
        at = m_Output.Room(at, count * each + static_cast<std::size_t>(directive.width));
        if constexpr (same)
            return Justify(at, std::copy_n(text, count, at), directive);
        else if constexpr (IsWide)
            return Justify(at, at + WideFromUtf8(text, count, at), directive);
        else
            return Justify(at, at + Utf8FromWide(text, count, at), directive);
    }

    // The width of converted text is known only when it stands, so that what comes in front of it
    // is put in last.
    static Character * Justify(Character * start, Character * end, Directive const & directive) {
        std::size_t const fill = MissingWidth(directive, static_cast<std::size_t>(end - start));
        if (fill == 0) return end;
        bool const left = directive.Has(Directive::Left);
        if (!left) std::copy_backward(start, end, end + fill);
        Fill(left ? end : start, directive.PadsWithZeros() ? '0' : ' ', fill);
        return end + fill;
    }

    // A byte alone is a character of UTF-8 only below 0x80.
    Character *
    WriteCharacter(Character * at, Directive const & directive, FormatArgument const & value) {
        std::uint64_t const number = IntegerOf(value);
        bool const wide = value.GetKind() == FormatArgument::Kind::WideCharacter
                          || (value.GetBytes() != 1 && NamesWide(directive));
        Character text[MaxBytesOfCodePoint];
        Character * end = text;
        if (wide)
            end = PutCodePoint(static_cast<char32_t>(number), text);
        else if (auto const byte = static_cast<unsigned char>(number); !IsWide || byte < 0x80)
            *end++ = static_cast<Character>(byte);
        else
            end = PutCodePoint(U'\uFFFD', text);
        return WriteSome(at, directive, text, static_cast<std::size_t>(end - text));
    }

    FormatOutput<Character> & m_Output;
    ValueList m_Values;
};

// True when some value or the format lies in the buffer, where writing would spoil it.
bool IsInUse(
    FormatBuffer const & buffer, void const * format, FormatArgument const * values,
    std::size_t count) {
    auto const inside = [&](void const * pointer) {
        auto const begin = reinterpret_cast<std::uintptr_t>(buffer.data);
        return reinterpret_cast<std::uintptr_t>(pointer) - begin < buffer.size;
    };
    for (std::size_t i = 0; i != count; ++i)
        if (IsPointer(values[i]) && inside(values[i].GetPointer())) return true;
    return inside(format);
}

template <typename Character>
struct Request {
    std::size_t * length;
    CSimpleBuffer * buffer;
    FormatPadding const & padding;
    Character const * format;
    FormatArgument const * values;
    std::size_t count;
};

template <typename Character>
Character * Write(FormatOutput<Character> & output, Request<Character> const & request) {
    if (request.format == nullptr) return output.Begin();
    Formatter<Character> formatter(output, request.values, request.count);
    return formatter.Format(output.Begin(), request.format);
}

template <typename Character>
Character *
Deliver(Character const * text, std::size_t length, Request<Character> const & request) {
    FormatPadding const & padding = request.padding;
    std::size_t const size = padding.count + length + 1;
    std::size_t const bytes = size * sizeof(Character);
    auto * const destination = static_cast<Character *>(
        request.buffer != nullptr ? request.buffer->Get(bytes) : GetFormatBuffer(bytes));
    Character * const behind =
        std::fill_n(destination, padding.count, static_cast<Character>(padding.fill));
    *std::copy_n(text, length, behind) = 0;
    if (request.length != nullptr) *request.length = size;
    return destination;
}

// Formats elsewhere and copies the text when it is whole, so that a value may lie in the
// destination.
template <typename Character>
Character * FormatAside(Request<Character> const & request) {
    Character memory[1024 / sizeof(Character)];
    FormatOutput<Character> output(memory, std::size(memory));
    Character const * const end = Write(output, request);
    return Deliver(output.Begin(), static_cast<std::size_t>(end - output.Begin()), request);
}

// Formats straight into the thread's buffer. A text that does not fit makes the buffer grow.
template <typename Character>
Character * FormatInPlace(FormatBuffer const & own, Request<Character> const & request) {
    auto * const memory = static_cast<Character *>(own.data);
    FormatOutput<Character> output(memory, own.size / sizeof(Character) - 1);
    Character * const end = Write(output, request);
    auto const length = static_cast<std::size_t>(end - output.Begin());
    if (!output.Fits()) return Deliver(output.Begin(), length, request);
    *end = 0;
    if (request.length != nullptr) *request.length = length + 1;
    return memory;
}

template <typename Character>
Character * Format(Request<Character> const & request) {
    if (request.buffer != nullptr || request.padding.count != 0) return FormatAside(request);
    FormatBuffer const own = CurrentFormatBuffer();
    if (own.size == 0 || IsInUse(own, request.format, request.values, request.count))
        return FormatAside(request);
    return FormatInPlace(own, request);
}

} // namespace
} // namespace keelbase

char * FormatValues(
    std::size_t * length, CSimpleBuffer * buffer, FormatPadding const & padding,
    char const * format, FormatArgument const * values, std::size_t count) {
    return keelbase::Format<char>({length, buffer, padding, format, values, count});
}

wchar_t * FormatValues(
    std::size_t * length, CSimpleBuffer * buffer, FormatPadding const & padding,
    wchar_t const * format, FormatArgument const * values, std::size_t count) {
    return keelbase::Format<wchar_t>({length, buffer, padding, format, values, count});
}
