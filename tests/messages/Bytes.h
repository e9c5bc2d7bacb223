// Broadcast records as bytes, laid out by hand as they are published: a record is read from these
// and not from the structures that the code under test reads with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

class Bytes {
public:
    // A record of this type; its size follows what is put in, until SayItHas.
    explicit Bytes(std::uint32_t type) {
        Put(std::uint32_t{0});
        Put(type);
        Put(std::uint32_t{0});
    }

    template <typename Number>
    Bytes & Put(Number value) {
        for (std::size_t i = 0; i != sizeof value; ++i)
            m_Bytes.push_back(
                static_cast<unsigned char>(static_cast<std::uint64_t>(value) >> (8 * i)));
        return ShowSize();
    }

    Bytes & Put(std::string const & text) {
        m_Bytes.insert(m_Bytes.end(), text.begin(), text.end());
        return ShowSize();
    }

    Bytes &
    Guid(std::uint32_t a, std::uint16_t b, std::uint16_t c, std::vector<unsigned char> const & d) {
        Put(a).Put(b).Put(c);
        m_Bytes.insert(m_Bytes.end(), d.begin(), d.end());
        return ShowSize();
    }

    // Leaves out everything from this byte on.
    Bytes & Cut(std::size_t size) {
        m_Bytes.resize(size);
        return ShowSize();
    }

    // The size that the record states, beside what it has.
    Bytes & SayItHas(std::uint32_t size) {
        for (std::size_t i = 0; i != 4; ++i)
            m_Bytes[i] = static_cast<unsigned char>(size >> (8 * i));
        return *this;
    }

    std::size_t Size() const { return m_Bytes.size(); }
    std::vector<unsigned char> const & All() const { return m_Bytes; }
    long long Address() const { return reinterpret_cast<long long>(m_Bytes.data()); }

private:
    Bytes & ShowSize() { return SayItHas(static_cast<std::uint32_t>(m_Bytes.size())); }

    std::vector<unsigned char> m_Bytes;
};

inline Bytes InterfaceRecord(std::string const & name) {
    return Bytes(5)
        .Guid(0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED})
        .Put(name + '\0');
}

inline Bytes VolumeRecord(std::uint32_t mask, std::uint16_t flags) {
    return Bytes(2).Put(mask).Put(flags).Put(std::uint16_t{0});
}

// Everything up to the data, with the handle's and the notification's number.
inline Bytes HandleRecord(std::uint64_t handle, std::uint64_t notification) {
    return Bytes(6)
        .Put(std::uint32_t{0})
        .Put(handle)
        .Put(notification)
        .Guid(0x01234567, 0x89AB, 0xCDEF, {1, 2, 3, 4, 5, 6, 7, 8})
        .Put(std::int32_t{-1});
}
