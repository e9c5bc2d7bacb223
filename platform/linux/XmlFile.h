// Files of XML: named in either style, opened for reading in turn, of limited size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/linux/XmlFailure.h"

// The largest document, in bytes.
inline constexpr std::int64_t MaximumXmlFileSize = std::int64_t{256} << 20;

// The largest schema, in bytes, with all that it includes and imports: it takes many times as much
// memory while it is compiled.
inline constexpr std::int64_t MaximumXmlSchemaSize = std::int64_t{16} << 20;

// What tells that a file has changed.
struct XmlFileState {
    bool exists = false;
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0; // nanoseconds
    std::int64_t changed = 0;

    bool operator==(XmlFileState const &) const = default;
};

XmlFileState StateOf(std::string const & path);

// The path of this system that a name stands for: `\` separates as `/` does.
std::string NativePath(std::string name);

// A file that is being read. Regular files alone are opened, and nothing is fetched.
class XmlFile {
public:
    XmlFile() = default;
    XmlFile(XmlFile const &) = delete;
    XmlFile & operator=(XmlFile const &) = delete;
    ~XmlFile();

    // Code, reason and file of a failure; S_OK when the file is open. No more than `limit` bytes of
    // it are read.
    XmlFailure Open(std::string const & path, std::int64_t limit);

    // The state that it had when it was opened.
    XmlFileState const & State() const { return m_State; }

    // As read(2), and -1 beyond the limit.
    int Read(char * buffer, int size);

    // S_OK, or why Read has answered -1.
    HRESULT Failure() const { return m_Failure; }

private:
    int m_Descriptor = -1;
    std::int64_t m_Left = 0;
    HRESULT m_Failure = S_OK;
    XmlFileState m_State;
};
