// Messages to the host's window.
#include "output/CCustomMessageHandler.h"

CCustomMessageHandler::~CCustomMessageHandler() = default;

int CCustomMessageHandler::CMHPostMessage(unsigned int message, WPARAM wParam, LPARAM lParam) {
    return PostMessageA(m_hWnd, message, wParam, lParam);
}

LRESULT CCustomMessageHandler::CMHSendMessage(unsigned int message, WPARAM wParam, LPARAM lParam) {
    return SendMessageA(m_hWnd, message, wParam, lParam);
}
