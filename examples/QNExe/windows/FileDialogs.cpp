// The system's dialogs for files and folders.
#include "examples/QNExe/windows/FileDialogs.h"

#include <commdlg.h>
#include <objbase.h>
#include <shlobj.h>

#include "siblings/Keelbase.h"

namespace {

// Room for many long paths.
constexpr std::size_t Capacity = 64 * 1024;

constexpr DWORD CommonFlags =
    OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_ENABLESIZING | OFN_PATHMUSTEXIST;

OPENFILENAMEW Request(HWND owner, FileKind const & kind, std::vector<wchar_t> & buffer) {
    OPENFILENAMEW request = {};
    request.lStructSize = sizeof request;
    request.hwndOwner = owner;
    request.lpstrFilter = kind.filter;
    request.lpstrFile = buffer.data();
    request.nMaxFile = static_cast<DWORD>(buffer.size());
    request.lpstrTitle = kind.title;
    request.Flags = CommonFlags;
    return request;
}

// One path, or a folder and names, each ended by a NUL.
std::vector<std::string> PathsOf(std::vector<wchar_t> const & buffer) {
    std::vector<std::wstring> parts;
    for (wchar_t const * part = buffer.data(); *part != 0; part += parts.back().size() + 1)
        parts.emplace_back(part);
    if (parts.size() == 1) return {*Utf16ToUtf8(parts.front())};
    std::vector<std::string> paths;
    for (std::size_t name = 1; name < parts.size(); ++name)
        paths.push_back(*Utf16ToUtf8(parts.front() + L'\\' + parts[name]));
    return paths;
}

std::optional<std::string> PathOf(ITEMIDLIST * folder) {
    if (folder == nullptr) return std::nullopt;
    std::vector<wchar_t> path(MAX_PATH);
    bool const hasPath = SHGetPathFromIDListW(folder, path.data()) != 0;
    CoTaskMemFree(folder);
    if (!hasPath) return std::nullopt;
    return *Utf16ToUtf8(path.data());
}

} // namespace

std::vector<std::string> AskForFiles(HWND owner, FileKind const & kind, bool several) {
    std::vector<wchar_t> buffer(Capacity);
    OPENFILENAMEW request = Request(owner, kind, buffer);
    request.Flags |= OFN_FILEMUSTEXIST;
    if (several) request.Flags |= OFN_ALLOWMULTISELECT;
    if (GetOpenFileNameW(&request) == 0) return {};
    return PathsOf(buffer);
}

std::optional<SaveChoice>
AskForNewFile(HWND owner, FileKind const & kind, wchar_t const * extension) {
    std::vector<wchar_t> buffer(Capacity);
    OPENFILENAMEW request = Request(owner, kind, buffer);
    request.Flags |= OFN_OVERWRITEPROMPT;
    request.lpstrDefExt = extension;
    if (GetSaveFileNameW(&request) == 0) return std::nullopt;
    unsigned const chosen = request.nFilterIndex != 0 ? request.nFilterIndex - 1 : 0;
    return SaveChoice{*Utf16ToUtf8(buffer.data()), chosen};
}

std::optional<std::string> AskForFolder(HWND owner, wchar_t const * title) {
    bool const hasCom = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    BROWSEINFOW request = {};
    request.hwndOwner = owner;
    request.lpszTitle = title;
    request.ulFlags = BIF_RETURNONLYFSDIRS | (hasCom ? UINT{BIF_NEWDIALOGSTYLE} : 0);
    auto folder = PathOf(SHBrowseForFolderW(&request));
    if (hasCom) CoUninitialize();
    return folder;
}
