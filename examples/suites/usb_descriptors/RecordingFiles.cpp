// Reading recordings from files.
#include "RecordingFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "Recording.h"
#include "Text.h"

namespace usb {
namespace {

namespace fs = std::filesystem;

std::string Utf8(fs::path const & path) {
    std::u8string const text = path.generic_u8string();
    return {text.begin(), text.end()};
}

// Appends the file's bytes, at most one more than a recording may have: enough to tell.
void AppendFile(RecordingFile & file, fs::path const & path) {
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    std::array<char, 4096> block;
    while (stream && file.bytes.size() <= MaximumRecordingSize) {
        stream.read(block.data(), block.size());
        file.bytes.insert(file.bytes.end(), block.data(), block.data() + stream.gcount());
    }
    bool const failed = stream.bad() || !(stream.eof() || file.bytes.size() > MaximumRecordingSize);
    if (failed)
        file.problem = Join(
            "the file cannot be read",
            errno != 0 ? ": " + std::generic_category().message(errno) : std::string());
    file.bytes.resize(std::min(file.bytes.size(), MaximumRecordingSize + 1));
}

std::vector<fs::path> FindRecordings(fs::path const & folder) {
    std::vector<fs::path> found;
    for (auto const & entry : fs::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".bin" && entry.is_regular_file())
            found.push_back(entry.path());
    std::ranges::sort(found);
    return found;
}

} // namespace

fs::path PathOf(std::string const & text) { return {std::u8string(text.begin(), text.end())}; }

std::vector<RecordingFile> ReadRecordings(fs::path const & folder) {
    if (!fs::is_directory(folder))
        throw std::runtime_error(Join(
            "The folder of recordings does not exist: ", Utf8(folder),
            ". Give an existing folder as Recordings of section Suite."));
    auto const found = FindRecordings(folder);
    if (found.empty())
        throw std::runtime_error(Join(
            "The folder of recordings holds no recording: ", Utf8(folder),
            ". Put recordings there, named *.bin, or give another folder as Recordings of section "
            "Suite."));
    std::vector<RecordingFile> files;
    for (auto const & path : found)
        AppendFile(
            files.emplace_back(RecordingFile{Utf8(path.lexically_relative(folder)), {}, {}}), path);
    return files;
}

std::vector<RecordingFile> ReadMachineDevices(fs::path const & root) {
    std::vector<fs::path> devices;
    std::error_code error;
    for (auto const & entry : fs::directory_iterator(root, error))
        if (fs::exists(entry.path() / "descriptors", error)) devices.push_back(entry.path());
    std::ranges::sort(devices);
    std::vector<RecordingFile> files;
    for (auto const & device : devices) {
        auto & file = files.emplace_back(RecordingFile{Utf8(device.filename()), {}, {}});
        AppendFile(file, device / "descriptors");
        if (fs::exists(device / "bos_descriptors", error))
            AppendFile(file, device / "bos_descriptors");
    }
    return files;
}

} // namespace usb
