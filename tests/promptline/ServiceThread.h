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

    // On the window's thread, also inside a loop that a dialog runs; returns when done.
    void Do(std::function<void(CPromptService &)> const & step) {
        std::function<void()> const wrapped = [&] { step(*m_Service); };
        SendMessageA(m_Window, WM_APP, 0, reinterpret_cast<LPARAM>(&wrapped));
    }

    std::vector<CPromptRecord> Records() {
        std::scoped_lock const lock(m_Guard);
        return m_Records;
    }

private:
    static constexpr char WindowClass[] = "ServiceThread";

    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != WM_APP) return DefWindowProcA(window, message, wParam, lParam);
        (*reinterpret_cast<std::function<void()> const *>(lParam))();
        return 0;
    }

    void Run(std::promise<void> & ready) {
        try {
            m_Service.reset(new CPromptService(HWND{}, this));
        } catch (...) {
            ready.set_exception(std::current_exception());
            return;
        }
        WNDCLASSA windowClass = {};
        windowClass.lpfnWndProc = Receive;
        windowClass.lpszClassName = WindowClass;
        RegisterClassA(&windowClass);
        m_Window = CreateWindowExA(
            0, WindowClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        ready.set_value();
        while (!m_IsOver) {
            Serve();
            Sleep(1);
        }
        m_Service.reset();
        DestroyWindow(m_Window);
        UnregisterClassA(WindowClass, nullptr);
    }

    void Serve() {
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0)
            if (!m_Service->TakesMessage(&message)) DispatchMessageA(&message);
        m_Service->Serve();
    }

    void PromptShown() override {}
    void PromptGone() override {}
    void PromptEnded(CPromptRecord const & record) override {
        std::scoped_lock const lock(m_Guard);
        m_Records.push_back(record);
    }

    std::mutex m_Guard;
    std::vector<CPromptRecord> m_Records;
    // Of the window's thread, but for the window's handle, which stays.
    std::unique_ptr<CPromptService> m_Service;
    HWND m_Window = nullptr;
    std::atomic<bool> m_IsOver = false;
    std::thread m_Thread;
};
