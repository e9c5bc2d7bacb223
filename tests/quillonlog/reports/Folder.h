// A folder of a test's own, removed at its end, and what stands in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

class Folder {
public:
    Folder() {
        std::random_device seed;
        m_Path = std::filesystem::temp_directory_path()
                 / ("quillonlog-test-" + std::to_string(seed()) + '-' + std::to_string(seed()));
        std::filesystem::create_directories(m_Path);
    }
    Folder(Folder const &) = delete;
    Folder & operator=(Folder const &) = delete;
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }

    std::filesystem::path const & Path() const { return m_Path; }
    std::string File(std::string const & name) const { return (m_Path / name).generic_string(); }

    std::string Contents(std::string const & name) const {
        std::ifstream stream(m_Path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void Write(std::string const & name, std::string const & text) const {
        std::ofstream(m_Path / name, std::ios::binary) << text;
    }
    bool Has(std::string const & name) const { return std::filesystem::exists(m_Path / name); }

private:
    std::filesystem::path m_Path;
};
