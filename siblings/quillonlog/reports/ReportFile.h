// The file of one report: it grows at its end, is corrected in place, and is replaced as a whole.
//
// Failures throw std::system_error. For one thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "siblings/quillonlog/reports/RawFile.h"

// A part of a file.
struct FileRange {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

class ReportFile {
public:
    // Within one page of a file a write is there as a whole or not at all, also when the process is
    // killed in the middle of it.
    static constexpr std::uint64_t PageSize = 4096;

    ReportFile(std::string const & name, RawFile::Open how);

    std::string const & Name() const { return m_Name; }
    std::uint64_t Size() const { return m_Size; }

    void Append(std::string_view bytes);

    // What is there already is overwritten.
    void WriteAt(std::uint64_t offset, std::string_view bytes);

    // A new text for the file, which takes its place when it is complete: nobody sees a part of it.
    class Replacement {
    public:
        explicit Replacement(ReportFile & file);
        Replacement(Replacement const &) = delete;
        Replacement & operator=(Replacement const &) = delete;
        // Without Commit nothing has changed.
        ~Replacement();

        void Append(std::string_view bytes);
        // A part of the file that is to be replaced.
        void Copy(FileRange const & range);
        void Commit();

    private:
        void Flush();

        ReportFile & m_File;
        std::string m_Name;
        std::unique_ptr<RawFile> m_Raw;
        std::string m_Buffer;
        std::uint64_t m_Size = 0;
        bool m_IsCommitted = false;
    };

private:
    std::string m_Name;
    std::unique_ptr<RawFile> m_Raw;
    std::uint64_t m_Size = 0;
};
