// A thread's message queue and the windows that stand for it.
//
// Every thread that makes a window, sends or pumps has one queue, which ends with the thread. Each
// function of a queue says who may call it. No two queues are ever locked together, and no lock is
// held while a window's procedure runs.
#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Messaging.h"
#include "platform/linux/WakeSet.h"

class MessageQueue;

struct Window {
    WNDPROC procedure;
    ATOM windowClass;
    std::shared_ptr<MessageQueue> queue;
    HWND handle = nullptr;
    // Written by the owner's thread under the queue's lock.
    bool isGone = false;
    // Belongs to the owner's thread.
    bool isEnding = false;
};

// One SendMessageA under way. It lives in the sender's frame: nobody touches it once it is closed.
struct SentMessage {
    std::shared_ptr<Window> window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    std::shared_ptr<MessageQueue> sender;
    // No value when closed: the window went before it had answered.
    std::optional<LRESULT> result;
    // Written under the sender's lock, and read without by a sender that does not sleep yet.
    std::atomic<bool> isClosed = false;
};

// In place of a window: the messages that were posted to no window.
inline HWND const THREAD_MESSAGES = reinterpret_cast<HWND>(-1LL);

// Which posted messages a pump wants. Both limits zero: all numbers.
struct MessageFilter {
    HWND window;
    UINT first;
    UINT last;

    bool Admits(MSG const & message) const;
};

// Sends messages of its own to one window whenever its descriptor is readable. It stays in force
// until it is detached or its window goes.
class MessageSource {
public:
    explicit MessageSource(std::shared_ptr<Window> target) : m_Target(std::move(target)) {}
    MessageSource(MessageSource const &) = delete;
    MessageSource & operator=(MessageSource const &) = delete;
    virtual ~MessageSource() = default;

    std::shared_ptr<Window> const & Target() const { return m_Target; }

    virtual int Descriptor() const = 0;

    // On the thread of the window, without a lock. Calls its procedure for everything that has
    // come; never waits.
    virtual void Serve() = 0;

private:
    std::shared_ptr<Window> const m_Target;
};

class MessageQueue : public std::enable_shared_from_this<MessageQueue> {
public:
    MessageQueue() = default;
    MessageQueue(MessageQueue const &) = delete;
    MessageQueue & operator=(MessageQueue const &) = delete;

    // The calling thread's. While the thread ends it is an empty one that lasts for the call.
    static std::shared_ptr<MessageQueue> OfThisThread();

    // Any thread. ERROR_SUCCESS or why not: the window is gone or the queue is full. `window` is
    // null for a message to the thread itself.
    DWORD Post(Window const * window, MSG const & message);

    // Any thread but the owner. False: the window is gone. True: the owner will close `sent`.
    bool Deliver(SentMessage & sent);

    // Any thread. Closes a message that this queue's thread has sent; the last touch of it.
    void Answer(SentMessage & sent, std::optional<LRESULT> result);

    // Any thread. ERROR_SUCCESS or why not: the window is gone, or no descriptor could be had.
    DWORD Attach(std::shared_ptr<MessageSource> const & source);
    void Detach(MessageSource const & source);

    // What follows is for the owner's thread alone.

    // Serves the messages sent to this thread until `sent`, which was delivered to another, is
    // closed.
    void Await(SentMessage const & sent);
    void ServeSentMessages();
    void ServeSources();

    // Whether the procedure that runs now was called for a message of another thread.
    bool IsServingSent() const { return m_ServingSent; }

    void PostQuit(int exitCode);
    std::optional<MSG> Take(MessageFilter const & filter, bool remove);

    // Blocks until there is something to serve or to take. False: no descriptor could be had.
    bool Wait(MessageFilter const & filter);

    // Readable while a message waits; made at the first call, and the same from then on. -1: no
    // descriptor could be had. Any thread.
    int Descriptor();

    // Keeps the window's handle, to end it with the thread.
    void Own(Window const & window);

    // The window is gone for every thread when this returns: its posted messages are dropped and
    // its senders let go.
    void Disown(Window & window);

    // As Disown for every window. Nothing is delivered or posted any more.
    void Close();

private:
    using Posted = std::deque<MSG>;

    SentMessage * NextSentMessage();

    // With the lock held.
    Posted::iterator FindPosted(MessageFilter const & filter);
    std::vector<SentMessage *> ExtractSentTo(Window const & window);
    bool IsAwake();
    void DetachAllOf(Window const & window);
    void ShowState();

    // Descriptors instead of a condition variable, so that a host can wait for them among others.
    std::optional<WakeSet> m_Wake;

    std::mutex m_Mutex;
    std::condition_variable m_SentOrClosed;
    std::deque<SentMessage *> m_Sent;
    Posted m_Posted;
    std::vector<std::shared_ptr<MessageSource>> m_Sources;
    // Beside m_Sources, so that a pump without any needs no lock to know.
    std::atomic<bool> m_HasSources = false;
    std::optional<int> m_QuitCode;
    bool m_IsClosed = false;

    std::vector<HWND> m_Windows;
    bool m_ServingSent = false;
};
