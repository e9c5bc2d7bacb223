// How messages reach a thread.
//
// Posted messages wait in m_Posted. A sent one stays in its sender's frame and waits in m_Sent by
// address. Its owner closes it under the sender's lock, and that is the last touch: the sender
// cannot return before it has taken the same lock.
#include "platform/linux/MessageQueue.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <thread>
#include <utility>

#include "platform/Synchronization.h"
#include "platform/linux/Deadline.h"
#include "platform/linux/Windows.h"

namespace {

// As on Windows: a thread that has stopped pumping must not eat up the memory.
constexpr std::size_t POSTED_MESSAGES_AT_MOST = 10'000;

// Going to sleep and being woken takes about as long.
constexpr std::chrono::microseconds PATIENCE{100};

thread_local bool t_HasLostItsQueue = false;

struct QueueOfThread {
    QueueOfThread() = default;
    QueueOfThread(QueueOfThread const &) = delete;
    QueueOfThread & operator=(QueueOfThread const &) = delete;
    ~QueueOfThread() {
        t_HasLostItsQueue = true;
        queue->Close();
    }

    std::shared_ptr<MessageQueue> const queue = std::make_shared<MessageQueue>();
};

void Close(SentMessage & sent, std::optional<LRESULT> result) {
    auto const sender = sent.sender;
    sender->Answer(sent, result);
}

// Closes a served message however its procedure ends; a sender must never be left waiting.
class Reply {
public:
    explicit Reply(SentMessage & sent) : m_Sent(sent) {}
    Reply(Reply const &) = delete;
    Reply & operator=(Reply const &) = delete;
    ~Reply() { Close(m_Sent, m_Result); }

    void Give(LRESULT result) { m_Result = result; }

private:
    SentMessage & m_Sent;
    std::optional<LRESULT> m_Result;
};

// Sets a flag for a scope, however the scope ends.
class Raised {
public:
    explicit Raised(bool & flag) : m_Flag(flag), m_Before(std::exchange(flag, true)) {}
    Raised(Raised const &) = delete;
    Raised & operator=(Raised const &) = delete;
    ~Raised() { m_Flag = m_Before; }

private:
    bool & m_Flag;
    bool const m_Before;
};

void Serve(SentMessage & sent) {
    // The sender's hold on the window ends with the reply.
    auto const window = sent.window;
    Reply reply(sent);
    reply.Give(window->procedure(window->handle, sent.message, sent.wParam, sent.lParam));
}

// Most answers come so soon that sleeping would only delay what follows.
void LookBeforeSleeping(SentMessage const & sent) {
    auto const end = std::chrono::steady_clock::now() + PATIENCE;
    while (!sent.isClosed && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
}

void LetGo(std::vector<SentMessage *> const & unanswered) {
    for (auto * const sent : unanswered) {
        Close(*sent, std::nullopt);
    }
}

} // namespace

bool MessageFilter::Admits(MSG const & posted) const {
    bool const fromWindow = window == nullptr || window == posted.hwnd
                            || (window == THREAD_MESSAGES && posted.hwnd == nullptr);
    bool const inRange =
        (first == 0 && last == 0) || (first <= posted.message && posted.message <= last);
    return fromWindow && inRange;
}

std::shared_ptr<MessageQueue> MessageQueue::OfThisThread() {
    if (t_HasLostItsQueue) {
        auto const forThisCall = std::make_shared<MessageQueue>();
        forThisCall->Close();
        return forThisCall;
    }
    thread_local QueueOfThread const ofThread;
    return ofThread.queue;
}

DWORD MessageQueue::Post(Window const * window, MSG const & message) {
    std::scoped_lock const lock(m_Mutex);
    if (m_IsClosed || (window && window->isGone)) {
        return ERROR_INVALID_WINDOW_HANDLE;
    }
    if (m_Posted.size() >= POSTED_MESSAGES_AT_MOST) {
        return ERROR_NOT_ENOUGH_QUOTA;
    }
    m_Posted.push_back(message);
    ShowState();
    return ERROR_SUCCESS;
}

bool MessageQueue::Deliver(SentMessage & sent) {
    std::scoped_lock const lock(m_Mutex);
    if (m_IsClosed || sent.window->isGone) {
        return false;
    }
    m_Sent.push_back(&sent);
    ShowState();
    m_SentOrClosed.notify_one();
    return true;
}

void MessageQueue::Answer(SentMessage & sent, std::optional<LRESULT> result) {
    std::scoped_lock const lock(m_Mutex);
    sent.result = result;
    sent.isClosed = true;
    m_SentOrClosed.notify_one();
}

void MessageQueue::Await(SentMessage const & sent) {
    LookBeforeSleeping(sent);
    std::unique_lock lock(m_Mutex);
    for (;;) {
        m_SentOrClosed.wait(lock, [&] { return sent.isClosed || !m_Sent.empty(); });
        if (sent.isClosed) {
            return;
        }
        lock.unlock();
        ServeSentMessages();
        lock.lock();
    }
}

void MessageQueue::ServeSentMessages() {
    while (auto * const sent = NextSentMessage()) {
        Raised const serving(m_ServingSent);
        Serve(*sent);
    }
}

void MessageQueue::ServeSources() {
    if (!m_HasSources) {
        return;
    }
    // A copy: a procedure may register, withdraw and pump.
    std::unique_lock lock(m_Mutex);
    auto const sources = m_Sources;
    lock.unlock();
    for (auto const & source : sources) {
        source->Serve();
    }
}

SentMessage * MessageQueue::NextSentMessage() {
    std::scoped_lock const lock(m_Mutex);
    if (m_Sent.empty()) {
        return nullptr;
    }
    auto * const sent = m_Sent.front();
    m_Sent.pop_front();
    ShowState();
    return sent;
}

void MessageQueue::PostQuit(int exitCode) {
    std::scoped_lock const lock(m_Mutex);
    m_QuitCode = exitCode;
    ShowState();
}

MessageQueue::Posted::iterator MessageQueue::FindPosted(MessageFilter const & filter) {
    return std::find_if(m_Posted.begin(), m_Posted.end(), [&](MSG const & posted) {
        return filter.Admits(posted);
    });
}

std::optional<MSG> MessageQueue::Take(MessageFilter const & filter, bool remove) {
    std::scoped_lock const lock(m_Mutex);
    std::optional<MSG> message;
    if (auto const found = FindPosted(filter); found != m_Posted.end()) {
        message = *found;
        if (remove) {
            m_Posted.erase(found);
        }
    } else if (m_QuitCode) {
        message = MSG{nullptr, WM_QUIT, static_cast<WPARAM>(*m_QuitCode), 0, 0, {0, 0}};
        if (remove) {
            m_QuitCode.reset();
        }
    }
    ShowState();
    return message;
}

bool MessageQueue::Wait(MessageFilter const & filter) {
    pollfd readable{Descriptor(), POLLIN, 0};
    if (readable.fd < 0) {
        return false;
    }
    {
        std::scoped_lock const lock(m_Mutex);
        if (!m_Sent.empty() || m_QuitCode || FindPosted(filter) != m_Posted.end()) {
            return true;
        }
        // What the filter holds back must not end the wait; whatever comes sets the signal again.
        m_Wake->OfQueue().Reset();
    }
    return Deadline(INFINITE).Poll(&readable, 1);
}

bool MessageQueue::IsAwake() {
    if (m_IsClosed) {
        return false;
    }
    if (!m_Wake) {
        m_Wake.emplace();
        if (!m_Wake->IsOpen()) {
            m_Wake.reset();
            return false;
        }
        ShowState();
    }
    return true;
}

int MessageQueue::Descriptor() {
    std::scoped_lock const lock(m_Mutex);
    return IsAwake() ? m_Wake->Descriptor() : -1;
}

DWORD MessageQueue::Attach(std::shared_ptr<MessageSource> const & source) {
    std::scoped_lock const lock(m_Mutex);
    if (m_IsClosed || source->Target()->isGone) {
        return ERROR_INVALID_PARAMETER;
    }
    m_Sources.push_back(source);
    if (!IsAwake() || !m_Wake->Add(source->Descriptor())) {
        m_Sources.pop_back();
        return ERROR_NOT_ENOUGH_MEMORY;
    }
    m_HasSources = true;
    return ERROR_SUCCESS;
}

void MessageQueue::Detach(MessageSource const & source) {
    std::scoped_lock const lock(m_Mutex);
    auto const isMeant = [&](auto const & other) { return other.get() == &source; };
    if (std::erase_if(m_Sources, isMeant) != 0) {
        m_Wake->Remove(source.Descriptor());
    }
    m_HasSources = !m_Sources.empty();
}

void MessageQueue::DetachAllOf(Window const & window) {
    std::erase_if(m_Sources, [&](auto const & source) {
        bool const isOfWindow = source->Target().get() == &window;
        if (isOfWindow) {
            m_Wake->Remove(source->Descriptor());
        }
        return isOfWindow;
    });
    m_HasSources = !m_Sources.empty();
}

void MessageQueue::Own(Window const & window) { m_Windows.push_back(window.handle); }

void MessageQueue::Disown(Window & window) {
    RemoveWindow(window.handle);
    std::erase(m_Windows, window.handle);
    std::vector<SentMessage *> unanswered;
    {
        std::scoped_lock const lock(m_Mutex);
        window.isGone = true;
        std::erase_if(m_Posted, [&](MSG const & posted) { return posted.hwnd == window.handle; });
        unanswered = ExtractSentTo(window);
        DetachAllOf(window);
        ShowState();
    }
    LetGo(unanswered);
    LeaveWindowClass(window.windowClass);
}

void MessageQueue::Close() {
    {
        std::scoped_lock const lock(m_Mutex);
        m_IsClosed = true;
    }
    auto const windows = m_Windows;
    for (auto const handle : windows) {
        Disown(*LookUpWindow(handle));
    }
}

std::vector<SentMessage *> MessageQueue::ExtractSentTo(Window const & window) {
    auto const toOthers =
        std::stable_partition(m_Sent.begin(), m_Sent.end(), [&](SentMessage const * sent) {
            return sent->window.get() == &window;
        });
    std::vector<SentMessage *> const extracted(m_Sent.begin(), toOthers);
    m_Sent.erase(m_Sent.begin(), toOthers);
    return extracted;
}

void MessageQueue::ShowState() {
    if (!m_Wake) {
        return;
    }
    if (m_Sent.empty() && m_Posted.empty() && !m_QuitCode) {
        m_Wake->OfQueue().Reset();
    } else {
        m_Wake->OfQueue().Set();
    }
}
