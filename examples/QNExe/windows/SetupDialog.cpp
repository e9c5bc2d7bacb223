// The dialog in which a run is set up.
#include "examples/QNExe/windows/SetupDialog.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "examples/QNExe/windows/Controls.h"
#include "examples/QNExe/windows/FileDialogs.h"
#include "examples/QNExe/windows/ResourceIds.h"
#include "siblings/QuillonReports.h"

namespace {

constexpr FileKind SuiteFiles{L"Choose a test suite", L"Test suites\0*.dll\0All files\0*.*\0"};

struct Switch {
    int control;
    bool HostOptions::*option;
    char const * name;
};
constexpr Switch Switches[] = {
    {ID_SETUP_INTERACTIVE, &HostOptions::interactive, "interactive"},
    {ID_SETUP_ONLY_FAILURES, &HostOptions::onlyFailures, "only-failures"},
    {ID_SETUP_VERSIONS, &HostOptions::versions, "versions"},
};

// A run finds its options by their names too.
void SetGiven(HostOptions & options, std::string const & name, std::string const & value) {
    std::erase_if(options.given, [&](auto const & given) { return given.first == name; });
    if (!value.empty()) options.given.emplace_back(name, value);
}

constexpr std::pair<EReportFormat, char const *> ReportFormats[] = {
    {EReportFormat::Html, "html:"},
    {EReportFormat::JUnit, "junit:"},
    {EReportFormat::Json, "json:"},
};

// The words that ReadReportRequest reads.
std::string WordsOf(CReportRequest const & request) {
    std::string words;
    for (auto const & [format, path] : request.files)
        for (auto const & [known, word] : ReportFormats)
            if (known == format) words += (words.empty() ? "" : ",") + (word + path);
    return request.overwrite ? words + ",overwrite" : words;
}

void Fill(HWND dialog, HostOptions const & options) {
    ControlText(dialog, ID_SETUP_SUITE, options.suite);
    ControlText(dialog, ID_SETUP_RECORDINGS, options.recordings.value_or(""));
    if (options.reports) ControlText(dialog, ID_SETUP_REPORTS, WordsOf(*options.reports));
    for (auto const & [control, option, name] : Switches)
        CheckDlgButton(dialog, control, options.*option ? BST_CHECKED : BST_UNCHECKED);
}

void TakeTexts(HWND dialog, HostOptions & options) {
    options.suite = ControlText(dialog, ID_SETUP_SUITE);
    SetGiven(options, "suite", options.suite);
    std::string const folder = ControlText(dialog, ID_SETUP_RECORDINGS);
    options.recordings = folder.empty() ? std::nullopt : std::optional(folder);
    SetGiven(options, "recordings", folder);
}

// Throws std::runtime_error when the words ask for no reports.
void TakeReports(HWND dialog, HostOptions & options) {
    std::string const words = ControlText(dialog, ID_SETUP_REPORTS);
    auto const request = ReadReportRequest(words);
    options.reports = words.empty() ? std::nullopt : std::optional(request);
    SetGiven(options, "report", words);
}

void Take(HWND dialog, HostOptions & options) {
    TakeReports(dialog, options);
    TakeTexts(dialog, options);
    for (auto const & [control, option, name] : Switches) {
        options.*option = IsDlgButtonChecked(dialog, control) == BST_CHECKED;
        SetGiven(options, name, options.*option ? "true" : "");
    }
}

void BrowseForSuite(HWND dialog) {
    auto const files = AskForFiles(dialog, SuiteFiles, false);
    if (!files.empty()) ControlText(dialog, ID_SETUP_SUITE, files.front());
}

void BrowseForRecordings(HWND dialog) {
    auto const folder = AskForFolder(dialog, L"Choose the folder with recorded devices");
    if (folder) ControlText(dialog, ID_SETUP_RECORDINGS, *folder);
}

// A folder in which each run finds names of its own.
void BrowseForReports(HWND dialog) {
    auto folder = AskForFolder(dialog, L"Choose the folder for the reports");
    if (!folder) return;
    if (!folder->ends_with('\\')) *folder += '\\';
    CReportRequest request;
    for (auto const & [format, word] : ReportFormats)
        request.files.push_back({format, *folder});
    ControlText(dialog, ID_SETUP_REPORTS, WordsOf(request));
}

// What is wrong stays to be mended.
void Accept(HWND dialog) {
    try {
        Take(dialog, *reinterpret_cast<HostOptions *>(GetWindowLongPtrW(dialog, DWLP_USER)));
        EndDialog(dialog, IDOK);
    } catch (std::runtime_error const & wrong) {
        ControlText(dialog, ID_SETUP_REPLY, wrong.what());
        SendMessageW(
            dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, ID_SETUP_REPORTS)),
            TRUE);
    }
}

void Do(HWND dialog, int command) {
    if (command == ID_SETUP_SUITE_BROWSE) BrowseForSuite(dialog);
    if (command == ID_SETUP_RECORDINGS_BROWSE) BrowseForRecordings(dialog);
    if (command == ID_SETUP_REPORTS_FOLDER) BrowseForReports(dialog);
    if (command == IDOK) Accept(dialog);
    if (command == IDCANCEL) EndDialog(dialog, IDCANCEL);
}

INT_PTR CALLBACK Receive(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        Fill(dialog, *reinterpret_cast<HostOptions *>(lParam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    Do(dialog, LOWORD(wParam));
    return TRUE;
}

} // namespace

bool ShowSetupDialog(HWND owner, HostOptions & options) {
    return DialogBoxParamW(
               GetModuleHandleW(nullptr), MAKEINTRESOURCEW(ID_SETUP_DIALOG), owner, Receive,
               reinterpret_cast<LPARAM>(&options))
           == IDOK;
}
