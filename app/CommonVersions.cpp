// The banner: the system, and the version of each program file.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "app/CAppState.h"
#include "app/Common.h"
#include "log/CMXLog.h"
#include "output/CFormatInfo.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "platform/Version.h"
#include "settings/Registry.h"
#include "siblings/Keelbase.h"
#include "siblings/QuillonLog.h"

namespace {

constexpr char const * ProgramFiles[] = {"QNExe.exe",      "Keelbase.dll", "QuillonLog.dll",
                                         "Promptline.dll", "Morvex.dll",   "Runcore.dll",
                                         "Portsheet.dll"};

constexpr char SystemKey[] = "Software\\Microsoft\\Windows NT\\CurrentVersion";

// Room for a description and its NUL.
constexpr std::size_t DescriptionSize = 512;

template <typename... Values>
std::string Formatted(char const * format, Values const &... values) {
    return FormatText(nullptr, nullptr, FormatPadding{0, 0}, format, values...);
}

CFormatInfo VersionLook() {
    CFormatInfo look;
    look.format.dwMask = CFM_COLOR;
    look.format.dwEffects = CFE_AUTOBACKCOLOR;
    look.format.crTextColor = 0x005F0000;
    return look;
}

std::vector<std::byte> VersionBlock(char const * file) {
    DWORD handle = 0;
    DWORD const size = GetFileVersionInfoSizeA(file, &handle);
    std::vector<std::byte> block(size);
    if (size != 0 && !GetFileVersionInfoA(file, handle, size, block.data())) block.clear();
    return block;
}

// The name of the file's version in the block's own language, or else in the user's.
std::string VersionPath(std::vector<std::byte> const & block) {
    void * found = nullptr;
    UINT length = 0;
    std::array<std::uint8_t, 4> bytes;
    if (!VerQueryValueA(block.data(), "\\VarFileInfo\\Translation", &found, &length)
        || length != bytes.size())
        return Formatted("\\StringFileInfo\\%04X04B0\\FileVersion", GetUserDefaultLangID());
    std::memcpy(bytes.data(), found, bytes.size());
    return Formatted(
        "\\StringFileInfo\\%02X%02X%02X%02X\\FileVersion", bytes[1], bytes[0], bytes[3], bytes[2]);
}

// A version of two numbers or more parted by commas, or of any number of them parted by points.
std::optional<std::array<int, 4>> ReadVersion(char const * text) {
    std::array<int, 4> n = {};
    if (std::sscanf(text, "%d,%d,%d,%d", &n[0], &n[1], &n[2], &n[3]) >= 2) return n;
    if (std::sscanf(text, "%d.%d.%d.%d", &n[0], &n[1], &n[2], &n[3]) >= 1) return n;
    return std::nullopt;
}

std::optional<std::array<int, 4>> VersionOf(char const * file) {
    auto const block = VersionBlock(file);
    if (block.empty()) return std::nullopt;
    void * text = nullptr;
    UINT length = 0;
    if (!VerQueryValueA(block.data(), VersionPath(block).c_str(), &text, &length))
        return std::nullopt;
    return ReadVersion(static_cast<char const *>(text));
}

void WriteMissing(char const * file, CMXLog & log) {
    log.Write(
        TEST_STATUS_WARNING, Quiet, nullptr, "Could not get version information for %s\n", file);
    CUIUpdate::SendUpdate(false);
    CUIUpdate::GetUIUpdate()->CheckAbort();
}

void FileInRecord(std::string const & line) {
    CTestSuiteLog & suite = *CAppState::TestSuiteLog();
    suite.AddMeta("Test-Version", line);
    suite.AddToSummary("TestVersion", line);
}

std::string SystemValue(char const * name, char const * otherwise, CMXLog & log) {
    std::string value;
    if (TS_GetRegistryString(HKEY_LOCAL_MACHINE, SystemKey, name, value)) return value;
    log.Write(
        TEST_STATUS_ERROR, Quiet, nullptr, "Registry Read Error: %s  key = %s.\n",
        GetLastRegErrMsg(), SystemKey);
    return otherwise;
}

std::string SystemFromRegistry(CMXLog & log) {
    std::string const product = SystemValue("ProductName", "<Unknown OS>", log);
    std::string const build = SystemValue("BuildLabEx", "<Unknown Build>", log);
    return Formatted("%s (Build %s)", product, build);
}

struct Description {
    std::string text;
    bool known = true;
};

Description NumberedDescription(char const * format, OSVERSIONINFOEXA const & version) {
    return {
        Formatted(format, version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber)};
}

Description DescriptionOfNt(OSVERSIONINFOEXA const & version, CMXLog & log) {
    DWORD const major = version.dwMajorVersion;
    bool const isFirst = version.dwMinorVersion == 0;
    DWORD const build = version.dwBuildNumber;
    if (major < 5)
        return NumberedDescription("Microsoft Windows NT version %d.%d (Build %d)", version);
    if (major == 5 && isFirst) return {"Microsoft Windows 2000"};
    if (major == 5) return {Formatted("Microsoft Windows XP (Build %d)", build)};
    if (major == 6 && isFirst) return {Formatted("Microsoft Vista (Build %d)", build)};
    if (major == 6) return {SystemFromRegistry(log)};
    Description unknown =
        NumberedDescription("<Unknown NT-based OS>  version %d.%d (Build %d)", version);
    unknown.known = false;
    return unknown;
}

Description DescriptionOf(OSVERSIONINFOEXA const & version, CMXLog & log) {
    Description description;
    if (version.dwPlatformId == 0)
        description = NumberedDescription("Microsoft Win32s version %d.%d (Build %d)", version);
    if (version.dwPlatformId == VER_PLATFORM_WIN32_NT) description = DescriptionOfNt(version, log);
    description.text.resize(std::min(description.text.size(), DescriptionSize - 1));
    return description;
}

bool IsSupported(OSVERSIONINFOEXA const & version) {
    if (version.dwPlatformId != VER_PLATFORM_WIN32_NT) return false;
    return version.dwMajorVersion > 6
           || (version.dwMajorVersion == 6 && version.dwMinorVersion != 0);
}

// The line of the service pack; empty without one.
std::string WriteServicePack(OSVERSIONINFOEXA const & version, CMXLog & log) {
    if (version.wServicePackMajor == 0 && version.wServicePackMinor == 0) return {};
    std::string const line =
        Formatted("Service Pack %d.%d", version.wServicePackMajor, version.wServicePackMinor);
    log.Write(TEST_STATUS_INFO, Quiet, nullptr, line.c_str());
    return " - " + line;
}

void WriteSystem(OSVERSIONINFOEXA const & version, CMXLog & log) {
    Description const system = DescriptionOf(version, log);
    TEST_STATUS const status = system.known ? TEST_STATUS_INFO : TEST_STATUS_ERROR;
    // Deliberate: the text is a format.
    // Pinned by CommonOSVersionTest.APercentSignIsReadAsADirective.
    log.Write(status, Quiet, nullptr, system.text.c_str());
    std::string const whole = system.text + WriteServicePack(version, log);
    CAppState::TestSuiteLog()->SetOSVersion(whole.c_str());
    if (IsSupported(version)) return;
    // Deliberate: the service pack is not looked at.
    // Pinned by CommonOSVersionTest.TheSupportedSystemsBeginAt61WhateverTheServicePack.
    log.Write(
        TEST_STATUS_WARNING, Quiet, nullptr,
        "Quillon is not supported on this platform.  It is supported on Windows 7 (Service Pack 1) "
        "and above only.");
}

} // namespace

void Common_DisplayEngineFileVersions(CMXLog * log) {
    CUIUpdate::GetBuffer()->AddText(std::string("\n"));
    for (char const * const file : ProgramFiles)
        Common_DisplayFileVersion(file, log);
}

void Common_DisplayFileVersion(char const * file, CMXLog * log) {
    auto const version = VersionOf(file);
    if (!version) return WriteMissing(file, *log);
    auto const & [a, b, c, d] = *version;
    std::string const line = Formatted("%s ver %s", file, Formatted("%d.%d.%d.%d", a, b, c, d));
    CFormatInfo const look = VersionLook();
    // Deliberate: the line is a format.
    // Pinned by CommonFileVersionTest.APercentSignInANameIsReadAsADirective.
    log->Write(TEST_STATUS_INFO, Quiet, &look, line.c_str());
    FileInRecord(line);
    CUIUpdate::DoUpdate(false);
}

void Common_DisplayFileVersion(std::string const & file, CMXLog * log) {
    Common_DisplayFileVersion(file.c_str(), log);
}

void Common_DisplayOSVersionInfo(CMXLog * log) {
    if (log == nullptr) return;
    OSVERSIONINFOEXA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (GetVersionExA(reinterpret_cast<OSVERSIONINFOA *>(&version)))
        WriteSystem(version, *log);
    else
        log->Write(
            TEST_STATUS_ERROR, Quiet, nullptr,
            "GetVersionEx failed.  Could not get OS Version info.");
}
