// The registry's contract: walks over values, the rights of handles, deletion, and stale handles.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/Host.h"
#include "platform/RegistryFixture.h"
#include "platform/Synchronization.h"

namespace {

using RegistryHandleTest = RegistryFixture;

TEST_F(RegistryHandleTest, AWalkMeetsEveryValueOnce) {
    for (char const * const name : {"C", "a", "B"})
        EXPECT_EQ(Set(name, "1"), Ok);
    EXPECT_EQ(SortedNames(m_Key), (std::vector<std::string>{"B", "C", "a"}));
}

TEST_F(RegistryHandleTest, AWalkGoesInTheOrderOfFirstWriting) {
    if (UnderWine()) GTEST_SKIP() << "Wine sorts by name";
    for (char const * const name : {"C", "a", "B", "c", "A"})
        EXPECT_EQ(Set(name, "1"), Ok);
    EXPECT_EQ(Names(m_Key), (std::vector<std::string>{"C", "a", "B"}));
    EXPECT_EQ(RegDeleteValueA(m_Key, "C"), Ok);
    EXPECT_EQ(Set("c", "1"), Ok);
    EXPECT_EQ(Names(m_Key), (std::vector<std::string>{"a", "B", "c"}));
}

TEST_F(RegistryHandleTest, ALaterWalkMeetsWhatWasAddedAndNotWhatWasReplaced) {
    EXPECT_EQ(Set("A", "1"), Ok);
    EXPECT_EQ(SortedNames(m_Key), std::vector<std::string>{"A"});
    EXPECT_EQ(Set("B", "1"), Ok);
    EXPECT_EQ(SortedNames(m_Key), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(Set("a", "2"), Ok);
    EXPECT_EQ(SortedNames(m_Key), (std::vector<std::string>{"A", "B"}));
}

TEST_F(RegistryHandleTest, AStepOfAWalkGivesNameTypeAndData) {
    EXPECT_EQ(Set("Name", "data"), Ok);
    Step const step(m_Key, 0, 5, 4);
    EXPECT_EQ(step.result, Ok);
    EXPECT_EQ(step.name.substr(0, 6), std::string("Name\0#", 6));
    EXPECT_EQ(step.nameSize, 4u);
    EXPECT_EQ(step.type, static_cast<DWORD>(REG_BINARY));
    EXPECT_EQ(step.data.substr(0, 5), "data#");
    EXPECT_EQ(step.size, 4u);
}

TEST_F(RegistryHandleTest, AStepBehindTheLastValueTouchesNothing) {
    EXPECT_EQ(Set("Name", "data"), Ok);
    for (DWORD const index : {1u, 2u, 0xFFFFFFFFu}) {
        Step const step(m_Key, index, 300, 300);
        EXPECT_EQ(step.result, NoMoreItems);
        EXPECT_EQ(step.name + step.data, std::string(600, '#'));
        EXPECT_EQ(step.type, 99u);
    }
}

TEST_F(RegistryHandleTest, AStepWithTooLittleRoomForTheDataGivesTypeAndSize) {
    EXPECT_EQ(Set("Name", "12345"), Ok);
    Step const step(m_Key, 0, 300, 4);
    EXPECT_EQ(step.result, MoreData);
    EXPECT_EQ(step.type, static_cast<DWORD>(REG_BINARY));
    EXPECT_EQ(step.size, 5u);
    EXPECT_EQ(step.name + step.data, std::string(600, '#'));
}

TEST_F(RegistryHandleTest, AStepWithTooLittleRoomForTheNameGivesTypeAndData) {
    EXPECT_EQ(Set("Name", "12345"), Ok);
    Step const step(m_Key, 0, 4, 300);
    EXPECT_EQ(step.result, MoreData);
    EXPECT_EQ(step.type, static_cast<DWORD>(REG_BINARY));
    EXPECT_EQ(step.data.substr(0, 6), "12345#");
}

TEST_F(RegistryHandleTest, AWalkRefusesMissingAndReservedArguments) {
    EXPECT_EQ(Set("Name", "1"), Ok);
    char name[16];
    BYTE data[16];
    DWORD size = sizeof name;
    DWORD reserved = 0;
    auto const step = [&](char * text, DWORD * textSize, DWORD * other, BYTE * bytes) {
        return RegEnumValueA(m_Key, 0, text, textSize, other, nullptr, bytes, nullptr);
    };
    EXPECT_EQ(step(nullptr, &size, nullptr, nullptr), InvalidParameter);
    EXPECT_EQ(step(name, nullptr, nullptr, nullptr), InvalidParameter);
    EXPECT_EQ(step(name, &size, &reserved, nullptr), InvalidParameter);
    EXPECT_EQ(step(name, &size, nullptr, data), InvalidParameter);
    EXPECT_EQ(step(name, &size, nullptr, nullptr), Ok);
}

TEST_F(RegistryHandleTest, AHandleGivesTheRightsThatItWasOpenedWith) {
    EXPECT_EQ(Set("X", "1"), Ok);
    HKEY const reader = Open("Software\\Contract", KEY_READ);
    EXPECT_EQ(SetIn(reader, "X", REG_BINARY, "2"), Denied);
    EXPECT_EQ(RegDeleteValueA(reader, "X"), Denied);
    EXPECT_EQ(QueryIn(reader, "X"), (Stored{REG_BINARY, "1"}));
    HKEY const writer = Open("Software\\Contract", KEY_WRITE);
    EXPECT_EQ(RegQueryValueExA(writer, "X", nullptr, nullptr, nullptr, nullptr), Denied);
    EXPECT_EQ(Step(writer, 0, 300, 300).result, Denied);
    EXPECT_EQ(SetIn(writer, "X", REG_BINARY, "2"), Ok);
    HKEY const none = Create("Software\\Contract", 0);
    EXPECT_EQ(SetIn(none, "X", REG_BINARY, "3"), Denied);
    EXPECT_EQ(RegQueryValueExA(none, "X", nullptr, nullptr, nullptr, nullptr), Denied);
    EXPECT_EQ(Query("X"), (Stored{REG_BINARY, "2"}));
}

TEST_F(RegistryHandleTest, AKeyWithSubkeysIsNotDeleted) {
    EXPECT_EQ(Creating(m_Key, "Sub"), Creation(Ok, REG_CREATED_NEW_KEY));
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\Contract"), Denied);
    EXPECT_EQ(Opening(m_Key, "Sub"), Ok);
    EXPECT_EQ(RegDeleteKeyA(m_Key, "sub"), Ok);
    EXPECT_EQ(RegDeleteKeyA(m_Key, "Sub"), NotFound);
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\Contract"), Ok);
    EXPECT_EQ(Opening("Software\\Contract"), NotFound);
    EXPECT_EQ(Opening("Software"), Ok);
}

TEST_F(RegistryHandleTest, DeletingAKeyNeedsAPathAndAnEmptyOneIsTheKeyItself) {
    EXPECT_EQ(RegDeleteKeyA(m_Key, nullptr), InvalidParameter);
    EXPECT_EQ(RegDeleteKeyA(m_Key, ""), Ok);
    EXPECT_EQ(Opening("Software\\Contract"), NotFound);
}

TEST_F(RegistryHandleTest, ADeletedKeyTakesItsValuesWithIt) {
    EXPECT_EQ(Set("X", "1"), Ok);
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\Contract"), Ok);
    HKEY const again = Create("Software\\Contract");
    EXPECT_EQ(QueryIn(again, "X"), std::nullopt);
    EXPECT_TRUE(Names(again).empty());
}

TEST_F(RegistryHandleTest, AHandleOfADeletedKeyIsGoodForClosingOnly) {
    EXPECT_EQ(Set("X", "1"), Ok);
    EXPECT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, "Software\\Contract"), Ok);
    Create("Software\\Contract");
    EXPECT_EQ(RegQueryValueExA(m_Key, "X", nullptr, nullptr, nullptr, nullptr), KeyDeleted);
    EXPECT_EQ(Set("X", "1"), KeyDeleted);
    EXPECT_EQ(RegDeleteValueA(m_Key, "X"), KeyDeleted);
    EXPECT_EQ(Step(m_Key, 0, 300, 300).result, KeyDeleted);
    EXPECT_EQ(Opening(m_Key, "Sub"), KeyDeleted);
    EXPECT_EQ(Opening(m_Key, ""), KeyDeleted);
    EXPECT_EQ(Creating(m_Key, "Sub").first, KeyDeleted);
    EXPECT_EQ(RegDeleteKeyA(m_Key, ""), KeyDeleted);
}

TEST_F(RegistryHandleTest, AClosedHandleIsRefused) {
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExA(m_Key, "", 0, Everything, &key), Ok);
    EXPECT_EQ(RegCloseKey(key), Ok);
    EXPECT_EQ(RegCloseKey(key), InvalidHandle);
    EXPECT_EQ(RegQueryValueExA(key, "X", nullptr, nullptr, nullptr, nullptr), InvalidHandle);
    EXPECT_EQ(SetIn(key, "X", REG_BINARY, "1"), InvalidHandle);
    EXPECT_EQ(RegDeleteValueA(key, "X"), InvalidHandle);
    EXPECT_EQ(RegDeleteKeyA(key, "X"), InvalidHandle);
    EXPECT_EQ(Opening(key, "X"), InvalidHandle);
    EXPECT_EQ(Creating(key, "X").first, InvalidHandle);
    EXPECT_EQ(Step(key, 0, 300, 300).result, InvalidHandle);
}

TEST_F(RegistryHandleTest, WhatIsNoKeyIsRefused) {
    HANDLE const event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    for (HKEY const key : {HKEY{}, reinterpret_cast<HKEY>(0x1234568), static_cast<HKEY>(event)}) {
        EXPECT_EQ(RegQueryValueExA(key, "X", nullptr, nullptr, nullptr, nullptr), InvalidHandle);
        EXPECT_EQ(Opening(key, "X"), InvalidHandle);
    }
    EXPECT_EQ(RegCloseKey(nullptr), InvalidHandle);
    EXPECT_EQ(RegCloseKey(reinterpret_cast<HKEY>(0x1234568)), InvalidHandle);
    CloseHandle(event);
}

TEST_F(RegistryHandleTest, APredefinedKeyStaysOpen) {
    EXPECT_EQ(RegCloseKey(HKEY_LOCAL_MACHINE), Ok);
    EXPECT_EQ(Opening("Software\\Contract"), Ok);
}

TEST_F(RegistryHandleTest, ManyHandlesOfOneKeyAreIndependent) {
    HKEY const other = Open("Software\\Contract", Everything);
    EXPECT_NE(other, m_Key);
    EXPECT_EQ(Set("X", "1"), Ok);
    EXPECT_EQ(QueryIn(other, "X"), (Stored{REG_BINARY, "1"}));
    EXPECT_EQ(SetIn(other, "X", REG_BINARY, "2"), Ok);
    EXPECT_EQ(Query("X"), (Stored{REG_BINARY, "2"}));
}

} // namespace
