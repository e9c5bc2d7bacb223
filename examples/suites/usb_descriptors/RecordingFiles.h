// Where recordings come from: a folder of files, or the devices of this machine.
//
// Nothing is judged here: a file that cannot be read is told with the others, so that it becomes a
// test that fails.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace usb {

struct RecordingFile {
    std::string name; // for people, UTF-8: the path below the folder
    std::vector<std::uint8_t> bytes;
    std::string problem; // why the file could not be read; empty when it was

    bool operator==(RecordingFile const &) const = default;
};

// A path from a setting's UTF-8 text.
std::filesystem::path PathOf(std::string const & text);

// Every *.bin file in `folder` and the folders below it, in the order of their names. Throws
// std::runtime_error when the folder cannot be read or holds none.
std::vector<RecordingFile> ReadRecordings(std::filesystem::path const & folder);

// The `descriptors` of every device below `root`, with its `bos_descriptors` behind them where the
// system shows those, in the order of their names. None when `root` does not exist: a machine
// without USB.
std::vector<RecordingFile> ReadMachineDevices(std::filesystem::path const & root);

} // namespace usb
