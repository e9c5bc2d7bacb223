// The digest of a file, read piece by piece.
#include <filesystem>
#include <fstream>
#include <vector>

#include "siblings/QuillonReports.h"
#include "siblings/quillonlog/reports/Sha256.h"

std::string FileSha256(std::string const & file) {
    std::ifstream stream(
        std::filesystem::path(std::u8string(file.begin(), file.end())), std::ios::binary);
    if (!stream) return {};
    Sha256 digest;
    std::vector<char> buffer(1 << 16);
    while (stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size())).gcount() > 0)
        digest.Add({buffer.data(), static_cast<std::size_t>(stream.gcount())});
    return stream.bad() ? std::string() : digest.Digits();
}
