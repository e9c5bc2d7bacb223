// A file of the test's own, gone with the object.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

class TempFile {
public:
    TempFile() {
        std::random_device seed;
        m_Path = std::filesystem::temp_directory_path()
                 / ("morvex-log-" + std::to_string(seed()) + '-' + std::to_string(seed()));
    }
    ~TempFile() {
        std::error_code ignored;
        std::filesystem::remove(m_Path, ignored);
    }
    TempFile(TempFile const &) = delete;
    TempFile & operator=(TempFile const &) = delete;

    std::string Name() const { return m_Path.string(); }
    bool Exists() const { return std::filesystem::exists(m_Path); }

    // The bytes as they lie on the disk.
    std::string Bytes() const {
        std::ifstream file(m_Path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // Puts the text there through a text stream, as any program of the platform does.
    void Write(std::string const & text) const { std::ofstream(m_Path) << text; }

private:
    std::filesystem::path m_Path;
};

// The bytes that a text has in a file of the platform.
inline std::string InTextMode(std::string const & text) {
    TempFile const file;
    file.Write(text);
    return file.Bytes();
}
