// The little language in which reports are asked for.
#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "siblings/QuillonReports.h"

namespace {

constexpr std::string_view Overwrite = "overwrite";

constexpr std::pair<std::string_view, EReportFormat> Formats[] = {
    {"html:", EReportFormat::Html},
    {"junit:", EReportFormat::JUnit},
    {"json:", EReportFormat::Json},
};

std::pair<std::string_view, EReportFormat> const * FormatAt(std::string_view text) {
    for (auto const & format : Formats)
        if (text.starts_with(format.first)) return &format;
    return nullptr;
}

bool IsOverwriteAt(std::string_view text) {
    return text.starts_with(Overwrite)
           && (text.size() == Overwrite.size() || text[Overwrite.size()] == ',');
}

// Where the path ends: at a comma with a word behind it, or at the end.
std::size_t EndOfPath(std::string_view text) {
    for (auto comma = text.find(','); comma != text.npos; comma = text.find(',', comma + 1)) {
        auto const behind = text.substr(comma + 1);
        if (FormatAt(behind) != nullptr || IsOverwriteAt(behind)) return comma;
    }
    return text.size();
}

[[noreturn]] void Refuse(std::string_view words, char const * why) {
    throw std::runtime_error(
        '"' + std::string(words) + "\" asks for no reports: " + why
        + ". Give html:<path>,junit:<path>,json:<path>, each at most once, and overwrite to "
          "replace files.");
}

void AddFile(CReportRequest & request, CReportRequest::File file, std::string_view words) {
    if (file.path.empty()) Refuse(words, "a path is empty");
    auto const isSame = [&](auto const & other) { return other.format == file.format; };
    if (std::any_of(request.files.begin(), request.files.end(), isSame))
        Refuse(words, "a format stands twice");
    request.files.push_back(std::move(file));
}

// Takes one word off the front.
void ReadWord(CReportRequest & request, std::string_view & rest, std::string_view words) {
    std::size_t end = Overwrite.size();
    if (auto const * const format = FormatAt(rest)) {
        rest.remove_prefix(format->first.size());
        end = EndOfPath(rest);
        AddFile(request, {format->second, std::string(rest.substr(0, end))}, words);
    } else if (IsOverwriteAt(rest)) {
        request.overwrite = true;
    } else {
        Refuse(words, "a word is none of the four");
    }
    rest.remove_prefix(std::min(end + 1, rest.size()));
}

} // namespace

CReportRequest ReadReportRequest(std::string const & words) {
    CReportRequest request;
    for (std::string_view rest = words; !rest.empty();)
        ReadWord(request, rest, words);
    if (request.overwrite && request.files.empty()) Refuse(words, "there is nothing to replace");
    return request;
}
