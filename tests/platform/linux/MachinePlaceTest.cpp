// The machine's registry off Windows: its place, and who may read and write what the first write
// makes there.
//
// The place is moved into the test's folder as the linker's wrapper of MachinePlace says.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Registry.h"
#include "platform/RegistryScope.h"
#include "platform/linux/OtherHands.h"
#include "platform/linux/RegistryFile.h"
#include "platform/linux/StoreAccess.h"

namespace {

constexpr gid_t Group = 54321;
constexpr uid_t Member = 54322;
constexpr uid_t Outsider = 54323;

// In front of the machine's folder; empty: nowhere.
std::string & Prefix() {
    static auto & prefix = *new std::string;
    return prefix;
}

} // namespace

// MachinePlace(), as the linker knows it.
RegistryPlace RealMachinePlace() __asm__("__real__Z12MachinePlacev");
RegistryPlace WrappedMachinePlace() __asm__("__wrap__Z12MachinePlacev");

RegistryPlace WrappedMachinePlace() {
    RegistryPlace place = RealMachinePlace();
    place.folder = Prefix() + place.folder;
    place.file = Prefix() + place.file;
    return place;
}

namespace {

struct stat StatusOf(fs::path const & path) {
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

mode_t ModeOf(fs::path const & path) { return StatusOf(path).st_mode & 07777; }

class MachinePlaceTest : public testing::Test {
protected:
    MachinePlaceTest() {
        unsetenv("QN_REGISTRY");
        Prefix() = m_Scope.Folder().string();
        chmod(m_Scope.Folder().c_str(), 0755);
    }
    ~MachinePlaceTest() override {
        Prefix().clear();
        umask(m_Mask);
    }

    void ExpectForOwnerAndGroup() const {
        EXPECT_EQ(ModeOf(m_Folder), 02770u);
        EXPECT_EQ(ModeOf(m_File), 0660u);
        EXPECT_EQ(ModeOf(m_Journal), 0660u);
    }

    // As whoever installs prepares it.
    bool GiveFolderToTheGroup() const {
        fs::create_directories(m_Folder);
        return chown(m_Folder.c_str(), 0, Group) == 0 && chmod(m_Folder.c_str(), 02770) == 0;
    }

    // In a process with these rights alone.
    static int InChildOf(uid_t user, gid_t group, std::function<int()> const & act) {
        return InChild([&] {
            bool const changed =
                setgroups(0, nullptr) == 0 && setgid(group) == 0 && setuid(user) == 0;
            return changed ? act() : 99;
        });
    }

    mode_t const m_Mask = umask(022);
    RegistryScope m_Scope;
    fs::path const m_Folder = m_Scope.Folder() / "var/lib/morvex";
    fs::path const m_File = m_Folder / "registry.db";
    fs::path const m_Journal = m_Folder / "registry.db-journal";
};

TEST_F(MachinePlaceTest, TheMachinesFileLiesWithTheStateOfPrograms) {
    Prefix().clear();
    RegistryPlace const place = MachinePlace();
    EXPECT_EQ(place.folder, "/var/lib/morvex");
    EXPECT_EQ(place.file, "/var/lib/morvex/registry.db");
}

TEST_F(MachinePlaceTest, FolderAndFilesAreForOwnerAndGroupWhateverTheMask) {
    for (mode_t const mask : {0u, 022u, 077u}) {
        SCOPED_TRACE(mask);
        umask(mask);
        EXPECT_EQ(Write("text"), 0);
        umask(022);
        ExpectForOwnerAndGroup();
        EXPECT_EQ(Read(), "text");
        fs::remove_all(m_Folder);
    }
}

TEST_F(MachinePlaceTest, WhatIsMissingAboveTheFolderIsMadeForAllToPass) {
    umask(0);
    EXPECT_EQ(Write("text"), 0);
    EXPECT_EQ(ModeOf(m_Folder.parent_path()), 0755u);
}

TEST_F(MachinePlaceTest, AFolderThatIsThereKeepsItsRights) {
    fs::create_directories(m_Folder);
    chmod(m_Folder.c_str(), 0750);
    EXPECT_EQ(Write("text"), 0);
    EXPECT_EQ(ModeOf(m_Folder), 0750u);
    EXPECT_EQ(ModeOf(m_File), 0660u);
}

TEST_F(MachinePlaceTest, WhatIsMadeInTheFolderBelongsToItsGroup) {
    if (!GiveFolderToTheGroup()) GTEST_SKIP() << "only root may give a folder away";
    EXPECT_EQ(Write("text"), 0);
    ExpectForOwnerAndGroup();
    EXPECT_EQ(StatusOf(m_File).st_gid, Group);
    EXPECT_EQ(StatusOf(m_Journal).st_gid, Group);
}

TEST_F(MachinePlaceTest, TheGroupReadsAndWritesAndNobodyElse) {
    if (!GiveFolderToTheGroup()) GTEST_SKIP() << "only root may act for others";
    EXPECT_EQ(InChild([] { return Write("root"); }), 0);
    EXPECT_EQ(
        InChildOf(
            Member, Group,
            [] {
                if (Read() != "root") return 1;
                return static_cast<int>(Write("member"));
            }),
        0);
    EXPECT_EQ(
        InChildOf(
            Outsider, Outsider,
            [] {
                if (Read() != "<5>") return 1;
                return static_cast<int>(Write("outsider"));
            }),
        5);
    EXPECT_EQ(Read(), "member");
    EXPECT_EQ(Write("root again"), 0);
    ExpectForOwnerAndGroup();
}

TEST_F(MachinePlaceTest, AMemberWithANarrowMaskMakesAFileForTheWholeGroup) {
    if (!GiveFolderToTheGroup()) GTEST_SKIP() << "only root may act for others";
    EXPECT_EQ(
        InChildOf(
            Member, Group,
            [] {
                umask(077);
                return static_cast<int>(Write("member"));
            }),
        0);
    ExpectForOwnerAndGroup();
    EXPECT_EQ(StatusOf(m_File).st_uid, Member);
    EXPECT_EQ(InChildOf(Outsider, Group, [] { return static_cast<int>(Write("other")); }), 0);
    EXPECT_EQ(Read(), "other");
}

TEST_F(MachinePlaceTest, WhoeverInstallsMayLetAllRead) {
    if (!GiveFolderToTheGroup()) GTEST_SKIP() << "only root may act for others";
    EXPECT_EQ(InChild([] { return Write("root"); }), 0);
    chmod(m_Folder.c_str(), 02775);
    chmod(m_File.c_str(), 0664);
    EXPECT_EQ(
        InChildOf(
            Outsider, Outsider,
            [] {
                if (Read() != "root") return 1;
                return static_cast<int>(Write("outsider"));
            }),
        5);
    EXPECT_EQ(Write("root again"), 0);
    EXPECT_EQ(ModeOf(m_File), 0664u);
}

// Nobody but root may make it beside the system's own folders.
TEST_F(MachinePlaceTest, WhoMayNotMakeTheFolderIsDenied) {
    fs::create_directories(m_Folder.parent_path());
    AsSomebody const somebody;
    if (access(m_Folder.parent_path().c_str(), W_OK) == 0 && geteuid() != 65534)
        GTEST_SKIP() << "only root has somebody else's rights to try";
    EXPECT_EQ(Read(), "<2>");
    EXPECT_EQ(Write("text"), 5);
    EXPECT_FALSE(fs::exists(m_Folder));
}

} // namespace
