// What the TS_ family asks of the registry, call by call, and what it answers when a call fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "settings/Registry.h"
#include "settings/RegistryWrapped.h"
#include "siblings/Keelbase.h"
#include "support/Allocations.h"

namespace {

using Lines = std::vector<std::string>;

HKEY KeyNumber(std::uintptr_t number) { return reinterpret_cast<HKEY>(number); }

std::string Number(std::uintptr_t number) {
    char text[32];
    std::snprintf(text, sizeof text, "%llX", static_cast<unsigned long long>(number));
    return text;
}

std::string Shown(char const * text) { return text != nullptr ? text : "(null)"; }
std::string Shown(HKEY key) { return Number(reinterpret_cast<std::uintptr_t>(key)); }

// A registry that only answers: each operation is written down and gives the code that the test
// has named for it.
class RegistryFailureTest : public testing::Test {
protected:
    LSTATUS Answer(std::string const & operation, std::string const & line) {
        m_Calls.push_back(operation + ' ' + line);
        auto & answers = m_Answers[operation];
        if (answers.empty()) return 0;
        LSTATUS const answer = answers.front();
        answers.erase(answers.begin());
        return answer;
    }

    // What the two text reads of a value give.
    std::string m_Data = std::string("text\0", 5);
    std::map<std::string, std::vector<LSTATUS>> m_Answers;
    Lines m_Calls;

    Diversion<LSTATUS(HKEY, char const *, DWORD, REGSAM, HKEY *)> const m_Open{
        wrapped_RegOpenKeyExA,
        [this](HKEY key, char const * subkey, DWORD options, REGSAM access, HKEY * result) {
            LSTATUS const code = Answer(
                "open", Shown(key).substr(8) + ' ' + Shown(subkey) + ' ' + Number(options) + ' '
                            + Number(access));
            if (code == 0) *result = KeyNumber(0x77);
            return code;
        }};

    Diversion<LSTATUS(
        HKEY, char const *, DWORD, KeyClass, DWORD, REGSAM, SecurityAttributes, HKEY *,
        DWORD *)> const m_Create{
        wrapped_RegCreateKeyExA,
        [this](
            HKEY, char const * subkey, DWORD reserved, KeyClass keyClass, DWORD options,
            REGSAM access, SecurityAttributes attributes, HKEY * result, DWORD * disposition) {
            LSTATUS const code = Answer(
                "create", Shown(subkey) + ' ' + Number(reserved) + ' ' + Shown(keyClass) + ' '
                              + Number(options) + ' ' + Number(access)
                              + (attributes != nullptr ? " attributes" : ""));
            if (code == 0) {
                *result = KeyNumber(0x88);
                if (disposition != nullptr) *disposition = 1;
            }
            return code;
        }};

    Diversion<LSTATUS(HKEY, char const *, DWORD *, DWORD *, BYTE *, DWORD *)> const m_Query{
        wrapped_RegQueryValueExA,
        [this](HKEY key, char const * name, DWORD *, DWORD *, BYTE * data, DWORD * size) {
            LSTATUS const code = Answer(
                "query", Shown(key) + ' ' + Shown(name) + (data != nullptr ? " data " : " size ")
                             + (data != nullptr ? Number(*size) : ""));
            if (code != 0) return code;
            if (data != nullptr) m_Data.copy(reinterpret_cast<char *>(data), *size);
            *size = static_cast<DWORD>(m_Data.size());
            return code;
        }};

    Diversion<LSTATUS(HKEY, char const *, DWORD, DWORD, BYTE const *, DWORD)> const m_Set{
        wrapped_RegSetValueExA,
        [this](HKEY key, char const * name, DWORD, DWORD type, BYTE const * data, DWORD size) {
            std::string const bytes =
                data != nullptr ? std::string(data, data + size) : std::string("(null)");
            return Answer(
                "set", Shown(key) + ' ' + Shown(name) + ' ' + Number(type) + ' ' + Number(size)
                           + ' ' + bytes);
        }};

    Diversion<LSTATUS(HKEY, char const *)> const m_DeleteValue{
        wrapped_RegDeleteValueA, [this](HKEY key, char const * name) {
            return Answer("delete", Shown(key) + ' ' + Shown(name));
        }};

    Diversion<LSTATUS(HKEY, char const *)> const m_DeleteKey{
        wrapped_RegDeleteKeyA,
        [this](HKEY, char const * subkey) { return Answer("deletekey", Shown(subkey)); }};

    Diversion<LSTATUS(HKEY)> const m_Close{
        wrapped_RegCloseKey, [this](HKEY key) { return Answer("close", Shown(key)); }};

    Lines TakeCalls() { return std::exchange(m_Calls, {}); }
};

HKEY const Root = HKEY_LOCAL_MACHINE;

TEST_F(RegistryFailureTest, ReadingANumberOpensAsksAndCloses) {
    m_Data = std::string("\x05\0\0\0", 4);
    unsigned long out = 0;
    EXPECT_TRUE(TS_GetRegistryDword(Root, "Key", "Name", &out));
    EXPECT_EQ(out, 5u);
    EXPECT_EQ(
        TakeCalls(), (Lines{"open 80000002 Key 0 20019", "query 77 Name data 4", "close 77"}));
}

TEST_F(RegistryFailureTest, ReadingATextAsksForTheSizeFirst) {
    std::string out;
    EXPECT_TRUE(TS_GetRegistryString(Root, "Key", "Name", out));
    EXPECT_EQ(out, "text");
    EXPECT_EQ(
        TakeCalls(), (Lines{
                         "open 80000002 Key 0 20019", "query 77 Name size ", "query 77 Name data 5",
                         "close 77"}));
}

TEST_F(RegistryFailureTest, ReadingBytesAsksForTheSizeFirst) {
    unsigned char out[8] = {};
    EXPECT_TRUE(TS_GetRegistryBinary(Root, "Key", "Name", 8, out));
    EXPECT_EQ(
        TakeCalls(), (Lines{
                         "open 80000002 Key 0 20019", "query 77 Name size ", "query 77 Name data 5",
                         "close 77"}));
}

TEST_F(RegistryFailureTest, WritingCreatesSetsAndCloses) {
    EXPECT_TRUE(TS_SetRegistryString(Root, "Key", "Name", "text"));
    EXPECT_TRUE(TS_SetRegistryString(Root, "Key", "Name", static_cast<char const *>(nullptr)));
    EXPECT_TRUE(TS_SetRegistryDword(Root, "Key", "Name", 0x41424344));
    unsigned char bytes[] = {'x', 'y'};
    EXPECT_TRUE(TS_SetRegistryBinary(Root, "Key", "Name", bytes, 2));
    std::string const create = "create Key 0 (null) 0 20006";
    EXPECT_EQ(
        TakeCalls(), (Lines{
                         create, "set 88 Name 1 4 text", "close 88", create,
                         "set 88 Name 1 0 (null)", "close 88", create, "set 88 Name 4 4 DCBA",
                         "close 88", create, "set 88 Name 3 2 xy", "close 88"}));
}

TEST_F(RegistryFailureTest, DeletingAValueOpensForWriting) {
    EXPECT_TRUE(TS_DeleteRegistryVal(Root, "Key", "Name"));
    EXPECT_EQ(TakeCalls(), (Lines{"open 80000002 Key 0 20006", "delete 77 Name", "close 77"}));
}

TEST_F(RegistryFailureTest, CreatingAKeyAsksForNoRightAndLeavesItOpen) {
    HKEY key = nullptr;
    unsigned long disposition = 0;
    EXPECT_TRUE(TS_CreateRegistryKey(Root, "Key", key, disposition));
    EXPECT_EQ(key, KeyNumber(0x88));
    EXPECT_EQ(disposition, 1u);
    EXPECT_EQ(TakeCalls(), Lines{"create Key 0 (null) 0 0"});
}

TEST_F(RegistryFailureTest, RefusedBytesDoNotTouchTheRegistry) {
    unsigned char byte = 0;
    EXPECT_FALSE(TS_SetRegistryBinary(Root, "Key", "Name", &byte, 0));
    EXPECT_FALSE(TS_SetRegistryBinary(Root, "Key", "Name", nullptr, 1));
    EXPECT_FALSE(TS_GetRegistryBinary(Root, "Key", "Name", 1, nullptr));
    EXPECT_EQ(TakeCalls(), Lines{});
}

// Every operation, by name, that a denied call must fail.
struct Operation {
    char const * name;
    std::function<bool()> run;
    long code;
};

std::vector<Operation> Operations() {
    static unsigned long number = 0;
    static std::string text;
    static unsigned char bytes[8];
    static HKEY key = nullptr;
    return {
        {"get dword", [] { return TS_GetRegistryDword(Root, "K", "N", &number); }, 5},
        {"set dword", [] { return TS_SetRegistryDword(Root, "K", "N", 1); }, 5},
        {"delete value", [] { return TS_DeleteRegistryVal(Root, "K", "N"); }, 5},
        {"get string", [] { return TS_GetRegistryString(Root, "K", "N", text); }, 5},
        {"set string", [] { return TS_SetRegistryString(Root, "K", "N", "x"); }, 5},
        {"get binary", [] { return TS_GetRegistryBinary(Root, "K", "N", 8, bytes); }, 1},
        {"set binary", [] { return TS_SetRegistryBinary(Root, "K", "N", bytes, 8); }, 1},
        {"create key", [] { return TS_CreateRegistryKey(Root, "K", key, number); }, 5},
        {"delete key", [] { return TS_DeleteRegistryKey(Root, "K"); }, 5},
    };
}

TEST_F(RegistryFailureTest, ADeniedKeyFailsEveryOperationWithTheCodeFive) {
    for (auto const & [name, run, code] : Operations()) {
        SCOPED_TRACE(name);
        m_Answers = {{"open", {5}}, {"create", {5}}, {"deletekey", {5}}};
        EXPECT_FALSE(run());
        EXPECT_EQ(GetLastRegErrCode(), code);
        EXPECT_EQ(TakeCalls().size(), 1u);
    }
}

TEST_F(RegistryFailureTest, ADeniedValueFailsAndTheKeyIsClosed) {
    for (auto const & [name, run, code] : Operations()) {
        if (std::string(name).ends_with("key")) continue;
        SCOPED_TRACE(name);
        m_Answers = {{"query", {5}}, {"set", {5}}, {"delete", {5}}};
        EXPECT_FALSE(run());
        EXPECT_EQ(GetLastRegErrCode(), code);
        Lines const calls = TakeCalls();
        EXPECT_EQ(calls.size(), 3u);
        EXPECT_TRUE(calls.back().starts_with("close"));
    }
}

TEST_F(RegistryFailureTest, AFailureOfTheSecondReadFailsToo) {
    std::string text = "preset";
    m_Answers["query"] = {0, 234};
    EXPECT_FALSE(TS_GetRegistryString(Root, "K", "N", text));
    EXPECT_EQ(text, "preset");
    EXPECT_EQ(GetLastRegErrCode(), 234);
    EXPECT_EQ(TakeCalls().back(), "close 77");
    unsigned char bytes[2] = {7, 7};
    m_Answers["query"] = {0, 234};
    EXPECT_FALSE(TS_GetRegistryBinary(Root, "K", "N", 2, bytes));
    EXPECT_EQ(bytes[0], 7);
    EXPECT_EQ(GetLastRegErrCode(), 1);
    EXPECT_EQ(TakeCalls().back(), "close 77");
}

// As the system does when another program writes five bytes between the two reads.
LSTATUS GrowFromNothing(BYTE const * data, DWORD & size, int & reads) {
    if (++reads == 1) {
        size = 0;
        return 0;
    }
    bool const fits = data == nullptr || size >= 5;
    size = 5;
    return fits ? 0 : 234;
}

TEST_F(RegistryFailureTest, AnEmptyValueThatGrowsBetweenTheTwoReadsIsNotRead) {
    int reads = 0;
    Diversion const query(
        wrapped_RegQueryValueExA,
        [&](HKEY, char const *, DWORD *, DWORD *, BYTE * data, DWORD * size) {
            return GrowFromNothing(data, *size, reads);
        });
    std::string text = "preset";
    EXPECT_FALSE(TS_GetRegistryString(Root, "K", "N", text));
    EXPECT_EQ(text, "preset");
    EXPECT_EQ(GetLastRegErrCode(), 234);
    reads = 0;
    unsigned char bytes[2] = {7, 7};
    EXPECT_FALSE(TS_GetRegistryBinary(Root, "K", "N", 2, bytes));
    EXPECT_EQ(bytes[0], 7);
    EXPECT_EQ(GetLastRegErrCode(), 1);
}

TEST_F(RegistryFailureTest, AValueThatShrinksBetweenTheTwoReadsEndsWhereItEndsNow) {
    bool measured = false;
    Diversion const query(
        wrapped_RegQueryValueExA,
        [&](HKEY, char const *, DWORD *, DWORD *, BYTE * data, DWORD * size) -> LSTATUS {
            if (data != nullptr) std::fill_n(data, *size, BYTE{'x'});
            *size = measured ? 3 : 8;
            measured = true;
            return 0;
        });
    std::string text;
    EXPECT_TRUE(TS_GetRegistryString(Root, "K", "N", text));
    EXPECT_EQ(text, "xxx");
    measured = false;
    unsigned char bytes[5] = {7, 7, 7, 7, 7};
    EXPECT_TRUE(TS_GetRegistryBinary(Root, "K", "N", 5, bytes));
    EXPECT_EQ(std::string(bytes, bytes + 5), "xxx\7\7");
}

TEST_F(RegistryFailureTest, WhatClosingAnswersIsNotLookedAt) {
    std::string text;
    m_Answers["close"] = {6};
    EXPECT_TRUE(TS_GetRegistryString(Root, "K", "N", text));
    EXPECT_EQ(GetLastRegErrCode(), 0);
    EXPECT_EQ(GetLastRegErrMsg(), "");
}

TEST_F(RegistryFailureTest, DeletingAMissingKeyIsTrueAndOtherFailuresAreNot) {
    m_Answers["deletekey"] = {2, 5, 1018};
    EXPECT_TRUE(TS_DeleteRegistryKey(Root, "K"));
    EXPECT_EQ(GetLastRegErrCode(), 2);
    EXPECT_FALSE(TS_DeleteRegistryKey(Root, "K"));
    EXPECT_EQ(GetLastRegErrCode(), 5);
    EXPECT_FALSE(TS_DeleteRegistryKey(Root, "K"));
    EXPECT_EQ(GetLastRegErrCode(), 1018);
    EXPECT_TRUE(TS_DeleteRegistryKey(Root, "K"));
    EXPECT_EQ(GetLastRegErrCode(), 0);
}

TEST_F(RegistryFailureTest, ADeniedKeysTextsAreNoneWithTheCodeZero) {
    m_Answers["open"] = {5};
    bool ok = true;
    EXPECT_TRUE(TS_GetAllStringValuesOfKey(Root, "K", ok)->empty());
    EXPECT_FALSE(ok);
    EXPECT_EQ(GetLastRegErrCode(), 0);
    EXPECT_NE(GetLastRegErrMsg(), "");
    EXPECT_EQ(TakeCalls(), Lines{"open 80000002 K 0 20019"});
}

// One answer of an enumeration: result, type, and what is left in the data.
struct Entry {
    LSTATUS result;
    DWORD type;
    char const * data;
};

std::vector<std::string> TextsOf(std::vector<Entry> const & entries) {
    Diversion const walk(
        wrapped_RegEnumValueA,
        [&](HKEY, DWORD index, char * name, DWORD * nameSize, DWORD * reserved, DWORD * type,
            BYTE * data, DWORD * size) -> LSTATUS {
            EXPECT_EQ(*nameSize, 255u);
            EXPECT_EQ(*size, 256u);
            EXPECT_EQ(*type, 0u);
            EXPECT_EQ(reserved, nullptr);
            EXPECT_EQ(std::string(name, 256), std::string(256, '\0'));
            EXPECT_EQ(std::string(data, data + 256), std::string(256, '\0'));
            if (index >= entries.size()) return 259;
            *type = entries[index].type;
            std::string(entries[index].data).copy(reinterpret_cast<char *>(data), 256);
            std::string(200, 'n').copy(name, 256);
            return entries[index].result;
        });
    bool ok = false;
    auto const texts = TS_GetAllStringValuesOfKey(Root, "K", ok);
    std::vector<std::string> copy;
    for (CSafeString const & text : *texts)
        copy.emplace_back(text.get());
    return copy;
}

TEST_F(RegistryFailureTest, AWalkPassesOverFailuresAndEndsAt259Alone) {
    EXPECT_EQ(
        TextsOf(
            {{0, REG_SZ, "first"},
             {5, 0, ""},
             {18, REG_SZ, "eighteen"},
             {0, REG_DWORD, "number"},
             {234, REG_SZ, "partly"},
             {6, REG_SZ, "six"},
             {2, 0, ""},
             {0, REG_SZ, ""},
             {0, REG_SZ, "last"}}),
        (Lines{"first", "partly", "six", "", "last"}));
    EXPECT_EQ(TakeCalls(), (Lines{"open 80000002 K 0 20019", "close 77"}));
    EXPECT_EQ(GetLastRegErrCode(), 0);
    EXPECT_EQ(GetLastRegErrMsg(), "");
}

TEST_F(RegistryFailureTest, ATextThatFillsTheBufferIsTakenWhole) {
    std::string const full(256, 'x');
    EXPECT_EQ(TextsOf({{0, REG_SZ, full.c_str()}}), Lines{full});
}

// The read of a text of 1000 bytes with so many allocations granted: whether it threw, how often a
// key was opened and closed, and the text.
struct ScarceRead {
    bool thrown = false;
    int opened = 0;
    int closed = 0;
    std::string text = "preset";
};

ScarceRead ReadWith(std::size_t granted) {
    ScarceRead read;
    Diversion const open(wrapped_RegOpenKeyExA, [&](auto...) {
        ++read.opened;
        return LSTATUS{0};
    });
    Diversion const query(
        wrapped_RegQueryValueExA,
        [](HKEY, char const *, DWORD *, DWORD *, BYTE * data, DWORD * size) {
            if (data != nullptr) std::fill_n(data, *size, BYTE{'x'});
            *size = 1000;
            return LSTATUS{0};
        });
    Diversion const close(wrapped_RegCloseKey, [&](auto...) {
        ++read.closed;
        return LSTATUS{0};
    });
    AllocationWatch watch(granted);
    try {
        TS_GetRegistryString(Root, "K", "N", read.text);
    } catch (std::bad_alloc const &) {
        read.thrown = true;
    }
    watch.End();
    return read;
}

TEST_F(RegistryFailureTest, RunningOutOfMemoryLeavesTheKeyOpen) {
    ScarceRead read = ReadWith(0);
    EXPECT_TRUE(read.thrown);
    std::size_t granted = 0;
    for (; read.thrown && granted != 10; read = ReadWith(++granted)) {
        EXPECT_EQ(read.opened, 1);
        EXPECT_EQ(read.closed, 0);
        EXPECT_EQ(read.text, "preset");
    }
    EXPECT_EQ(granted, 2u);
    EXPECT_EQ(read.closed, 1);
    EXPECT_EQ(read.text, std::string(1000, 'x'));
}

TEST_F(RegistryFailureTest, TheTextOfACodeIsAskedForAndGivenBack) {
    std::string asked;
    void * freed = nullptr;
    char text[] = "what the system says\r\n";
    Diversion const format(
        wrapped_FormatMessageA, [&](DWORD flags, void const * source, DWORD code, DWORD language,
                                    char * buffer, DWORD size, va_list *) {
            asked = Number(flags) + ' ' + std::to_string(code) + ' ' + std::to_string(language)
                    + ' ' + std::to_string(size) + (source != nullptr ? " source" : "");
            *reinterpret_cast<char **>(buffer) = text;
            return DWORD{22};
        });
    Diversion const free(wrapped_LocalFree, [&](void * memory) {
        freed = memory;
        return static_cast<void *>(nullptr);
    });
    SetRegistryErrMsgString(5);
    EXPECT_EQ(asked, "1100 5 1024 0");
    EXPECT_EQ(freed, text);
    EXPECT_EQ(GetLastRegErrMsg(), "what the system says\r\n");
    EXPECT_EQ(GetLastRegErrCode(), 5);
}

} // namespace
