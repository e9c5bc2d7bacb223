// A device to test rules on: one of the good recordings, with some of its descriptors changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "examples/suites/usb_descriptors/Recording.h"
#include "examples/suites/usb_descriptors/Rules.h"

namespace usb {

// For GoogleTest's messages.
inline void PrintTo(Finding const & finding, std::ostream * out) {
    *out << (finding.severity == Severity::Shall ? "Shall " : "Should ") << ToText(finding);
}

} // namespace usb

using Bytes = std::vector<std::uint8_t>;
using FindingList = std::vector<usb::Finding>;

inline std::filesystem::path RecordingsFolder() { return USB_DESCRIPTORS_RECORDINGS; }

inline Bytes ReadFile(std::filesystem::path const & path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) throw std::runtime_error("cannot open " + path.string());
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

inline Bytes ReadGood(std::string const & name) {
    return ReadFile(RecordingsFolder() / "good" / (name + ".bin"));
}

// What the parser and every group of rules find, in the order in which the suite would tell it.
inline FindingList FindingsIn(Bytes const & bytes) {
    auto parsed = usb::ParseRecording(bytes);
    FindingList all = std::move(parsed.findings);
    if (!parsed.device) return all;
    for (auto const & group : usb::RuleGroups())
        for (auto & finding : group.check(*parsed.device))
            all.push_back(std::move(finding));
    return all;
}

inline FindingList Fail(
    std::string const & rule, std::size_t offset, std::uint32_t value, int width,
    std::string const & text) {
    return {{usb::Severity::Shall, rule, offset, value, width, text}};
}

inline FindingList Warning(
    std::string const & rule, std::size_t offset, std::uint32_t value, int width,
    std::string const & text) {
    return {{usb::Severity::Should, rule, offset, value, width, text}};
}

inline FindingList operator+(FindingList first, FindingList const & second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

class TestDevice {
public:
    explicit TestDevice(std::string const & good) {
        Bytes const bytes = ReadGood(good);
        for (std::size_t at = 0; at < bytes.size(); at += bytes[at])
            m_Descriptors.emplace_back(bytes.begin() + At(at), bytes.begin() + At(at + bytes[at]));
    }

    // Sets a field of the descriptor of this type that comes `occurrence` others after the first.
    TestDevice &
    Set(usb::DescriptorType type, std::size_t occurrence, usb::Field const & field,
        std::uint32_t value) {
        auto & descriptor = m_Descriptors[Find(type, occurrence)];
        for (int i = 0; i < field.width; ++i, value >>= 8)
            descriptor.at(field.at + static_cast<std::size_t>(i)) =
                static_cast<std::uint8_t>(value);
        return *this;
    }

    TestDevice & Remove(usb::DescriptorType type, std::size_t occurrence) {
        m_Descriptors.erase(m_Descriptors.begin() + At(Find(type, occurrence)));
        return Total();
    }

    TestDevice &
    InsertBehind(usb::DescriptorType type, std::size_t occurrence, Bytes const & bytes) {
        m_Descriptors.insert(m_Descriptors.begin() + At(Find(type, occurrence) + 1), bytes);
        return Total();
    }

    TestDevice & Replace(usb::DescriptorType type, std::size_t occurrence, Bytes const & bytes) {
        m_Descriptors[Find(type, occurrence)] = bytes;
        return Total();
    }

    // Appends a descriptor and makes the total lengths right.
    TestDevice & Append(Bytes const & bytes) {
        m_Descriptors.push_back(bytes);
        return Total();
    }

    Bytes Recording() const {
        Bytes all;
        for (auto const & each : m_Descriptors)
            all.insert(all.end(), each.begin(), each.end());
        return all;
    }

private:
    static std::ptrdiff_t At(std::size_t index) { return static_cast<std::ptrdiff_t>(index); }

    std::size_t Find(usb::DescriptorType type, std::size_t occurrence) const {
        for (std::size_t i = 0; i < m_Descriptors.size(); ++i)
            if (m_Descriptors[i].at(1) == static_cast<std::uint8_t>(type) && occurrence-- == 0)
                return i;
        throw std::runtime_error("no such descriptor in the recording");
    }

    // wTotalLength of every configuration and of the BOS descriptor.
    TestDevice & Total() {
        std::size_t length = 0;
        for (auto each = m_Descriptors.rbegin(); each != m_Descriptors.rend(); ++each) {
            length += each->size();
            auto const type = static_cast<usb::DescriptorType>(each->at(1));
            if (type != usb::DescriptorType::Configuration
                && type != usb::DescriptorType::ObjectStore)
                continue;
            each->at(2) = static_cast<std::uint8_t>(length);
            each->at(3) = static_cast<std::uint8_t>(length >> 8);
            length = 0;
        }
        return *this;
    }

    std::vector<Bytes> m_Descriptors;
};

inline FindingList FindingsIn(TestDevice const & device) { return FindingsIn(device.Recording()); }
