// Saving the log.
#include "examples/QNExe/windows/LogSaving.h"

#include <fstream>

#include "examples/QNExe/windows/FileDialogs.h"
#include "examples/QNExe/windows/LogPane.h"
#include "siblings/Keelbase.h"

namespace {

constexpr FileKind Kinds{
    L"Save the log", L"Text (*.txt)\0*.txt\0Text with its looks (*.rtf)\0*.rtf\0"};
constexpr unsigned RichKind = 1;

std::string WithCrLf(std::string const & text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / 32);
    for (char const letter : text) {
        if (letter == '\n') lines += '\r';
        lines += letter;
    }
    return lines;
}

bool Write(std::string const & file, std::string const & bytes) {
    std::ofstream stream(Utf8ToUtf16(file)->c_str(), std::ios::binary | std::ios::trunc);
    stream << bytes;
    stream.close();
    return !stream.fail();
}

} // namespace

std::string AskAndSaveLog(HWND owner, LogPane const & log) {
    auto const choice = AskForNewFile(owner, Kinds, L"txt");
    if (!choice) return {};
    bool const rich = choice->kind == RichKind || choice->file.ends_with(".rtf");
    if (Write(choice->file, rich ? log.RichText() : WithCrLf(log.Text()))) return {};
    return "The log cannot be written to \"" + choice->file
           + "\". Choose a folder that may be written to, with room for it.";
}
