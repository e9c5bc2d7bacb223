// Report files on raw ones.
#include "siblings/quillonlog/reports/ReportFile.h"

#include <algorithm>
#include <system_error>

namespace {

constexpr std::size_t BufferSize = std::size_t{1} << 18;

} // namespace

ReportFile::ReportFile(std::string const & name, RawFile::Open how)
    : m_Name(name), m_Raw(std::make_unique<RawFile>(name, how)) {}

void ReportFile::Append(std::string_view bytes) { WriteAt(m_Size, bytes); }

void ReportFile::WriteAt(std::uint64_t offset, std::string_view bytes) {
    m_Raw->WriteAt(offset, bytes);
    m_Size = std::max(m_Size, offset + bytes.size());
}

ReportFile::Replacement::Replacement(ReportFile & file)
    : m_File(file),
      m_Name(file.m_Name + ".part"),
      m_Raw(std::make_unique<RawFile>(m_Name, RawFile::Open::Empty)) {
    m_Buffer.reserve(BufferSize);
}

ReportFile::Replacement::~Replacement() {
    if (m_IsCommitted) return;
    m_Raw.reset();
    RemoveFile(m_Name);
}

void ReportFile::Replacement::Append(std::string_view bytes) {
    if (m_Buffer.size() + bytes.size() > BufferSize) Flush();
    m_Buffer += bytes;
}

void ReportFile::Replacement::Copy(FileRange const & range) {
    for (std::uint64_t at = range.begin; at < range.end;) {
        if (m_Buffer.size() >= BufferSize) Flush();
        std::size_t const used = m_Buffer.size();
        std::size_t const wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(range.end - at, BufferSize - used));
        m_Buffer.resize(used + wanted);
        std::size_t const read = m_File.m_Raw->ReadAt(at, m_Buffer.data() + used, wanted);
        m_Buffer.resize(used + read);
        // Somebody else has cut the file.
        if (read == 0) throw std::system_error(std::make_error_code(std::errc::io_error));
        at += read;
    }
}

void ReportFile::Replacement::Flush() {
    m_Raw->WriteAt(m_Size, m_Buffer);
    m_Size += m_Buffer.size();
    m_Buffer.clear();
}

// Not every system gives an open file another name.
void ReportFile::Replacement::Commit() {
    Flush();
    m_Raw->Close();
    m_File.m_Raw->Close();
    RenameFile(m_Name, m_File.m_Name);
    m_IsCommitted = true;
    m_File.m_Raw = std::make_unique<RawFile>(m_File.m_Name, RawFile::Open::Existing);
    m_File.m_Size = m_Size;
}
