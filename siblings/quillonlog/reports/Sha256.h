// The digest SHA-256 of FIPS 180-4.
//
// For one thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class Sha256 {
public:
    void Add(std::string_view bytes);

    // The digest of all that was added, as 64 hexadecimal digits; nothing may be added after it.
    std::string Digits();

private:
    static constexpr std::size_t BlockSize = 64;

    void AddBlock(std::uint8_t const * block);

    std::array<std::uint32_t, 8> m_State = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                                            0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};
    std::array<std::uint8_t, BlockSize> m_Rest{};
    std::size_t m_RestSize = 0;
    std::uint64_t m_Size = 0;
};
