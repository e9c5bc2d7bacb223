// SHA-256, block by block.
#include "siblings/quillonlog/reports/Sha256.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr std::uint32_t Constants[] = {
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

using Schedule = std::array<std::uint32_t, 64>;

std::uint32_t ReadWord(std::uint8_t const * bytes) {
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16
           | std::uint32_t{bytes[2]} << 8 | bytes[3];
}

Schedule ScheduleOf(std::uint8_t const * block) {
    Schedule w;
    for (std::size_t i = 0; i < 16; ++i)
        w[i] = ReadWord(block + 4 * i);
    for (std::size_t i = 16; i < 64; ++i) {
        std::uint32_t const a = w[i - 15];
        std::uint32_t const b = w[i - 2];
        std::uint32_t const s0 = std::rotr(a, 7) ^ std::rotr(a, 18) ^ a >> 3;
        std::uint32_t const s1 = std::rotr(b, 17) ^ std::rotr(b, 19) ^ b >> 10;
        w[i] = w[i - 16] + s0 + w[i - 7] + s1;
    }
    return w;
}

} // namespace

void Sha256::AddBlock(std::uint8_t const * block) {
    Schedule const w = ScheduleOf(block);
    auto [a, b, c, d, e, f, g, h] = m_State;
    for (std::size_t i = 0; i < 64; ++i) {
        std::uint32_t const s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
        std::uint32_t const t1 = h + s1 + ((e & f) ^ (~e & g)) + Constants[i] + w[i];
        std::uint32_t const s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
        std::uint32_t const t2 = s0 + ((a & b) ^ (a & c) ^ (b & c));
        h = g, g = f, f = e, e = d + t1;
        d = c, c = b, b = a, a = t1 + t2;
    }
    std::uint32_t const added[] = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < m_State.size(); ++i)
        m_State[i] += added[i];
}

void Sha256::Add(std::string_view bytes) {
    m_Size += bytes.size();
    while (!bytes.empty()) {
        std::size_t const taken = std::min(BlockSize - m_RestSize, bytes.size());
        std::memcpy(m_Rest.data() + m_RestSize, bytes.data(), taken);
        m_RestSize += taken;
        bytes.remove_prefix(taken);
        if (m_RestSize < BlockSize) return;
        AddBlock(m_Rest.data());
        m_RestSize = 0;
    }
}

std::string Sha256::Digits() {
    std::uint64_t const bits = m_Size * 8;
    Add(std::string_view("\x80", 1));
    while (m_RestSize != BlockSize - 8)
        Add(std::string_view("\0", 1));
    for (int shift = 56; shift >= 0; shift -= 8)
        m_Rest[m_RestSize++] = static_cast<std::uint8_t>(bits >> shift);
    AddBlock(m_Rest.data());
    std::string digits;
    for (std::uint32_t const word : m_State)
        for (int shift = 28; shift >= 0; shift -= 4)
            digits += "0123456789abcdef"[word >> shift & 0xF];
    return digits;
}
