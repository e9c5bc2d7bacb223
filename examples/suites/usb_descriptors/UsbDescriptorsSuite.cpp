// From recordings to tests, and from findings to entries of the log.
#include "UsbDescriptorsSuite.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "DeviceWait.h"
#include "RecordingFiles.h"
#include "Rules.h"
#include "Speeds.h"
#include "SuiteLimits.h"
#include "Text.h"
#include "app/CAppState.h"
#include "examples/suites/questions/OperatorTests.h"
#include "settings/CIniArgs.h"

MORVEX_TEST_SUITE(UsbDescriptorsSuite)

namespace {

// One recorded device. The tree of `parsed` borrows the bytes of `file`, so it is made in place
// and shared by the tests of the device.
struct Subject {
    explicit Subject(usb::RecordingFile && source)
        : file(std::move(source)), parsed(usb::ParseRecording(file.bytes)) {}
    Subject(Subject const &) = delete;
    Subject & operator=(Subject const &) = delete;

    usb::RecordingFile const file;
    usb::ParsedRecording const parsed;
};

using SharedSubject = std::shared_ptr<Subject const>;

std::string const * FindSetting(char const * key) {
    std::string * value = nullptr;
    return CAppState::GetIniArgs().GetArg("Suite", key, value) ? value : nullptr;
}

bool IsInteractive() {
    bool isInteractive = false;
    return CAppState::GetIniArgs().GetArg("Suite", "Interactive", isInteractive) && isInteractive;
}

// Where the system keeps the descriptors of its devices; empty where it does not show them.
std::string DevicesRoot() {
    auto const * const root = FindSetting("DevicesRoot");
    return root != nullptr ? *root : USB_DESCRIPTORS_DEVICES_ROOT;
}

std::vector<usb::RecordingFile> ReadInput() {
    if (auto const * const folder = FindSetting("Recordings"))
        return usb::ReadRecordings(usb::PathOf(*folder));
    std::string const devices = DevicesRoot();
    if (devices.empty())
        throw std::runtime_error(
            "There is nothing to test: this system does not show its devices' descriptors as "
            "files, and no recordings were given. Give a folder of *.bin files as Recordings of "
            "section Suite.");
    return usb::ReadMachineDevices(usb::PathOf(devices));
}

// A run without tests says why: `read` devices were there, and no limit let one in.
void TellOfNothing(std::size_t read) {
    CMXLog * const log = CAppState::Log();
    if (log == nullptr) return;
    if (read != 0)
        log->Write(
            TEST_STATUS_INFO,
            "There is nothing to test: the suite's limits name none of the devices (%u).",
            static_cast<std::uint32_t>(read));
    else
        log->Write(
            TEST_STATUS_INFO,
            "There is nothing to test: no device shows its descriptors in %s. Connect one, or give "
            "a folder of *.bin files as Recordings of section Suite.",
            DevicesRoot());
}

// "0409:0058", or the recording's name where there is no device descriptor.
std::string IdOf(Subject const & subject) {
    if (!subject.parsed.device) return subject.file.name;
    auto const & descriptor = subject.parsed.device->descriptor;
    return usb::Id(descriptor.Get(usb::device::idVendor)) + ":"
           + usb::Id(descriptor.Get(usb::device::idProduct));
}

// Names to tell the devices apart, in the order of the subjects: several of one kind bear the
// names of their recordings as well.
std::vector<std::string> NamesOf(std::vector<SharedSubject> const & subjects) {
    std::map<std::string, int> count;
    for (auto const & subject : subjects)
        ++count[IdOf(*subject)];
    std::vector<std::string> names;
    for (auto const & subject : subjects) {
        std::string const id = IdOf(*subject);
        names.push_back(count[id] == 1 ? id : id + " (" + subject->file.name + ")");
    }
    return names;
}

TEST_STATUS StatusOf(usb::Severity severity) {
    return severity == usb::Severity::Shall ? TEST_STATUS_FAIL : TEST_STATUS_WARNING;
}

// A recording that is not one at all can have a finding every few bytes. Nobody reads those.
constexpr std::size_t MaximumEntries = 100;

TEST_STATUS Report(CMXLog & log, std::vector<usb::Finding> const & findings) {
    std::size_t const shown = std::min(findings.size(), MaximumEntries);
    for (auto const & finding : std::span(findings).first(shown))
        log.Write(StatusOf(finding.severity), "%s", usb::ToText(finding));
    if (shown < findings.size())
        log.Write(
            TEST_STATUS_FAIL, "%u further findings are not shown",
            static_cast<std::uint32_t>(findings.size() - shown));
    return log.TestStatus();
}

TEST_STATUS TestStructure(CMXLog & log, Subject const & subject) {
    auto const & [file, parsed] = std::tie(subject.file, subject.parsed);
    log.Write(
        TEST_STATUS_INFO, Verbose, "Recording %s, %u bytes", file.name,
        static_cast<std::uint32_t>(file.bytes.size()));
    if (!file.problem.empty()) {
        log.Write(TEST_STATUS_ABORT, "Recording %s: %s", file.name, file.problem);
        return log.TestStatus();
    }
    if (parsed.device)
        log.Write(
            TEST_STATUS_INFO, Verbose, "Everything in it is right at %s",
            usb::NamesOf(usb::SpeedsOfAll(*parsed.device)));
    return Report(log, parsed.findings);
}

void AddTests(
    std::vector<TestCase> & tests, SharedSubject const & subject, std::string const & name,
    SuiteLimits const & limits) {
    tests.push_back({name + " Structure", true, [subject](CMXLog & log) {
                         return TestStructure(log, *subject);
                     }});
    if (!subject->parsed.device || !subject->file.problem.empty()) return;
    for (auto const & group : usb::RuleGroups()) {
        if (!limits.HasGroup(group.name)) continue;
        if (group.applies != nullptr && !group.applies(*subject->parsed.device)) continue;
        tests.push_back({name + " " + group.name, true, [subject, &group](CMXLog & log) {
                             return Report(log, group.check(*subject->parsed.device));
                         }});
    }
}

bool IsOf(Subject const & subject, usb::Arrival const & arrival) {
    if (!subject.parsed.device) return false;
    auto const & descriptor = subject.parsed.device->descriptor;
    return descriptor.Get(usb::device::idVendor) == arrival.vendor
           && descriptor.Get(usb::device::idProduct) == arrival.product;
}

TEST_STATUS
TestAll(CMXLog & log, SharedSubject const & subject, SuiteLimits const & limits) {
    std::vector<TestCase> tests;
    AddTests(tests, subject, subject->file.name, limits);
    for (auto const & test : tests)
        test.run(log);
    return log.TestStatus();
}

// Every device with the ids of the one that came: two of a kind are not told apart.
TEST_STATUS
TestArrival(CMXLog & log, usb::Arrival const & arrival, SuiteLimits const & limits) {
    std::string const root = DevicesRoot();
    if (root.empty()) {
        log.Write(TEST_STATUS_INFO, "This system does not show its devices' descriptors as files.");
        return log.TestStatus();
    }
    std::uint32_t tested = 0;
    for (auto & file : usb::ReadMachineDevices(usb::PathOf(root))) {
        auto const subject = std::make_shared<Subject const>(std::move(file));
        if (!IsOf(*subject, arrival)) continue;
        log.Write(TEST_STATUS_INFO, "Checking the descriptors of %s", subject->file.name);
        TestAll(log, subject, limits);
        ++tested;
    }
    if (tested == 0)
        log.Write(TEST_STATUS_ABORT, "The device that came does not show its descriptors.");
    return log.TestStatus();
}

TEST_STATUS
TestNextDevice(CMXLog & log, std::uint32_t seconds, SuiteLimits const & limits) {
    auto const arrival = usb::WaitForDevice(log, seconds);
    return arrival ? TestArrival(log, *arrival, limits) : log.TestStatus();
}

// No value: the run is not to wait.
std::optional<std::uint32_t> SecondsToWait() {
    std::uint32_t seconds = 0;
    if (FindSetting("WaitForDevice") == nullptr) return std::nullopt;
    if (!CAppState::GetIniArgs().GetArg("Suite", "WaitForDevice", seconds) || seconds > 86400)
        throw std::runtime_error(
            "WaitForDevice of section Suite is no number of seconds: give one up to 86400.");
    return seconds;
}

void AddWait(std::vector<TestCase> & tests, std::uint32_t seconds, SuiteLimits const & limits) {
    tests.push_back({"Wait for a device", true, [seconds, limits](CMXLog & log) {
                         return TestNextDevice(log, seconds, limits);
                     }});
}

using Clock = std::chrono::steady_clock;

// Lets no test begin when the run's time is over. The clock starts with the first test.
void LimitTime(std::vector<TestCase> & tests, std::chrono::seconds allowed) {
    auto const start = std::make_shared<std::optional<Clock::time_point>>();
    for (auto & test : tests)
        test.run = [start, allowed, run = std::move(test.run)](CMXLog & log) {
            if (!*start) *start = Clock::now();
            if (Clock::now() - **start <= allowed) return run(log);
            log.Write(
                TEST_STATUS_ABORT, "The run's time of %u seconds is over",
                static_cast<std::uint32_t>(allowed.count()));
            return log.TestStatus();
        };
}

std::vector<TestCase> ListTests() {
    SuiteLimits const limits = ReadSuiteLimits();
    std::vector<TestCase> tests;
    if (auto const seconds = SecondsToWait()) {
        AddWait(tests, *seconds, limits);
        if (FindSetting("Recordings") == nullptr) return tests;
    }
    std::vector<SharedSubject> subjects;
    auto files = ReadInput();
    for (auto & file : files) {
        auto subject = std::make_shared<Subject const>(std::move(file));
        if (limits.HasDevice(IdOf(*subject))) subjects.push_back(std::move(subject));
    }
    if (subjects.empty()) TellOfNothing(files.size());
    auto const names = NamesOf(subjects);
    if (IsInteractive())
        for (auto & test : OperatorTests())
            tests.push_back(std::move(test));
    for (std::size_t i = 0; i < subjects.size(); ++i)
        AddTests(tests, subjects[i], names[i], limits);
    if (limits.run) LimitTime(tests, *limits.run);
    return tests;
}

} // namespace

// Whoever reads only the log finds there too why nothing ran.
std::vector<TestCase> UsbDescriptorsSuite::Tests() {
    try {
        return ListTests();
    } catch (std::runtime_error const & failure) {
        if (CMXLog * const log = CAppState::Log())
            log->Write(TEST_STATUS_ABORT, "%s", failure.what());
        throw;
    }
}
