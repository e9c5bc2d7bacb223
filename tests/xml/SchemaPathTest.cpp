// Where a schema is looked for: the rule for joining names, the same on every platform.
#include <string>

#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "tests/xml/OpenDoc.h"

namespace {

class SchemaPathTest : public testing::Test {
protected:
    SchemaPathTest() { CAppState::InitAppState(ApplicationFamilyDefault); }
    ~SchemaPathTest() override { CAppState::CleanupAppState(); }

    std::wstring Joined(wchar_t const * base, wchar_t const * name) {
        CAppState::InitialWorkingDirectory() = base;
        return OpenDoc::MakeFullSchemaPath(name);
    }
};

} // namespace

TEST_F(SchemaPathTest, BareNameIsPutBehindTheInitialDirectory) {
    EXPECT_EQ(Joined(L"C:\\start", L"suite.xsd"), L"C:\\start\\suite.xsd");
    EXPECT_EQ(Joined(L"/home/start", L"suite.xsd"), L"/home/start\\suite.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"in/suite.xsd"), L"C:\\start\\in/suite.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"..\\suite.xsd"), L"C:\\start\\..\\suite.xsd");
}

TEST_F(SchemaPathTest, DirectoryIsTheOneOfTheStart) {
    std::wstring const directory = CAppState::InitialWorkingDirectory();
    ASSERT_FALSE(directory.empty());
    EXPECT_EQ(OpenDoc::MakeFullSchemaPath(L"suite.xsd"), directory + L"\\suite.xsd");
}

TEST_F(SchemaPathTest, AbsoluteNameStaysAsItIs) {
    EXPECT_EQ(Joined(L"C:\\start", L"C:\\other\\suite.xsd"), L"C:\\other\\suite.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"d:/suite.xsd"), L"d:/suite.xsd");
    EXPECT_EQ(Joined(L"/home/start", L"C:\\suite.xsd"), L"C:\\suite.xsd");
}

TEST_F(SchemaPathTest, OtherRootReplacesTheBase) {
    EXPECT_EQ(Joined(L"C:\\start", L"\\\\server\\share\\a.xsd"), L"\\\\server\\share\\a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"//server/share/a.xsd"), L"//server/share/a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"\\\\?\\C:\\a.xsd"), L"\\\\?\\C:\\a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"D:a.xsd"), L"D:a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"D:"), L"D:");
}

TEST_F(SchemaPathTest, DrivesAreComparedAsText) {
    EXPECT_EQ(Joined(L"C:\\start", L"C:a.xsd"), L"C:\\start\\a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"c:a.xsd"), L"c:a.xsd");
}

TEST_F(SchemaPathTest, LeadingSeparatorKeepsTheRootNameAlone) {
    EXPECT_EQ(Joined(L"C:\\start", L"\\a.xsd"), L"C:\\a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"/a.xsd"), L"C:/a.xsd");
    EXPECT_EQ(Joined(L"\\\\server\\share", L"\\a.xsd"), L"\\\\server\\a.xsd");
    EXPECT_EQ(Joined(L"/home/start", L"/etc/a.xsd"), L"/etc/a.xsd");
}

TEST_F(SchemaPathTest, SeparatorIsPutInWhereNoneIs) {
    EXPECT_EQ(Joined(L"", L"a.xsd"), L"a.xsd");
    EXPECT_EQ(Joined(L"C:", L"a.xsd"), L"C:a.xsd");
    EXPECT_EQ(Joined(L"C:\\", L"a.xsd"), L"C:\\a.xsd");
    EXPECT_EQ(Joined(L"/", L"a.xsd"), L"/a.xsd");
    EXPECT_EQ(Joined(L"\\\\server", L"a.xsd"), L"\\\\server\\a.xsd");
    EXPECT_EQ(Joined(L"start", L"a.xsd"), L"start\\a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L""), L"C:\\start\\");
}

TEST_F(SchemaPathTest, WhatOnlyLooksLikeARootIsNone) {
    EXPECT_EQ(Joined(L"C:\\start", L"1:a.xsd"), L"C:\\start\\1:a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L":a.xsd"), L"C:\\start\\:a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"\\\\\\a.xsd"), L"C:\\\\\\a.xsd");
    EXPECT_EQ(Joined(L"C:\\start", L"\\\\"), L"C:\\\\");
}
