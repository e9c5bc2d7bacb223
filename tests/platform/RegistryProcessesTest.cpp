// Several processes that use one registry at once, each to its end and killed on the way.
//
// MORVEX_LONG_TESTS in the environment asks for the full sizes, which take minutes.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/ChildProcess.h"
#include "platform/Host.h"
#include "platform/Registry.h"
#include "platform/RegistryScope.h"
#include "platform/RegistryWork.h"
#include "platform/StoreCheck.h"

namespace {

constexpr std::chrono::hours Patience{1};

bool IsLong() { return std::getenv("MORVEX_LONG_TESTS") != nullptr; }

// Lines that end in a line end; what a killed process left of one does not count.
std::vector<long> Acknowledged(ChildProcess const & child) {
    std::istringstream lines(TextOfBytes(child.Output()));
    std::vector<long> numbers;
    for (std::string line; std::getline(lines, line) && !lines.eof();)
        numbers.push_back(std::stol(line));
    return numbers;
}

class RegistryProcessesTest : public testing::Test {
protected:
    RegistryProcessesTest()
        : m_Folder(std::filesystem::temp_directory_path() / ("registry-processes-" + m_Number)) {
        std::filesystem::create_directories(m_Folder);
    }
    ~RegistryProcessesTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
        for (std::string const & name : m_Writers)
            for (long number = 0; ON_WINDOWS && number != m_Highest; ++number)
                Delete(ValueName(name, number));
        RegDeleteKeyA(HKEY_CURRENT_USER, m_Path.c_str());
    }

    std::unique_ptr<ChildProcess> Start(std::string const & writer, long first, long count) {
        auto const folder = m_Folder / writer;
        std::filesystem::create_directories(folder);
        m_Writers.push_back(writer);
        m_Highest = std::max(m_Highest, first + count);
        std::vector<std::string> const arguments = {
            m_Path, writer, std::to_string(first), std::to_string(count)};
        return std::make_unique<ChildProcess>(
            ProgramFolder() / ProgramFileName("RegistryWorker"), arguments, folder);
    }

    void ExpectWhole(std::string const & writer, long number) {
        std::string const name = ValueName(writer, number);
        ASSERT_EQ(ReadStoredValue(m_Path, name), ValueText(name)) << name;
    }

    // What stands there is a whole value or nothing.
    void ExpectWholeOrNone(std::string const & writer, long number) {
        std::string const name = ValueName(writer, number);
        auto const stored = ReadStoredValue(m_Path, name);
        if (stored) {
            ASSERT_EQ(stored, ValueText(name)) << name;
        }
    }

    static std::string RandomNumber() {
        std::random_device random;
        return std::to_string(random()) + std::to_string(random());
    }

    std::string const m_Number = RandomNumber();
    std::string const m_Path = "Software\\MorvexTests\\Processes" + m_Number;
    RegistryScope m_Scope;

private:
    void Delete(std::string const & name) {
        HKEY key = nullptr;
        if (RegOpenKeyExA(HKEY_CURRENT_USER, m_Path.c_str(), 0, KEY_WRITE, &key) != 0) return;
        RegDeleteValueA(key, name.c_str());
        RegCloseKey(key);
    }

    std::filesystem::path const m_Folder;
    std::vector<std::string> m_Writers;
    long m_Highest = 0;
};

TEST_F(RegistryProcessesTest, FourProcessesWriteAndReadTogether) {
    long const count = IsLong() ? 20000 : 40;
    std::vector<std::string> const names = {"a", "b", "c", "d"};
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (std::string const & name : names)
        children.push_back(Start(name, 0, count));
    for (auto const & child : children) {
        auto const end = child->Wait(Patience);
        ASSERT_TRUE(end);
        EXPECT_EQ(end->code, 0) << child->Error();
    }
    for (std::string const & name : names)
        for (long number = 0; number != count; ++number)
            ExpectWhole(name, number);
}

TEST_F(RegistryProcessesTest, AValueIsSeenAsSoonAsItsWriterSaysSo) {
    constexpr long count = 30;
    auto const child = Start("a", 0, count);
    std::size_t seen = 0;
    while (child->IsRunning() || seen < Acknowledged(*child).size()) {
        for (auto const numbers = Acknowledged(*child); seen != numbers.size(); ++seen)
            ExpectWhole("a", numbers[seen]);
    }
    EXPECT_EQ(seen, static_cast<std::size_t>(count));
}

// A round: processes that write without end are killed after so many acknowledged values.
TEST_F(RegistryProcessesTest, AKilledWriterLosesNothingThatItAcknowledged) {
    if (ON_WINDOWS) GTEST_SKIP() << "the system's registry is not ours to prove";
    int const rounds = IsLong() ? 50 : 5;
    std::vector<std::string> const names = {"a", "b", "c", "d"};
    constexpr long roomForARound = 1000;
    for (int round = 0; round != rounds; ++round) {
        SCOPED_TRACE(round);
        long const first = round * roomForARound;
        std::vector<std::unique_ptr<ChildProcess>> children;
        for (std::string const & name : names)
            children.push_back(Start(name, first, roomForARound));
        // Each at another moment of its work.
        for (std::size_t i = 0; i != children.size(); ++i) {
            children[i]->WaitForOutput(1 + (static_cast<std::size_t>(round) * 7 + i * 13) % 40);
            std::this_thread::sleep_for(std::chrono::microseconds(round * 977 % 9000));
            children[i]->Kill();
            ASSERT_TRUE(children[i]->Wait()->killed) << children[i]->Error();
        }
        for (std::size_t i = 0; i != children.size(); ++i) {
            auto const numbers = Acknowledged(*children[i]);
            for (long const number : numbers)
                ExpectWhole(names[i], number);
            long const next = first + static_cast<long>(numbers.size());
            ExpectWholeOrNone(names[i], next);
            EXPECT_EQ(ReadStoredValue(m_Path, ValueName(names[i], next + 1)), std::nullopt);
        }
    }
    EXPECT_EQ(FaultsOfTheFile(m_Scope), "ok");
}

} // namespace
