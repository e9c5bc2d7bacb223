// The argument store: names in any case, values as they came, numbers and words on demand.
#include "settings/CIniArgs.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "settings/ReadCases.h"
#include "settings/ReadTable.h"

namespace {

class CIniArgsTest : public testing::Test {
protected:
    void Store(std::string const & value) { m_Args.AddArg("Section", "Key", value); }

    template <typename Value>
    std::optional<Value> Read() {
        Value out{};
        return m_Args.GetArg("SECTION", "key", out) ? std::optional<Value>(out) : std::nullopt;
    }

    // What is left in a preset variable when the stored value is read into it.
    template <typename Value>
    Value ReadOver(Value preset) {
        m_Args.GetArg("SECTION", "key", preset);
        return preset;
    }

    std::optional<std::string> Text(std::string const & section, std::string const & key) {
        std::string * out = nullptr;
        return m_Args.GetArg(section, key, out) ? std::optional(*out) : std::nullopt;
    }

    std::optional<std::string> CommandLine(std::string const & key) {
        std::string * out = nullptr;
        return m_Args.GetCmdLineArg(key, out) ? std::optional(*out) : std::nullopt;
    }

    std::optional<std::string> CommandLine(std::string const & section, std::string const & key) {
        std::string * out = nullptr;
        return m_Args.GetCmdLineArg(section, key, out) ? std::optional(*out) : std::nullopt;
    }

    CIniArgs m_Args;
};

// Opens what only derived classes may use.
class OpenArgs : public CIniArgs {
public:
    using CIniArgs::m_CmdLineArgs;
    using CIniArgs::m_Sections;
    using CIniArgs::toLower;
};

TEST_F(CIniArgsTest, NamesMatchInAnyCaseAndTheValueKeepsItsOwn) {
    m_Args.AddArg("Quillon", "ProgramName", "The Program");
    EXPECT_EQ(Text("QUILLON", "pROGRAMnAME"), "The Program");
    EXPECT_EQ(Text("quillon", "programname"), "The Program");
}

TEST_F(CIniArgsTest, OnlyAsciiLettersLoseTheirCase) {
    m_Args.AddArg("\xC3\x84[@`{", "KEY\xC3\x9C", "value");
    EXPECT_EQ(Text("\xC3\x84[@`{", "key\xC3\x9C"), "value");
    EXPECT_EQ(Text("\xC3\xA4[@`{", "key\xC3\x9C"), std::nullopt);
    EXPECT_EQ(Text("\xC3\x84{@`[", "key\xC3\x9C"), std::nullopt);
}

TEST_F(CIniArgsTest, ALaterValueReplacesTheEarlierInPlace) {
    Store("first");
    std::string * held = nullptr;
    ASSERT_TRUE(m_Args.GetArg("Section", "Key", held));
    m_Args.AddArg("sECTION", "KEY", "a second text that does not fit into the first one's place");
    EXPECT_EQ(*held, "a second text that does not fit into the first one's place");
}

TEST_F(CIniArgsTest, AStoredValueAssignedToItselfStays) {
    Store("text");
    std::string * held = nullptr;
    ASSERT_TRUE(m_Args.GetArg("Section", "Key", held));
    m_Args.AddArg("Section", "Key", *held);
    EXPECT_EQ(Text("Section", "Key"), "text");
}

TEST_F(CIniArgsTest, AMissingTextClearsThePointer) {
    Store("text");
    std::string preset;
    for (auto const & [section, key] :
         {std::pair{"Other", "Key"}, std::pair{"Section", "Other"}, std::pair{"", ""}}) {
        SCOPED_TRACE(section);
        std::string * out = &preset;
        EXPECT_FALSE(m_Args.GetArg(section, key, out));
        EXPECT_EQ(out, nullptr);
    }
}

TEST_F(CIniArgsTest, LookingForAMissingValueAddsNothing) {
    OpenArgs args;
    std::string * out = nullptr;
    bool flag = false;
    args.GetArg("Section", "Key", out);
    args.GetArg("Section", "Key", flag);
    args.GetCmdLineArg("Section", "Key", out);
    EXPECT_TRUE(args.m_Sections.empty());
    EXPECT_TRUE(args.m_CmdLineArgs.empty());
}

TEST_F(CIniArgsTest, NamesAreKeptInLowerCaseAndInByteOrder) {
    OpenArgs args;
    args.AddArg("B", "Z", "1");
    args.AddArg("a", "Y", "2");
    args.AddArg("b", "_", "3");
    args.AddCmdLineArg("Log", "File.TXT");
    using Values = std::map<std::string, std::string>;
    std::map<std::string, Values> const sections = {
        {"a", {{"y", "2"}}}, {"b", {{"_", "3"}, {"z", "1"}}}};
    EXPECT_EQ(args.m_Sections, sections);
    EXPECT_EQ(args.m_Sections["b"].begin()->first, "_");
    EXPECT_EQ(args.m_CmdLineArgs, (Values{{"log", "File.TXT"}}));
}

TEST_F(CIniArgsTest, CopiesAreDeep) {
    Store("text");
    m_Args.AddCmdLineArg("Key", "argument");
    CIniArgs copy(m_Args);
    CIniArgs assigned;
    assigned.AddArg("Gone", "Key", "value");
    assigned = m_Args;
    Store("changed");
    m_Args.AddCmdLineArg("Key", "changed");
    for (CIniArgs * const args : {&copy, &assigned}) {
        std::string * out = nullptr;
        ASSERT_TRUE(args->GetArg("Section", "Key", out));
        EXPECT_EQ(*out, "text");
        ASSERT_TRUE(args->GetCmdLineArg("Key", out));
        EXPECT_EQ(*out, "argument");
        EXPECT_FALSE(args->GetArg("Gone", "Key", out));
    }
}

TEST_F(CIniArgsTest, CommandLineWinsOverTheSection) {
    m_Args.AddArg("Section", "Key", "from the section");
    m_Args.AddArg("Section", "Only", "in the section");
    m_Args.AddCmdLineArg("KEY", "from the command line");
    EXPECT_EQ(CommandLine("Section", "Key"), "from the command line");
    EXPECT_EQ(CommandLine("No such section", "kEY"), "from the command line");
    EXPECT_EQ(CommandLine("Section", "Only"), "in the section");
    EXPECT_EQ(CommandLine("Section", "None"), std::nullopt);
}

TEST_F(CIniArgsTest, CommandLineFormWithoutASectionReadsItsTableAlone) {
    m_Args.AddArg("Section", "Only", "in the section");
    m_Args.AddCmdLineArg("Key", "argument");
    EXPECT_EQ(CommandLine("KEY"), "argument");
    EXPECT_EQ(CommandLine("Only"), std::nullopt);
}

TEST_F(CIniArgsTest, AMissingCommandLineTextClearsThePointer) {
    std::string preset;
    std::string * out = &preset;
    EXPECT_FALSE(m_Args.GetCmdLineArg("Key", out));
    EXPECT_EQ(out, nullptr);
    out = &preset;
    EXPECT_FALSE(m_Args.GetCmdLineArg("Section", "Key", out));
    EXPECT_EQ(out, nullptr);
}

TEST_F(CIniArgsTest, NoTypedReadLooksAtTheCommandLine) {
    m_Args.AddCmdLineArg("Key", "1");
    EXPECT_EQ(Read<long long>(), std::nullopt);
    EXPECT_EQ(Read<unsigned long long>(), std::nullopt);
    EXPECT_EQ(Read<bool>(), std::nullopt);
    EXPECT_EQ(Read<int>(), std::nullopt);
    EXPECT_EQ(Text("Section", "Key"), std::nullopt);
}

TEST_F(CIniArgsTest, SignedReadTakesItsBaseFromThePrefix) {
    for (auto const & [stored, read] : signedCases) {
        SCOPED_TRACE(stored);
        Store(stored);
        EXPECT_EQ(Read<long long>(), read);
    }
}

TEST_F(CIniArgsTest, UnsignedReadIsDecimalOnly) {
    for (auto const & [stored, read] : unsignedCases) {
        SCOPED_TRACE(stored);
        Store(stored);
        EXPECT_EQ(Read<unsigned long long>(), read);
    }
}

TEST_F(CIniArgsTest, BoolReadTakesANumberOrAWord) {
    for (auto const & [stored, read] : boolCases) {
        SCOPED_TRACE(stored);
        Store(stored);
        EXPECT_EQ(Read<bool>(), read);
    }
}

TEST_F(CIniArgsTest, EveryTextOfTheTableReadsAsItSaysUnderEveryType) {
    for (auto const & [stored, asSigned, asUnsigned, asBool] : readtable::cases) {
        SCOPED_TRACE(stored);
        Store(stored);
        EXPECT_EQ(Read<long long>(), asSigned);
        EXPECT_EQ(Read<unsigned long long>(), asUnsigned);
        EXPECT_EQ(Read<bool>(), asBool);
        EXPECT_EQ(Read<int>().has_value(), asSigned.has_value());
        auto const bits = static_cast<std::uint64_t>(asSigned.value_or(0));
        EXPECT_EQ(Read<int>().value_or(0), static_cast<int>(bits));
        EXPECT_EQ(Read<unsigned int>().value_or(0), static_cast<unsigned int>(bits));
        EXPECT_EQ(Read<short>().value_or(0), static_cast<short>(bits));
        EXPECT_EQ(Read<unsigned short>().value_or(0), static_cast<unsigned short>(bits));
        EXPECT_EQ(Read<signed char>().value_or(0), static_cast<signed char>(bits));
        EXPECT_EQ(Read<unsigned char>().value_or(0), static_cast<unsigned char>(bits));
    }
}

TEST_F(CIniArgsTest, UpperCaseWordIsUnreadable) {
    for (char const * const word :
         {"YES", "Yes", "True", "TRUE", "Y", "T", "NO", "No", "False", "FALSE", "N", "F", "yeS",
          "falsE"}) {
        SCOPED_TRACE(word);
        Store(word);
        EXPECT_EQ(Read<bool>(), std::nullopt);
    }
}

TEST_F(CIniArgsTest, NarrowReadsTakeTheLowBits) {
    for (auto const & [stored, bits] : narrowCases) {
        SCOPED_TRACE(stored);
        Store(stored);
        auto const word = static_cast<std::uint64_t>(bits);
        EXPECT_EQ(Read<int>(), static_cast<int>(word));
        EXPECT_EQ(Read<unsigned int>(), static_cast<unsigned int>(word));
        EXPECT_EQ(Read<short>(), static_cast<short>(word));
        EXPECT_EQ(Read<unsigned short>(), static_cast<unsigned short>(word));
        EXPECT_EQ(Read<signed char>(), static_cast<signed char>(word));
        EXPECT_EQ(Read<unsigned char>(), static_cast<unsigned char>(word));
    }
}

TEST_F(CIniArgsTest, ThreeHundredInASignedCharIsFortyFour) {
    Store("300");
    EXPECT_EQ(Read<signed char>(), std::int8_t{44});
    Store("-1");
    EXPECT_EQ(Read<unsigned int>(), 0xFFFFFFFFu);
}

TEST_F(CIniArgsTest, AMissingValueLeavesTheOutputUntouched) {
    EXPECT_EQ(ReadOver<long long>(-77), -77);
    EXPECT_EQ(ReadOver<unsigned long long>(77), 77u);
    EXPECT_EQ(ReadOver<bool>(true), true);
    EXPECT_EQ(ReadOver<int>(-77), -77);
    EXPECT_EQ(ReadOver<unsigned int>(77), 77u);
    EXPECT_EQ(ReadOver<short>(-77), -77);
    EXPECT_EQ(ReadOver<unsigned short>(77), 77);
    EXPECT_EQ(ReadOver<signed char>(-77), -77);
    EXPECT_EQ(ReadOver<unsigned char>(77), 77);
}

TEST_F(CIniArgsTest, AMissingKeyOfAPresentSectionLeavesTheOutputUntouched) {
    m_Args.AddArg("Section", "Other", "1");
    EXPECT_EQ(ReadOver<long long>(-77), -77);
    EXPECT_EQ(ReadOver<unsigned long long>(77), 77u);
    EXPECT_EQ(ReadOver<bool>(false), false);
    EXPECT_EQ(Read<bool>(), std::nullopt);
}

TEST_F(CIniArgsTest, AnUnreadableValueLeavesTheOutputUntouched) {
    Store("word");
    EXPECT_EQ(ReadOver<long long>(-77), -77);
    EXPECT_EQ(ReadOver<unsigned long long>(77), 77u);
    EXPECT_EQ(ReadOver<bool>(true), true);
    EXPECT_EQ(ReadOver<bool>(false), false);
    EXPECT_EQ(ReadOver<int>(-77), -77);
    EXPECT_EQ(ReadOver<unsigned int>(77), 77u);
    EXPECT_EQ(ReadOver<short>(-77), -77);
    EXPECT_EQ(ReadOver<unsigned short>(77), 77);
    EXPECT_EQ(ReadOver<signed char>(-77), -77);
    EXPECT_EQ(ReadOver<unsigned char>(77), 77);
}

TEST_F(CIniArgsTest, ATextEndsItsNumberAtItsFirstNul) {
    Store(std::string(
        "12\0"
        "34",
        5));
    EXPECT_EQ(Read<long long>(), 12);
    EXPECT_EQ(Read<unsigned long long>(), 12u);
    Store(std::string(
        "\0"
        "1",
        2));
    EXPECT_EQ(Read<long long>(), std::nullopt);
    EXPECT_EQ(Read<bool>(), std::nullopt);
}

TEST_F(CIniArgsTest, LowerCasingWorksInPlaceOnEveryForm) {
    std::string text = "AZaz[@`{09\xC3\x84";
    OpenArgs::toLower(text);
    EXPECT_EQ(text, "azaz[@`{09\xC3\x84");

    char characters[] = "MiXeD";
    OpenArgs::toLower(characters);
    EXPECT_STREQ(characters, "mixed");

    std::wstring wide = L"AZaz[@`{09\u00c4";
    OpenArgs::toLower(wide);
    EXPECT_EQ(wide, L"azaz[@`{09\u00c4");

    wchar_t wideCharacters[] = L"MiXeD";
    OpenArgs::toLower(wideCharacters);
    EXPECT_STREQ(wideCharacters, L"mixed");
}

// A text of this length whose characters take every value in turn.
std::string Bytes(std::size_t length, int first) {
    std::string bytes;
    for (std::size_t place = 0; place != length; ++place)
        bytes += static_cast<char>(first + static_cast<int>(place));
    return bytes;
}

std::string LoweredByHand(std::string text) {
    for (char & character : text)
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character + 32);
    return text;
}

TEST_F(CIniArgsTest, EveryByteIsLoweredAloneInTextsOfEveryLength) {
    for (std::size_t length = 0; length != 35; ++length) {
        for (int first = 0; first != 256; ++first) {
            std::string text = Bytes(length, first);
            OpenArgs::toLower(text);
            ASSERT_EQ(text, LoweredByHand(Bytes(length, first))) << length << " from " << first;
        }
    }
}

TEST_F(CIniArgsTest, LowerCasingANullPointerDoesNothing) {
    OpenArgs::toLower(static_cast<char *>(nullptr));
    OpenArgs::toLower(static_cast<wchar_t *>(nullptr));
}

} // namespace
