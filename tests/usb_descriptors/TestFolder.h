// A folder for one test, gone when the test is done.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "tests/usb_descriptors/TestDevice.h"

class TestFolder {
public:
    TestFolder() {
        std::random_device random;
        m_Path = std::filesystem::temp_directory_path()
                 / ("usb_descriptors-" + std::to_string(random()) + std::to_string(random()));
        std::filesystem::create_directories(m_Path);
    }
    ~TestFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }
    TestFolder(TestFolder const &) = delete;
    TestFolder & operator=(TestFolder const &) = delete;

    std::filesystem::path const & Path() const { return m_Path; }

    // As a setting holds it.
    std::string Text() const {
        std::u8string const text = m_Path.generic_u8string();
        return {text.begin(), text.end()};
    }

    void Write(std::filesystem::path const & name, Bytes const & bytes) const {
        auto const path = m_Path / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream stream(path, std::ios::binary);
        for (std::uint8_t const each : bytes)
            stream.put(static_cast<char>(each));
    }

private:
    std::filesystem::path m_Path;
};

// The text of what `call` throws; empty when it throws nothing.
template <typename Call>
std::string ThrownBy(Call call) {
    try {
        call();
    } catch (std::exception const & error) {
        return error.what();
    }
    return {};
}
