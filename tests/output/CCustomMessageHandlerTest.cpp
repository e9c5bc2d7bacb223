// Messages to a window that is not looked at.
#include "output/CCustomMessageHandler.h"

#include <gtest/gtest.h>

#include "output/Doorbell.h"

namespace {

using Messages = std::vector<std::string>;

class CCustomMessageHandlerTest : public testing::Test {
protected:
    Doorbell m_Host;
};

} // namespace

TEST_F(CCustomMessageHandlerTest, HasNoWindowUntilItIsGivenOne) {
    CCustomMessageHandler handler;
    EXPECT_EQ(handler.GetHWnd(), nullptr);
    handler.SetHWnd(WindowNumber(7));
    EXPECT_EQ(handler.GetHWnd(), WindowNumber(7));
    EXPECT_EQ(CCustomMessageHandler(WindowNumber(8)).GetHWnd(), WindowNumber(8));
}

TEST_F(CCustomMessageHandlerTest, CopiesShareTheWindow) {
    CCustomMessageHandler const handler(WindowNumber(7));
    CCustomMessageHandler const copy(handler);
    CCustomMessageHandler assigned;
    assigned = handler;
    EXPECT_EQ(copy.GetHWnd(), WindowNumber(7));
    EXPECT_EQ(assigned.GetHWnd(), WindowNumber(7));
}

TEST_F(CCustomMessageHandlerTest, SendsAndHandsTheAnswerBack) {
    m_Host.m_SendResult = -81985529216486896;
    CCustomMessageHandler handler(WindowNumber(7));
    EXPECT_EQ(
        handler.CMHSendMessage(0x401, 0xFFFFFFFFFFFFFFFF, -0x7FFFFFFFFFFFFFFF), -81985529216486896);
    EXPECT_EQ(m_Host.Take(), Messages{"send 7 0x401 18446744073709551615 -9223372036854775807"});
}

TEST_F(CCustomMessageHandlerTest, PostsAndHandsTheResultBack) {
    CCustomMessageHandler handler(WindowNumber(7));
    m_Host.m_PostResult = 23;
    EXPECT_EQ(handler.CMHPostMessage(0x402, 0xFFFFFFFFFFFFFFFF, -3), 23);
    m_Host.m_PostResult = 0;
    EXPECT_EQ(handler.CMHPostMessage(0x402, 1, 2), 0);
    EXPECT_EQ(
        m_Host.Take(), (Messages{"post 7 0x402 18446744073709551615 -3", "post 7 0x402 1 2"}));
}
