// A folder of text files for one test, gone when the test is done.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

class TextFolder {
public:
    TextFolder() {
        std::random_device random;
        m_Path = std::filesystem::temp_directory_path()
                 / ("morvex-" + std::to_string(random()) + '-' + std::to_string(random()));
        std::filesystem::create_directories(m_Path);
    }
    ~TextFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }
    TextFolder(TextFolder const &) = delete;
    TextFolder & operator=(TextFolder const &) = delete;

    std::filesystem::path const & Path() const { return m_Path; }

    // Writes the file and gives its whole name. Its folders are made.
    std::wstring Write(std::filesystem::path const & name, std::string_view text) const {
        auto const path = m_Path / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << text;
        return path.wstring();
    }

    // The whole name of a file that need not be there.
    std::wstring Name(std::filesystem::path const & name) const {
        return (m_Path / name).wstring();
    }

private:
    std::filesystem::path m_Path;
};
