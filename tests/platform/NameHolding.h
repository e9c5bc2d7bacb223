// Other processes that hold a named mutex, for a test that has the user's names for itself.
#pragma once

#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ChildProcess.h"
#include "platform/Environment.h"
#include "platform/Host.h"

class NameHolding : public testing::Test {
protected:
    NameHolding() : m_Folder(std::filesystem::temp_directory_path() / m_Name) {
        std::filesystem::create_directories(m_Folder);
        SetEnvironment("XDG_RUNTIME_DIR", m_Folder.string().c_str());
    }
    ~NameHolding() override {
        ClearEnvironment("XDG_RUNTIME_DIR");
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
    }

    // A name of the test's own.
    std::string const & Name() const { return m_Name; }

    // Off Windows, where the user's names are.
    std::filesystem::path const & Folder() const { return m_Folder; }

    std::unique_ptr<ChildProcess> Start(std::vector<std::string> const & arguments) {
        auto const folder = m_Folder / std::to_string(++m_Count);
        std::filesystem::create_directories(folder);
        return std::make_unique<ChildProcess>(
            ProgramFolder() / ProgramFileName("NameHolder"), arguments, folder);
    }

    // What the child has told: "first", "second" or an error's number; empty when it told nothing.
    static std::string Told(ChildProcess & child) {
        child.WaitForOutput(1);
        std::string line = TextOfBytes(child.Output());
        return line.substr(0, line.find('\n'));
    }

    // A child that holds the name until it is killed.
    std::unique_ptr<ChildProcess> Hold(std::string const & name) {
        auto child = Start({name, "hold"});
        EXPECT_EQ(Told(*child), "first");
        return child;
    }

    // What a child tells that takes the name and ends at once.
    std::string Ask(std::string const & name) {
        auto const child = Start({name});
        EXPECT_TRUE(child->Wait());
        return Told(*child);
    }

private:
    static std::string NewName() {
        std::random_device seed;
        return "Morvex test " + std::to_string(seed()) + '-' + std::to_string(seed());
    }

    int m_Count = 0;
    std::string const m_Name = NewName();
    std::filesystem::path const m_Folder;
};
