// The stored choice, by the operations that a host's dialogs use.
#include "examples/QNExe/settings/StoredChoice.h"

#include "app/CAppState.h"
#include "settings/CDUTInfo.h"
#include "settings/Registry.h"
#include "siblings/Keelbase.h"

namespace {

constexpr char Registry[] = "registry";

std::wstring Wide(std::string const & text) { return *Utf8ToUtf16(text); }
std::string Narrow(std::wstring const & text) { return *Utf16ToUtf8(text); }

char const * Origin(bool given, char const * option) { return given ? option : Registry; }

std::vector<CSafeString> Names(std::vector<std::string> const & files) {
    std::vector<CSafeString> names;
    for (std::string const & file : files)
        if (!file.empty()) names.emplace_back(file.c_str());
    return names;
}

void Add(std::vector<ShownSetting> & list, ShownSetting setting) {
    if (!setting.value.empty()) list.push_back(std::move(setting));
}

} // namespace

StoredChoice::StoredChoice(HostOptions const & options) : m_Options(options) {
    TakeDevice(options.device);
    TakeUfpVif(options.ufpVif);
    TakeDfpVifs(options.dfpVifs);
}

void StoredChoice::WarnAfterFailure(std::string const & what, bool forgets) {
    // Nothing to remove is no failure.
    constexpr long notFound = 2;
    if (GetLastRegErrCode() == 0 || GetLastRegErrCode() == notFound) return;
    std::string reason = GetLastRegErrMsg();
    reason.erase(reason.find_last_not_of("\r\n") + 1);
    char const * const notDone =
        forgets ? " cannot be forgotten: " : " cannot be kept for later runs: ";
    m_Warnings.push_back(what + notDone + reason);
}

void StoredChoice::TakeDevice(std::optional<DeviceWords> const & words) {
    CDUTInfo & device = *CAppState::DUTInfo();
    device.Load();
    if (!words) return;
    bool const forgets = *words == DeviceWords{};
    if (words->tid) device.TID(Wide(*words->tid));
    if (words->testBed) device.TestBed(Wide(*words->testBed));
    if (words->room) device.RoomNumber(Wide(*words->room));
    if (words->comments) device.Comments(Wide(*words->comments));
    forgets ? device.Clear() : device.Save();
    WarnAfterFailure("the device record", forgets);
}

void StoredChoice::TakeUfpVif(std::optional<std::string> const & file) {
    if (!file) {
        CAppState::ReadUFPVifFromRegistry();
        return;
    }
    CAppState::UFPVifName(*file);
    CAppState::WriteUFPVifToRegistry();
    WarnAfterFailure("the UFP VIF file", file->empty());
}

void StoredChoice::TakeDfpVifs(std::optional<std::vector<std::string>> const & files) {
    if (!files) {
        CAppState::ReadDFPVifsFromRegistry();
        return;
    }
    CAppState::DFPVifNames(Names(*files));
    CAppState::WriteDFPVifsToRegistry();
    // Whether a list was written tells the last name.
    WarnAfterFailure("the list of DFP VIF files", !CAppState::DFPVifLoaded());
}

std::vector<ShownSetting> StoredChoice::List() const {
    std::vector<ShownSetting> list;
    CDUTInfo const & device = *CAppState::DUTInfo();
    DeviceWords const words = m_Options.device.value_or(DeviceWords{});
    auto const from = [](auto const & word) { return Origin(word.has_value(), "--dut"); };
    Add(list, {"dut.tid", Narrow(device.TID()), from(words.tid)});
    Add(list, {"dut.testbed", Narrow(device.TestBed()), from(words.testBed)});
    Add(list, {"dut.room", Narrow(device.RoomNumber()), from(words.room)});
    Add(list, {"dut.comments", Narrow(device.Comments()), from(words.comments)});
    if (CAppState::UFPVifLoaded())
        list.push_back(
            {"vif.ufp", *CAppState::UFPVifName(),
             Origin(m_Options.ufpVif.has_value(), "--ufp-vif")});
    if (!CAppState::DFPVifLoaded()) return list;
    for (CSafeString const & name : *CAppState::DFPVifNames())
        Add(list, {"vif.dfp", name.get(), Origin(m_Options.dfpVifs.has_value(), "--dfp-vif")});
    return list;
}
