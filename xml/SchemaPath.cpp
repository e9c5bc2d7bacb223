// The append rule for paths.
#include "xml/SchemaPath.h"

namespace {

bool IsSeparator(wchar_t character) { return character == L'\\' || character == L'/'; }

bool HasSeparatorAt(std::wstring_view path, std::size_t at) {
    return at < path.size() && IsSeparator(path[at]);
}

bool BeginsWithDrive(std::wstring_view path) {
    if (path.size() < 2 || path[1] != L':') return false;
    auto const letter = static_cast<wchar_t>(path[0] | 0x20);
    return letter >= L'a' && letter <= L'z';
}

// "\\server" and, of device paths, "\\?", "\\." or "\??".
std::size_t NetworkRootLength(std::wstring_view path) {
    if (!HasSeparatorAt(path, 0) || path.size() < 3) return 0;
    bool const isDevice = HasSeparatorAt(path, 3) && !HasSeparatorAt(path, 4)
                          && ((IsSeparator(path[1]) && (path[2] == L'?' || path[2] == L'.'))
                              || (path[1] == L'?' && path[2] == L'?'));
    if (isDevice) return 3;
    if (!IsSeparator(path[1]) || IsSeparator(path[2])) return 0;
    auto const end = path.find_first_of(L"\\/", 2);
    return end != path.npos ? end : path.size();
}

std::wstring_view RootName(std::wstring_view path) {
    return path.substr(0, BeginsWithDrive(path) ? 2 : NetworkRootLength(path));
}

bool NeedsSeparator(std::wstring_view base) {
    if (base.empty() || IsSeparator(base.back())) return false;
    return !(BeginsWithDrive(base) && base.size() == 2);
}

} // namespace

std::wstring AppendPath(std::wstring_view base, std::wstring_view name) {
    auto const root = RootName(name);
    bool const isAbsoluteOnDrive = BeginsWithDrive(name) && HasSeparatorAt(name, 2);
    if (isAbsoluteOnDrive || (!root.empty() && root != RootName(base))) return std::wstring(name);
    auto const rest = name.substr(root.size());
    if (HasSeparatorAt(rest, 0)) return std::wstring(RootName(base)) + std::wstring(rest);
    std::wstring path(base);
    if (NeedsSeparator(base)) path += L'\\';
    return path += rest;
}
