// A window thread with the dialogs' service on it, and what the host hears.
#pragma once

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/Messaging.h"
#include "platform/Synchronization.h"
#include "siblings/Promptline.h"

class ServiceThread : private CPromptListener {
public:
    ServiceThread() {
        std::promise<void> ready;
        m_Thread = std::thread([&] { Run(ready); });
        try {
            ready.get_future().get();
        } catch (...) {
            m_Thread.join();
            throw;
        }
    }
    ServiceThread(ServiceThread const &) = delete;
    ServiceThread & operator=(ServiceThread const &) = delete;
    ~ServiceThread() override { End(); }

    void End() {
        m_IsOver = true;
        if (m_Thread.joinable()) m_Thread.join();
    }

    // On the window's thread; returns when done.
    void Do(std::function<void(CPromptService &)> const & step) {
        std::promise<void> done;
        {
            std::scoped_lock const lock(m_Guard);
            m_Step = [&](CPromptService & service) {
                step(service);
                done.set_value();
            };
        }
        done.get_future().get();
    }

    std::vector<CPromptRecord> Records() {
        std::scoped_lock const lock(m_Guard);
        return m_Records;
    }

private:
    void Run(std::promise<void> & ready) {
        std::unique_ptr<CPromptService> service;
        try {
            service.reset(new CPromptService(HWND{}, this));
        } catch (...) {
            ready.set_exception(std::current_exception());
            return;
        }
        ready.set_value();
        while (!m_IsOver) {
            Serve(*service);
            Sleep(1);
        }
    }

    void Serve(CPromptService & service) {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0)
            if (!service.TakesMessage(&message)) DispatchMessageA(&message);
        service.Serve();
        std::function<void(CPromptService &)> step;
        {
            std::scoped_lock const lock(m_Guard);
            step.swap(m_Step);
        }
        if (step) step(service);
    }

    void PromptShown() override {}
    void PromptGone() override {}
    void PromptEnded(CPromptRecord const & record) override {
        std::scoped_lock const lock(m_Guard);
        m_Records.push_back(record);
    }

    std::mutex m_Guard;
    std::vector<CPromptRecord> m_Records;
    std::function<void(CPromptService &)> m_Step;
    std::atomic<bool> m_IsOver = false;
    std::thread m_Thread;
};
