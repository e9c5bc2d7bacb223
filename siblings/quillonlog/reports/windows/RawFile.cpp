// Files by the Windows API.
#include "siblings/quillonlog/reports/RawFile.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include <windows.h>

namespace {

std::wstring Wide(std::string const & name) {
    return std::filesystem::path(std::u8string(name.begin(), name.end())).wstring();
}

// The few that a host tells apart or shows often have a portable meaning too.
[[noreturn]] void Fail(DWORD error) {
    if (error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS)
        throw std::system_error(std::make_error_code(std::errc::file_exists));
    throw std::system_error(static_cast<int>(error), std::system_category());
}

DWORD DispositionOf(RawFile::Open how) {
    switch (how) {
    case RawFile::Open::New:
        return CREATE_NEW;
    case RawFile::Open::Empty:
        return CREATE_ALWAYS;
    default:
        return OPEN_EXISTING;
    }
}

HANDLE HandleOf(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

OVERLAPPED PlaceOf(std::uint64_t offset) {
    OVERLAPPED place = {};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

DWORD OneCall(std::size_t size) {
    return static_cast<DWORD>(std::min<std::size_t>(size, std::size_t{1} << 30));
}

constexpr std::intptr_t NoHandle = -1;

} // namespace

RawFile::RawFile(std::string const & name, Open how)
    : m_Handle(reinterpret_cast<std::intptr_t>(CreateFileW(
        Wide(name).c_str(), GENERIC_READ | GENERIC_WRITE,
        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, DispositionOf(how),
        FILE_ATTRIBUTE_NORMAL, nullptr))) {
    if (m_Handle == NoHandle) Fail(GetLastError());
}

void RawFile::WriteAt(std::uint64_t offset, std::string_view bytes) {
    while (!bytes.empty()) {
        OVERLAPPED place = PlaceOf(offset);
        DWORD count = 0;
        if (!WriteFile(HandleOf(m_Handle), bytes.data(), OneCall(bytes.size()), &count, &place))
            Fail(GetLastError());
        bytes.remove_prefix(count);
        offset += count;
    }
}

std::size_t RawFile::ReadAt(std::uint64_t offset, char * bytes, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        OVERLAPPED place = PlaceOf(offset + done);
        DWORD count = 0;
        if (!ReadFile(HandleOf(m_Handle), bytes + done, OneCall(size - done), &count, &place)) {
            if (GetLastError() == ERROR_HANDLE_EOF) break;
            Fail(GetLastError());
        }
        if (count == 0) break;
        done += count;
    }
    return done;
}

void RawFile::Close() noexcept {
    if (m_Handle != NoHandle) CloseHandle(HandleOf(m_Handle));
    m_Handle = NoHandle;
}

void RenameFile(std::string const & from, std::string const & to) {
    if (!MoveFileExW(Wide(from).c_str(), Wide(to).c_str(), MOVEFILE_REPLACE_EXISTING))
        Fail(GetLastError());
}

void RemoveFile(std::string const & name) noexcept { DeleteFileW(Wide(name).c_str()); }

// Links need a right that few accounts have.
bool LinkFile(std::string const &, std::string const &) { return false; }

FileKind KindOfFile(std::string const & name) {
    DWORD const attributes = GetFileAttributesW(Wide(name).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return FileKind::None;
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return FileKind::Link;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? FileKind::Folder : FileKind::File;
}
