// The test helper's static utilities: memory, byte dumps and UUIDs as text.
//
// A dump of the usual kind repeats a unit of fixed length for each byte: some plain text with two
// hexadecimal digits in it. Such a format is recognised once and the units are written straight
// into the result; every other format goes through FormatText byte by byte.
#include "log/QNHelper.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "platform/BaseTypes.h"
#include "siblings/Keelbase.h"

namespace {

using DigitTable = std::array<char, 512>;

constexpr DigitTable MakeDigits(char const * digits) {
    DigitTable table{};
    for (std::size_t value = 0; value != 256; ++value) {
        table[2 * value] = digits[value / 16];
        table[2 * value + 1] = digits[value % 16];
    }
    return table;
}

constexpr DigitTable LowerDigits = MakeDigits("0123456789abcdef");
constexpr DigitTable UpperDigits = MakeDigits("0123456789ABCDEF");

constexpr std::string_view LowerDirective = "%02x";
constexpr std::string_view UpperDirective = "%02X";

// What is written for one byte: the text, with the digits in the place of the two behind
// `digitsAt`.
struct Unit {
    std::string_view text;
    std::size_t digitsAt;
    char const * digits;

    // The unit without what stands in front of `count` characters.
    Unit Behind(std::size_t count) const { return {text.substr(count), digitsAt - count, digits}; }
};

// Units of up to so many characters are written at this length and overlap the next.
constexpr std::size_t Stride = 8;

template <std::size_t Fixed>
char * WriteUnits(char * to, Unit const & unit, unsigned char const * bytes, std::size_t count) {
    std::size_t const size = Fixed != 0 ? Fixed : unit.text.size();
    char text[Stride] = {};
    if constexpr (Fixed != 0) std::memcpy(text, unit.text.data(), Fixed);
    for (; count != 0; --count, ++bytes, to += size) {
        if constexpr (Fixed != 0)
            std::memcpy(to, text, Stride);
        else
            std::memcpy(to, unit.text.data(), size);
        std::memcpy(to + unit.digitsAt, unit.digits + std::size_t{2} * *bytes, 2);
    }
    return to;
}

char * WriteAll(char * to, Unit const & unit, unsigned char const * bytes, std::size_t count) {
    switch (unit.text.size()) {
    case 2:
        return WriteUnits<2>(to, unit, bytes, count);
    case 3:
        return WriteUnits<3>(to, unit, bytes, count);
    case 6:
        return WriteUnits<6>(to, unit, bytes, count);
    default:
        return WriteUnits<0>(to, unit, bytes, count);
    }
}

void AppendUnits(
    std::string & out, Unit const & unit, std::size_t separator, unsigned char const * bytes,
    std::size_t count) {
    std::size_t const skipped = out.empty() ? separator : 0;
    std::size_t const begin = out.size();
    std::size_t const end = begin + unit.text.size() * count - skipped;
    out.resize(end + Stride);
    char * const to = WriteAll(out.data() + begin, unit.Behind(skipped), bytes, 1);
    WriteAll(to, unit, bytes + 1, count - 1);
    out.resize(end);
}

// No value: the format is not of the usual kind. `joined` becomes the text of the unit.
std::optional<Unit> RecogniseUnit(std::string & joined, std::size_t separator) {
    std::size_t const at = joined.find('%');
    if (at == std::string::npos || at < separator) return std::nullopt;
    std::string_view const directive = std::string_view(joined).substr(at, LowerDirective.size());
    bool const isLower = directive == LowerDirective;
    if (!isLower && directive != UpperDirective) return std::nullopt;
    if (joined.find('%', at + 1) != std::string::npos) return std::nullopt;
    joined.erase(at, LowerDirective.size() - 2);
    return Unit{joined, at, (isLower ? LowerDigits : UpperDigits).data()};
}

void AppendFormatted(
    std::string & out, char const * plain, char const * joined, unsigned char const * bytes,
    std::size_t count) {
    for (; count != 0; --count, ++bytes)
        out += FormatText(
            nullptr, nullptr, FormatPadding{0, 0}, out.empty() ? plain : joined,
            static_cast<unsigned int>(*bytes));
}

} // namespace

void * QNHelper::AllocateMemory(std::size_t size) {
    return CMemWrapper::AllocateMemory(size, true);
}

void QNHelper::ReleaseMemory(void * memory) { CMemWrapper::ReleaseMemory(memory); }

void QNHelper::BytesToString(std::string & out, void const * bytes, std::size_t size, bool append) {
    BytesToString(out, bytes, size, nullptr, nullptr, append);
}

void QNHelper::BytesToCode(std::string & out, void const * bytes, std::size_t size, bool append) {
    BytesToString(out, bytes, size, "0x%02X", ", ", append);
}

void QNHelper::BytesToString(
    std::string & out, void const * bytes, std::size_t size, char const * format,
    char const * separator, bool append) {
    if (!append) out.clear();
    if (bytes == nullptr || size == 0) return;
    if (format == nullptr) format = "%02x";
    if (separator == nullptr) separator = " ";
    auto const * const first = static_cast<unsigned char const *>(bytes);
    std::string joined = separator;
    std::size_t const separatorSize = joined.size();
    joined += format;
    if (auto const unit = RecogniseUnit(joined, separatorSize))
        AppendUnits(out, *unit, separatorSize, first, size);
    else
        AppendFormatted(out, format, joined.c_str(), first, size);
}

void QNHelper::GetUUIDDisplayString(_GUID const & id, char * out) {
    auto const & last = id.Data4;
    std::size_t size = 0;
    char const * const text = FormatText(
        &size, nullptr, FormatPadding{0, 0},
        "{%08lX-%04hX-%04hX-%02hhX%02hhX-%02hhX%02hhX%02hhX%02hhX%02hhX%02hhX}", id.Data1, id.Data2,
        id.Data3, last[0], last[1], last[2], last[3], last[4], last[5], last[6], last[7]);
    std::memcpy(out, text, size);
}
