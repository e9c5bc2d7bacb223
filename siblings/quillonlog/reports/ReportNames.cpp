// Finds free names, and keeps `latest` up to date.
#include "siblings/quillonlog/reports/ReportNames.h"

#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "siblings/quillonlog/reports/CleanText.h"
#include "siblings/quillonlog/reports/Stamp.h"

namespace {

// Nobody has so many reports of one name.
constexpr unsigned MostNames = 100'000;
constexpr std::size_t LongestSuiteName = 80;

char const * ExtensionOf(EReportFormat format) {
    switch (format) {
    case EReportFormat::Html:
        return ".html";
    case EReportFormat::JUnit:
        return ".xml";
    default:
        return ".jsonl";
    }
}

// A server that takes every *.xml of the folder must not count a run twice.
char const * LatestName(EReportFormat format) {
    switch (format) {
    case EReportFormat::Html:
        return "latest.html";
    case EReportFormat::JUnit:
        return "latest.junit";
    default:
        return "latest.jsonl";
    }
}

std::filesystem::path PathOf(std::string const & name) {
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

bool IsFolder(std::string const & name) {
    std::error_code ignored;
    return name.ends_with('/') || name.ends_with('\\')
           || std::filesystem::is_directory(PathOf(name), ignored);
}

// The folder with its separator; empty for the current one.
std::string FolderOf(std::string const & name) {
    auto const end = name.find_last_of("/\\");
    return end == name.npos ? std::string() : name.substr(0, end + 1);
}

bool IsPlainInNames(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z')
           || (letter >= '0' && letter <= '9') || letter == '-' || letter == '_';
}

std::string NameInFolder(ReportNames::Run const & run) {
    std::string name;
    for (char const letter : run.suite.substr(0, LongestSuiteName))
        name += IsPlainInNames(letter) ? letter : '_';
    return (name.empty() ? "run" : name) + '-' + UtcForNames(run.start);
}

std::string WantedName(CReportRequest::File const & wanted, ReportNames::Run const & run) {
    if (!IsFolder(wanted.path)) return wanted.path;
    bool const isClosed = wanted.path.ends_with('/') || wanted.path.ends_with('\\');
    return wanted.path + (isClosed ? "" : "/") + NameInFolder(run) + ExtensionOf(wanted.format);
}

// "run.html", "run-2.html", ...
std::string Numbered(std::string const & name, unsigned number) {
    if (number == 1) return name;
    std::size_t const folder = FolderOf(name).size();
    std::size_t const dot = name.find_last_of('.');
    bool const hasExtension = dot != name.npos && dot > folder;
    std::size_t const at = hasExtension ? dot : name.size();
    return name.substr(0, at) + '-' + std::to_string(number) + name.substr(at);
}

[[noreturn]] void Refuse(std::string const & name, std::string const & why) {
    throw std::runtime_error(
        "the report \"" + name + "\" cannot be written: " + why
        + ". Name a file in a folder that exists and may be written to.");
}

std::unique_ptr<ReportFile> TryBegin(std::string const & name, RawFile::Open how) {
    try {
        return std::make_unique<ReportFile>(name, how);
    } catch (std::system_error const & error) {
        if (how == RawFile::Open::New && error.code() == std::errc::file_exists) return nullptr;
        Refuse(name, error.code().message());
    }
}

// How a file that stands in for a link begins.
char const * PointerMark(EReportFormat format) {
    return format == EReportFormat::Html ? "<!DOCTYPE html><title>latest report</title>"
                                         : "latest report: ";
}

std::string PointerText(std::string const & target, EReportFormat format) {
    std::string text = PointerMark(format);
    if (format != EReportFormat::Html) return text + target + '\n';
    std::string const name = CleanText::Attribute(target);
    return text + "<meta http-equiv=\"refresh\" content=\"0; url=" + name + "\"><a href=\"" + name
           + "\">" + name + "</a>\n";
}

bool IsOurs(std::string const & latest, EReportFormat format) {
    FileKind const kind = KindOfFile(latest);
    if (kind != FileKind::File) return kind != FileKind::Folder;
    std::string_view const mark = PointerMark(format);
    std::string begin(mark.size(), '\0');
    RawFile file(latest, RawFile::Open::Existing);
    return file.ReadAt(0, begin.data(), begin.size()) == mark.size() && begin == mark;
}

void Point(std::string const & latest, std::string const & target, EReportFormat format) {
    std::string const part = latest + ".part";
    RemoveFile(part);
    if (!LinkFile(part, target))
        RawFile(part, RawFile::Open::New).WriteAt(0, PointerText(target, format));
    RenameFile(part, latest);
}

} // namespace

std::unique_ptr<ReportFile>
ReportNames::Begin(CReportRequest::File const & wanted, bool overwrite, Run const & run) {
    std::string const name = WantedName(wanted, run);
    if (overwrite) return TryBegin(name, RawFile::Open::Empty);
    for (unsigned number = 1; number <= MostNames; ++number)
        if (auto file = TryBegin(Numbered(name, number), RawFile::Open::New)) return file;
    Refuse(name, "there are too many of its name");
}

std::string ReportNames::PointLatestAt(std::string const & report, EReportFormat format) {
    std::string const folder = FolderOf(report);
    std::string const target = report.substr(folder.size());
    std::string const latest = folder + LatestName(format);
    if (target == LatestName(format)) return {};
    try {
        if (!IsOurs(latest, format))
            return "\"" + latest + "\" is left alone: it is none that leads to a report.";
        Point(latest, target, format);
    } catch (std::system_error const & error) {
        return "\"" + latest + "\" cannot be made: " + error.code().message() + '.';
    }
    return {};
}
