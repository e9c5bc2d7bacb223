// Messages of no particular class, and which class a message gets.
#include "messages/CWindowsMessage.h"

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

#include "messages/CWMDeviceChange.h"
#include "messages/CWMLButtonDown.h"
#include "messages/Message.h"
#include "platform/Messaging.h"
#include "support/Allocations.h"

namespace {

HWND WindowOf(unsigned long long number) { return reinterpret_cast<HWND>(number); }

std::string DescriptionOf(CWindowsMessage const & message) {
    return message.GetDescriptionStr().get();
}

Message Construct(unsigned int code, unsigned long long wParam = 1, long long lParam = 0) {
    return ConstructWindowsMessageOnHeap(WindowOf(7), code, wParam, lParam);
}

// The members and their places, for derived classes of others.
class Layout : public CWindowsMessage {
public:
    using CWindowsMessage::CWindowsMessage;
    template <typename Member>
    std::ptrdiff_t PlaceOf(Member const & member) const {
        return reinterpret_cast<char const *>(&member) - reinterpret_cast<char const *>(this);
    }
    void Check() const {
        EXPECT_EQ(PlaceOf(m_hWnd), 8);
        EXPECT_EQ(PlaceOf(m_MessageCode), 16);
        EXPECT_EQ(PlaceOf(m_WParam), 24);
        EXPECT_EQ(PlaceOf(m_LParam), 32);
        EXPECT_EQ(PlaceOf(m_Name), 40);
    }
};

} // namespace

TEST(CWindowsMessageTest, MembersStandInTheirOrder) { Layout(nullptr, 0, 0, 0, nullptr).Check(); }

TEST(CWindowsMessageTest, MessageKeepsWhatItWasMadeOf) {
    CWindowsMessage const message(WindowOf(7), 0x10, 0xFFFFFFFFFFFFFFFF, -5, "a name");
    EXPECT_EQ(message.HWnd(), WindowOf(7));
    EXPECT_EQ(message.MessageCode(), 0x10u);
    EXPECT_EQ(message.WParam(), 0xFFFFFFFFFFFFFFFFull);
    EXPECT_EQ(message.LParam(), -5);
}

TEST(CWindowsMessageTest, DescriptionIsOneLineBehindALineFeed) {
    CWindowsMessage const message(WindowOf(658194), 0x201, 9, 0xC80064, "WM_LBUTTONDOWN");
    EXPECT_EQ(
        DescriptionOf(message),
        "\n0x0201 (WM_LBUTTONDOWN) message received: hWnd=658194,WPARAM=0000000000000009, "
        "LPARAM=0000000000C80064.");
}

TEST(CWindowsMessageTest, DescriptionWithoutANameHasNoParenthesis) {
    for (char const * const name : {static_cast<char const *>(nullptr), ""}) {
        EXPECT_EQ(
            DescriptionOf(CWindowsMessage(nullptr, 0x1234A, 0, 0, name)),
            "\n0x1234A message received: hWnd=0,WPARAM=0000000000000000, "
            "LPARAM=0000000000000000.");
    }
}

TEST(CWindowsMessageTest, DescriptionShowsTheLow32BitsPaddedTo16Digits) {
    CWindowsMessage const message(WindowOf(0x100000002), 1, 0xABCDEF0123456789, -2, nullptr);
    EXPECT_EQ(
        DescriptionOf(message), "\n0x0001 message received: hWnd=2,WPARAM=0000000023456789, "
                                "LPARAM=00000000FFFFFFFE.");
    EXPECT_EQ(message.WParam(), 0xABCDEF0123456789ull);
}

TEST(CWindowsMessageTest, PercentSignsOfANameStay) {
    EXPECT_EQ(
        DescriptionOf(CWindowsMessage(nullptr, 1, 0, 0, "100%s")),
        "\n0x0001 (100%s) message received: hWnd=0,WPARAM=0000000000000000, "
        "LPARAM=0000000000000000.");
}

TEST(CWindowsMessageTest, DescriptionIsIndentedAsFormattedTextIs) {
    m_IndentLevel = 1;
    std::string const text = DescriptionOf(CWindowsMessage(nullptr, 1, 0, 0, nullptr));
    m_IndentLevel = 0;
    EXPECT_EQ(text.substr(0, 9), "  \n0x0001");
}

TEST(CWindowsMessageTest, MessageOfNoClassHasNoDetails) {
    EXPECT_TRUE(CWindowsMessage(nullptr, 1, 2, 3, "name").GetDetailsStr().empty());
}

TEST(CWindowsMessageTest, CopyHasAnOwnName) {
    auto source = std::make_unique<CWindowsMessage>(WindowOf(3), 1, 2, 4, "name");
    std::string const described = DescriptionOf(*source);
    CWindowsMessage const copy(*source);
    source.reset();
    EXPECT_EQ(DescriptionOf(copy), described);
}

TEST(CWindowsMessageTest, CodeChoosesTheClass) {
    EXPECT_EQ(typeid(*Construct(0x201)), typeid(CWMLButtonDown));
    EXPECT_EQ(typeid(*Construct(0x219)), typeid(CWMDeviceChange));
    for (unsigned int const code : {0u, 0x10u, 0x200u, 0x202u, 0x218u, 0x21Au, 0x80000201u})
        EXPECT_EQ(typeid(*Construct(code)), typeid(CWindowsMessage)) << code;
}

TEST(CWindowsMessageTest, ConstructedMessageHasAllFourValuesAndItsDeleter) {
    for (unsigned int const code : {0x201u, 0x219u, 0x10u}) {
        auto const message = Construct(code, 0xF00000001, 0);
        EXPECT_EQ(message->HWnd(), WindowOf(7));
        EXPECT_EQ(message->MessageCode(), code);
        EXPECT_EQ(message->WParam(), 0xF00000001ull);
        EXPECT_EQ(message->LParam(), 0);
        EXPECT_EQ(message.get_deleter(), &DeleteWindowsMessageFromHeap);
    }
}

TEST(CWindowsMessageTest, MessageOfNoClassIsNamedAfterItsCode) {
    EXPECT_EQ(
        DescriptionOf(*Construct(0x10)),
        "\n0x0010 (0x0010) message received: hWnd=7,WPARAM=0000000000000001, "
        "LPARAM=0000000000000000.");
    EXPECT_TRUE(Construct(0x10)->GetDetailsStr().empty());
}

TEST(CWindowsMessageTest, MessagesOfAClassHaveItsName) {
    EXPECT_EQ(DescriptionOf(*Construct(0x201)).substr(0, 24), "\n0x0201 (WM_LBUTTONDOWN)");
    EXPECT_EQ(DescriptionOf(*Construct(0x219)).substr(0, 25), "\n0x0219 (WM_DEVICECHANGE)");
}

TEST(CWindowsMessageTest, DeleterRunsTheVirtualDestructorAndTakesNull) {
    DeleteWindowsMessageFromHeap(nullptr);
    unsigned const before = CountedMessage::gone;
    DeleteWindowsMessageFromHeap(new CountedMessage(1, 0));
    EXPECT_EQ(CountedMessage::gone, before + 1);
}

TEST(CWindowsMessageTest, ConstructionWithoutMemoryThrowsAndLeavesNothingBehind) {
    std::uint32_t const record[3] = {12, 2, 0};
    auto const address = reinterpret_cast<long long>(record);
    for (unsigned int const code : {0x201u, 0x219u, 0x10u}) {
        std::size_t granted = 0;
        for (bool made = false; !made; ++granted) {
            ASSERT_LT(granted, 20u);
            AllocationWatch watch(granted);
            try {
                auto const message = ConstructWindowsMessageOnHeap(nullptr, code, 0x8000, address);
                made = true;
            } catch (std::bad_alloc const &) {
            }
            watch.End();
            EXPECT_EQ(watch.Leaks(), 0u) << code << ' ' << granted;
        }
        EXPECT_GE(granted, 2u);
    }
}
