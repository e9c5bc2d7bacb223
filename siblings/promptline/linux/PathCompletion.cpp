// Paths as a person types them.
#include "siblings/promptline/linux/PathCompletion.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "siblings/Keelbase.h"

namespace {

std::filesystem::path PathOf(std::wstring const & text) { return *Utf16ToUtf8(text); }

std::wstring NameOf(std::filesystem::directory_entry const & entry) {
    std::error_code ignored;
    std::wstring const name = *Utf8ToUtf16(entry.path().filename().string());
    return entry.is_directory(ignored) ? name + L'/' : name;
}

bool Fits(std::wstring const & name, std::wstring const & begun) {
    if (begun.empty() && name.starts_with(L'.')) return false;
    return name.starts_with(begun);
}

// The longest beginning that all names share.
std::wstring Shared(std::vector<std::wstring> const & names) {
    if (names.empty()) return {};
    std::wstring shared = names.front();
    for (auto const & name : names) {
        auto const end = std::mismatch(shared.begin(), shared.end(), name.begin(), name.end());
        shared.erase(end.first, shared.end());
    }
    return shared;
}

} // namespace

PathCompletion CompletePath(std::wstring const & typed) {
    auto const slash = typed.rfind(L'/');
    std::wstring const folder = slash == typed.npos ? L"." : typed.substr(0, slash + 1);
    std::wstring const begun = slash == typed.npos ? typed : typed.substr(slash + 1);
    PathCompletion completion;
    std::error_code error;
    std::filesystem::directory_iterator entries(PathOf(ExpandedPath(folder)), error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error))
        if (std::wstring name = NameOf(*entries); Fits(name, begun))
            completion.names.push_back(std::move(name));
    std::sort(completion.names.begin(), completion.names.end());
    if (!completion.names.empty()) completion.added = Shared(completion.names).substr(begun.size());
    return completion;
}

std::wstring ExpandedPath(std::wstring const & typed) {
    char const * const home = std::getenv("HOME");
    if (!typed.starts_with(L"~/") || home == nullptr) return typed;
    return *Utf8ToUtf16(home) + typed.substr(1);
}

bool IsFile(std::wstring const & path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(PathOf(path), ignored);
}
