// A folder for a benchmark's files, in memory where the system has such a place, which goes with
// the object.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

class Scratch {
public:
    // Throws std::runtime_error where no folder can be made.
    Scratch() {
        std::filesystem::path const memory = "/dev/shm";
        bool const hasMemory = std::filesystem::is_directory(memory);
        std::filesystem::path const place =
            hasMemory ? memory : std::filesystem::temp_directory_path();
        std::string name = place / "morvex-bench-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no scratch folder");
        m_Folder = name;
    }
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
    }
    Scratch(Scratch const &) = delete;
    Scratch & operator=(Scratch const &) = delete;

    std::string operator/(char const * name) const { return (m_Folder / name).string(); }

private:
    std::filesystem::path m_Folder;
};
