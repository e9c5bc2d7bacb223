// Small text helpers for findings: joining values and writing numbers in hexadecimal.
#pragma once

#include <cstdint>
#include <iomanip>
#include <sstream>
#include <string>

namespace usb {

template <typename... Parts>
std::string Join(Parts const &... parts) {
    std::ostringstream text;
    (text << ... << parts);
    return text.str();
}

// Hexadecimal with at least `digits` digits: 0x001F.
inline std::string Hex(std::uint64_t value, int digits) {
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << std::setfill('0') << std::setw(digits) << value;
    return text.str();
}

// A vendor or product as people know it: 04f3.
inline std::string Id(std::uint32_t value) {
    std::ostringstream text;
    text << std::hex << std::setfill('0') << std::setw(4) << value;
    return text.str();
}

} // namespace usb
