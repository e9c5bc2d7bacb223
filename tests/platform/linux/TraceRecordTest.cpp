// What a tracer reads when a probe fires: a breakpoint stands at the probe, as the kernel would put
// it there, and the arguments are taken from where the probe's note says they are.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <csignal>
#include <ucontext.h>

#include <gtest/gtest.h>

#include "platform/Tracing.h"
#include "tests/platform/linux/TraceProbes.h"

namespace {

constexpr std::uint8_t BREAKPOINT = 0xCC;

constexpr GUID MESSAGES = {0x01020304, 0x0506, 0x0708, {9, 10, 11, 12, 13, 14, 15, 16}};

struct Record {
    std::uint16_t number;
    bool isOfMessages;
    std::string text;

    bool operator==(Record const &) const = default;
};

void PrintTo(Record const & record, std::ostream * out) {
    *out << record.number << (record.isOfMessages ? " " : " of another GUID ")
         << testing::PrintToString(record.text);
}

// Registers by their number in the saved state, in all widths.
struct Register {
    int index;
    std::array<std::string_view, 4> names;
};

constexpr Register REGISTERS[] = {
    {REG_RAX, {"rax", "eax", "ax", "al"}},      {REG_RBX, {"rbx", "ebx", "bx", "bl"}},
    {REG_RCX, {"rcx", "ecx", "cx", "cl"}},      {REG_RDX, {"rdx", "edx", "dx", "dl"}},
    {REG_RSI, {"rsi", "esi", "si", "sil"}},     {REG_RDI, {"rdi", "edi", "di", "dil"}},
    {REG_RBP, {"rbp", "ebp", "bp", "bpl"}},     {REG_RSP, {"rsp", "esp", "sp", "spl"}},
    {REG_R8, {"r8", "r8d", "r8w", "r8b"}},      {REG_R9, {"r9", "r9d", "r9w", "r9b"}},
    {REG_R10, {"r10", "r10d", "r10w", "r10b"}}, {REG_R11, {"r11", "r11d", "r11w", "r11b"}},
    {REG_R12, {"r12", "r12d", "r12w", "r12b"}}, {REG_R13, {"r13", "r13d", "r13w", "r13b"}},
    {REG_R14, {"r14", "r14d", "r14w", "r14b"}}, {REG_R15, {"r15", "r15d", "r15w", "r15b"}},
};

int IndexOf(std::string_view name) {
    for (auto const & [index, names] : REGISTERS) {
        for (auto const known : names) {
            if (known == name) {
                return index;
            }
        }
    }
    throw std::runtime_error("unknown register " + std::string(name));
}

// Where an argument is: `%register`, `$constant` or `offset(%register)`, behind its size and a `@`.
struct Operand {
    enum class Kind { Constant, Register, Memory };

    explicit Operand(std::string const & text) {
        auto const operand = text.substr(text.find('@') + 1);
        if (operand[0] == '%') {
            kind = Kind::Register;
            index = IndexOf(std::string_view(operand).substr(1));
        } else if (operand[0] == '$') {
            kind = Kind::Constant;
            number = std::stoll(operand.substr(1));
        } else {
            auto const open = operand.find('(');
            kind = Kind::Memory;
            index =
                IndexOf(std::string_view(operand).substr(open + 2, operand.find(')') - open - 2));
            number = open == 0 ? 0 : std::stoll(operand.substr(0, open), nullptr, 0);
        }
    }

    // Called inside a signal.
    std::uint64_t Value(mcontext_t const & state) const {
        if (kind == Kind::Constant) {
            return static_cast<std::uint64_t>(number);
        }
        auto const held = static_cast<std::uint64_t>(state.gregs[index]);
        if (kind == Kind::Register) {
            return held;
        }
        std::uint64_t value = 0;
        std::memcpy(
            &value, reinterpret_cast<void const *>(held + static_cast<std::uint64_t>(number)),
            sizeof(value));
        return value;
    }

    Kind kind;
    int index = 0;
    long long number = 0;
};

std::vector<Operand> OperandsIn(std::string const & arguments) {
    std::vector<Operand> operands;
    std::istringstream in(arguments);
    for (std::string text; in >> text;) {
        operands.emplace_back(text);
    }
    return operands;
}

// What was found at the breakpoint, kept without asking for memory.
struct Capture {
    std::uint64_t number;
    GUID guid;
    char text[64];
    std::size_t size;

    Record AsRecord() const {
        return {
            static_cast<std::uint16_t>(number), std::memcmp(&guid, &MESSAGES, sizeof(guid)) == 0,
            std::string(text, size)};
    }
};

class Tracer {
public:
    explicit Tracer(std::string const & name)
        : m_Probe(PlatformProbes().at(name)),
          m_Listener(name),
          m_Operands(OperandsIn(m_Probe.arguments)) {
        s_Current = this;
        struct sigaction action {};
        action.sa_sigaction = OnBreakpoint;
        action.sa_flags = SA_SIGINFO;
        sigaction(SIGTRAP, &action, &m_Before);
        PeekMemory(m_Probe.location, &m_Instruction, 1);
        PokeMemory(m_Probe.location, &BREAKPOINT, 1);
    }
    Tracer(Tracer const &) = delete;
    Tracer & operator=(Tracer const &) = delete;
    ~Tracer() {
        PokeMemory(m_Probe.location, &m_Instruction, 1);
        sigaction(SIGTRAP, &m_Before, nullptr);
        s_Current = nullptr;
    }

    std::vector<Record> Records() const {
        std::vector<Record> records;
        for (std::size_t i = 0; i < m_Count; ++i) {
            records.push_back(m_Captures.at(i).AsRecord());
        }
        return records;
    }

private:
    // The instruction at a probe does nothing and is one byte long, so going on behind the
    // breakpoint is all there is to do.
    static void OnBreakpoint(int, siginfo_t *, void * context) {
        s_Current->Take(static_cast<ucontext_t const *>(context)->uc_mcontext);
    }

    void Take(mcontext_t const & state) {
        auto & capture = m_Captures[m_Count++];
        capture.number = m_Operands[0].Value(state);
        capture.size = std::min(m_Operands[3].Value(state), sizeof(capture.text));
        std::memcpy(
            &capture.guid, reinterpret_cast<void const *>(m_Operands[1].Value(state)),
            sizeof(capture.guid));
        std::memcpy(
            capture.text, reinterpret_cast<void const *>(m_Operands[2].Value(state)), capture.size);
    }

    static inline Tracer * s_Current = nullptr;

    Probe const m_Probe;
    Listener const m_Listener;
    std::vector<Operand> const m_Operands;
    struct sigaction m_Before {};
    std::uint8_t m_Instruction = 0;
    std::array<Capture, 4> m_Captures{};
    std::size_t m_Count = 0;
};

template <typename... Arguments>
void Send(std::uint32_t flag, std::uint16_t number, Arguments... arguments) {
    void const * const noMore = nullptr;
    EXPECT_EQ(
        TraceMessage(MorvexTraceLogger(0, flag), 0x2B, &MESSAGES, number, arguments..., noMore),
        ERROR_SUCCESS);
}

void const * Bytes(char const * text) { return text; }

} // namespace

TEST(TraceRecordTest, ProbeCarriesNumberGuidAndText) {
    struct Case {
        char const * probe;
        std::uint32_t flag;
    };
    for (auto const & [probe, flag] :
         {Case{"morvex:library", 1}, {"morvex:output", 2}, {"morvex:log", 4}}) {
        SCOPED_TRACE(probe);
        Tracer const tracer(probe);
        Send(flag, 12, Bytes("text"), std::size_t{5});
        Send(7 & ~flag, 13, Bytes("to others"), std::size_t{10});
        EXPECT_EQ(tracer.Records(), (std::vector<Record>{{12, true, std::string("text\0", 5)}}));
    }
}

TEST(TraceRecordTest, RecordMayCarryNothing) {
    Tracer const tracer("morvex:library");
    Send(1, 65'535);
    EXPECT_EQ(tracer.Records(), (std::vector<Record>{{65'535, true, ""}}));
}

TEST(TraceRecordTest, ArgumentsStandOneBehindAnother) {
    Tracer const tracer("morvex:log");
    Send(4, 10, Bytes("one"), std::size_t{3}, Bytes("two"), std::size_t{4});
    EXPECT_EQ(tracer.Records(), (std::vector<Record>{{10, true, std::string("onetwo\0", 7)}}));
}

TEST(TraceRecordTest, LoggerThatNamesNoFlagWritesForEverybody) {
    Tracer const tracer("morvex:output");
    Send(0, 10, Bytes("text"), std::size_t{5});
    EXPECT_EQ(tracer.Records().size(), 1u);
}
