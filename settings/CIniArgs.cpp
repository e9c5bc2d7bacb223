// The argument store: case-blind lookup, and values read as numbers and words on demand.
#include "settings/CIniArgs.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

#include "settings/Registry.h"

namespace {

// ASCII only, so that a name means the same in every locale and on every platform.
template <typename Character>
constexpr Character Lower(Character character) {
    bool const upper = character >= Character{'A'} && character <= Character{'Z'};
    return upper ? static_cast<Character>(character | 0x20) : character;
}

template <typename Character>
void LowerAll(Character * text) {
    if (text == nullptr) return;
    for (; *text != 0; ++text)
        *text = Lower(*text);
}

// Eight characters at once. The sums carry into a byte's top bit from 'A' on, or beyond 'Z'.
std::uint64_t LowerEight(std::uint64_t eight) {
    constexpr std::uint64_t each = 0x0101010101010101;
    std::uint64_t const ascii = eight & (each * 0x7F);
    std::uint64_t const fromA = ascii + each * (0x80 - 'A');
    std::uint64_t const beyondZ = ascii + each * (0x7F - 'Z');
    std::uint64_t const upper = (fromA ^ beyondZ) & ~eight & (each * 0x80);
    return eight | (upper >> 2);
}

// Every lookup lowers two names: this is most of what it costs.
void LowerName(std::string & text) {
    constexpr std::size_t step = sizeof(std::uint64_t);
    std::size_t done = 0;
    for (; text.size() - done >= step; done += step) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, text.data() + done, step);
        eight = LowerEight(eight);
        std::memcpy(text.data() + done, &eight, step);
    }
    for (; done != text.size(); ++done)
        text[done] = Lower(text[done]);
}

std::string Lowered(std::string const & text) {
    std::string lowered(text);
    LowerName(lowered);
    return lowered;
}

constexpr bool IsBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

// A number as it stands in a text: its size without the sign, held at the limit of 64 bits.
struct Scanned {
    std::uint64_t size = 0;
    bool overflow = false;
    bool negative = false;
};

std::optional<Scanned> ScanDigits(std::string_view text, int base, bool negative = false) {
    Scanned scanned;
    auto const end = std::from_chars(text.data(), text.data() + text.size(), scanned.size, base);
    if (end.ec == std::errc::invalid_argument) return std::nullopt;
    scanned.overflow = end.ec == std::errc::result_out_of_range;
    if (scanned.overflow) scanned.size = std::numeric_limits<std::uint64_t>::max();
    scanned.negative = negative;
    return scanned;
}

// Leading blanks, a sign, digits; nothing when there are no digits.
std::optional<Scanned> ScanDecimal(std::string_view text) {
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    bool const negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    return ScanDigits(text, 10, negative);
}

std::uint64_t WithSign(std::uint64_t size, bool negative) { return negative ? 0 - size : size; }

// Held at the limits of a signed number.
std::uint64_t SignedBits(Scanned const & scanned) {
    constexpr std::uint64_t highest = std::numeric_limits<std::int64_t>::max();
    std::uint64_t const limit = scanned.negative ? highest + 1 : highest;
    return WithSign(std::min(scanned.size, limit), scanned.negative);
}

std::uint64_t UnsignedBits(Scanned const & scanned) {
    return scanned.overflow ? scanned.size : WithSign(scanned.size, scanned.negative);
}

std::optional<std::uint64_t> ReadUnsignedDecimal(std::string_view text) {
    auto const scanned = ScanDecimal(text);
    return scanned ? std::optional(UnsignedBits(*scanned)) : std::nullopt;
}

std::optional<std::uint64_t> ReadByPrefix(std::string_view text) {
    if (!text.starts_with('0')) {
        auto const scanned = ScanDecimal(text);
        return scanned ? std::optional(SignedBits(*scanned)) : std::nullopt;
    }
    bool const hexadecimal = text.size() > 1 && Lower(text[1]) == 'x';
    auto const scanned = hexadecimal ? ScanDigits(text.substr(2), 16) : ScanDigits(text, 8);
    return scanned ? std::optional(UnsignedBits(*scanned)) : std::nullopt;
}

std::optional<bool> ReadWord(std::string_view text) {
    // The empty text: a key that is there without a value reads as set.
    for (std::string_view const word : {"yes", "true", "y", "t", ""})
        if (text == word) return true;
    for (std::string_view const word : {"no", "false", "n", "f"})
        if (text == word) return false;
    return std::nullopt;
}

std::optional<bool> ReadBool(std::string_view text) {
    if (auto const number = ReadUnsignedDecimal(text)) return *number != 0;
    // Deliberate: the text is not lowered, so that a word in capitals is none.
    // Pinned by CIniArgsTest.UpperCaseWordIsUnreadable.
    return ReadWord(text);
}

template <typename Value, typename Read>
bool Store(std::optional<Read> const & read, Value & out) {
    if (read) out = static_cast<Value>(*read);
    return read.has_value();
}

} // namespace

CIniArgs::CIniArgs() = default;
CIniArgs::CIniArgs(CIniArgs const &) = default;
CIniArgs & CIniArgs::operator=(CIniArgs const &) = default;
CIniArgs::~CIniArgs() = default;

void CIniArgs::toLower(std::string & text) { LowerName(text); }
void CIniArgs::toLower(char * text) { LowerAll(text); }

void CIniArgs::toLower(std::wstring & text) {
    for (wchar_t & character : text)
        character = Lower(character);
}

void CIniArgs::toLower(wchar_t * text) { LowerAll(text); }

void CIniArgs::AddArg(
    std::string const & section, std::string const & key, std::string const & value) {
    m_Sections[Lowered(section)][Lowered(key)] = value;
}

void CIniArgs::AddCmdLineArg(std::string const & key, std::string const & value) {
    m_CmdLineArgs[Lowered(key)] = value;
}

bool CIniArgs::ReloadRegistry() {
    constexpr char name[] = "CertificationMode";
    std::string key;
    GetQNKey(key);
    unsigned long mode = 0;
    if (!TS_GetRegistryDword(HKEY_LOCAL_MACHINE, key.c_str(), name, &mode)) return false;
    AddArg("Quillon", name, mode != 0 ? "1" : "0");
    return true;
}

std::string * CIniArgs::Find(std::string const & section, std::string const & key) {
    auto const values = m_Sections.find(Lowered(section));
    if (values == m_Sections.end()) return nullptr;
    auto const value = values->second.find(Lowered(key));
    return value != values->second.end() ? &value->second : nullptr;
}

bool CIniArgs::GetCmdLineArg(std::string const & key, std::string *& out) {
    auto const value = m_CmdLineArgs.find(Lowered(key));
    out = value != m_CmdLineArgs.end() ? &value->second : nullptr;
    return out != nullptr;
}

bool CIniArgs::GetCmdLineArg(
    std::string const & section, std::string const & key, std::string *& out) {
    return GetCmdLineArg(key, out) || GetArg(section, key, out);
}

bool CIniArgs::GetArg(std::string const & section, std::string const & key, std::string *& out) {
    out = Find(section, key);
    return out != nullptr;
}

bool CIniArgs::GetArg(std::string const & section, std::string const & key, long long & out) {
    return GetLowBits(section, key, out);
}

bool CIniArgs::GetArg(
    std::string const & section, std::string const & key, unsigned long long & out) {
    // Deliberate: no prefix rule. Pinned by CIniArgsTest.UnsignedReadIsDecimalOnly.
    std::string const * const value = Find(section, key);
    return value != nullptr && Store(ReadUnsignedDecimal(*value), out);
}

bool CIniArgs::GetArg(std::string const & section, std::string const & key, bool & out) {
    std::string const * const value = Find(section, key);
    return value != nullptr && Store(ReadBool(*value), out);
}

template <typename Number>
bool CIniArgs::GetLowBits(std::string const & section, std::string const & key, Number & out) {
    std::string const * const value = Find(section, key);
    return value != nullptr && Store(ReadByPrefix(*value), out);
}

// Deliberate: cut without a range test. Pinned by CIniArgsTest.NarrowReadsTakeTheLowBits.
bool CIniArgs::GetArg(std::string const & section, std::string const & key, int & out) {
    return GetLowBits(section, key, out);
}

bool CIniArgs::GetArg(std::string const & section, std::string const & key, unsigned int & out) {
    return GetLowBits(section, key, out);
}

bool CIniArgs::GetArg(std::string const & section, std::string const & key, short & out) {
    return GetLowBits(section, key, out);
}

bool CIniArgs::GetArg(std::string const & section, std::string const & key, unsigned short & out) {
    return GetLowBits(section, key, out);
}

bool CIniArgs::GetArg(std::string const & section, std::string const & key, signed char & out) {
    return GetLowBits(section, key, out);
}

bool CIniArgs::GetArg(std::string const & section, std::string const & key, unsigned char & out) {
    return GetLowBits(section, key, out);
}
