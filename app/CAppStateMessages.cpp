// The run's shared state: the filter and the queue between the window's procedure and a test.
#include <deque>
#include <memory>
#include <utility>

#include "app/CAppState.h"
#include "messages/CWindowsMessage.h"
#include "platform/Synchronization.h"
#include "siblings/Keelbase.h"

using Message = std::unique_ptr<CWindowsMessage, void (*)(CWindowsMessage *)>;

CLockMgr CAppState::m_MessageQueueLock;
std::deque<Message> CAppState::m_MessageQueue;

void CAppState::SetMessageToFilter(unsigned int message) {
    CLockScope const lock(m_MessageQueueLock);
    while (PopWindowsMessage() != nullptr) {
    }
    m_sTheApp->m_MessageToFilter = message;
}

void CAppState::PushWindowsMessage(Message message) {
    {
        CLockScope const lock(m_MessageQueueLock);
        if (message->MessageCode() == MessageToFilter()) {
            m_MessageQueue.push_back(std::move(message));
            // Deliberate: nothing resets the event.
            // Pinned by CAppStateMessagesTest.EventStaysSignalledBehindTheLastMessage.
            SetEvent(MessageFilterEvent());
        }
    }
    // What was refused goes when others may have the lock, and before the caller goes on.
    message.reset();
}

Message CAppState::PopWindowsMessage() {
    CLockScope const lock(m_MessageQueueLock);
    Message oldest(nullptr, DeleteWindowsMessageFromHeap);
    if (m_MessageQueue.empty()) return oldest;
    oldest = std::move(m_MessageQueue.front());
    m_MessageQueue.pop_front();
    return oldest;
}
