// Window classes and the life of a window.
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/Messaging.h"
#include "tests/platform/Host.h"
#include "tests/platform/TestWindow.h"

namespace {

constexpr UINT RING = WM_APP + 20;

struct Heard {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;

    bool operator==(Heard const &) const = default;
};

template <typename Call>
DWORD ErrorOf(Call call) {
    SetLastError(0);
    call();
    return GetLastError();
}

} // namespace

class WindowTest : public testing::Test {
protected:
    WindowTest() {
        RegisterTestClass();
        ThreadHandler() = [this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
            m_Heard.push_back({window, message, wParam, lParam});
            return DefWindowProcA(window, message, wParam, lParam);
        };
    }
    ~WindowTest() override { ThreadHandler() = nullptr; }

    std::vector<Heard> m_Heard;
};

TEST_F(WindowTest, ClassIsRegisteredOnceUnderItsNameInAnyCase) {
    EXPECT_NE(RegisterTestClass("Another"), 0);
    EXPECT_EQ(RegisterTestClass("ANOTHER"), 0);
    EXPECT_EQ(GetLastError(), ERROR_CLASS_ALREADY_EXISTS);
    EXPECT_TRUE(UnregisterClassA("another", nullptr));
    EXPECT_NE(RegisterTestClass("Another"), 0);
    EXPECT_TRUE(UnregisterClassA("Another", nullptr));
}

TEST_F(WindowTest, ClassNeedsAName) {
    EXPECT_EQ(RegisterTestClass(nullptr), 0);
    EXPECT_EQ(RegisterTestClass(""), 0);
}

TEST_F(WindowTest, AtomStandsForItsClass) {
    auto const atom = RegisterTestClass("ByAtom");
    auto const * const name = reinterpret_cast<char const *>(static_cast<UINT_PTR>(atom));
    HWND const window = MakeTestWindow(name);
    EXPECT_NE(window, nullptr);
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_TRUE(UnregisterClassA(name, nullptr));
}

TEST_F(WindowTest, UnknownClassIsRefused) {
    EXPECT_EQ(MakeTestWindow("no such class"), nullptr);
    // Wine says that the class does not exist.
    if (!UnderWine()) {
        EXPECT_EQ(GetLastError(), ERROR_CANNOT_FIND_WND_CLASS);
    }
}

TEST_F(WindowTest, UnknownClassCannotBeUnregistered) {
    // Wine answers with success and leaves its own error code.
    if (!UnderWine()) {
        EXPECT_FALSE(UnregisterClassA("no such class", nullptr));
        EXPECT_EQ(GetLastError(), ERROR_CLASS_DOES_NOT_EXIST);
    }
    EXPECT_EQ(MakeTestWindow("no such class"), nullptr);
}

TEST_F(WindowTest, ClassStaysWhileAWindowIsOfIt) {
    RegisterTestClass("Held");
    HWND const window = MakeTestWindow("Held");
    EXPECT_FALSE(UnregisterClassA("Held", nullptr));
    EXPECT_EQ(GetLastError(), ERROR_CLASS_HAS_WINDOWS);
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_TRUE(UnregisterClassA("Held", nullptr));
}

TEST_F(WindowTest, WindowLivesFromItsMakingToItsEnd) {
    HWND const window = MakeTestWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(IsWindow(window));
    EXPECT_TRUE(DestroyWindow(window));
    EXPECT_FALSE(IsWindow(window));
    EXPECT_FALSE(IsWindow(nullptr));
}

TEST_F(WindowTest, HandleIsNotGivenOutAgainAtOnce) {
    HWND const first = MakeTestWindow();
    DestroyWindow(first);
    HWND const second = MakeTestWindow();
    EXPECT_NE(first, second);
    EXPECT_FALSE(IsWindow(first));
    DestroyWindow(second);
}

TEST_F(WindowTest, EndIsToldToTheProcedureWhileTheWindowIsThere) {
    bool wasThere = false;
    ThreadHandler() = [&](HWND window, UINT message, WPARAM, LPARAM) {
        wasThere = message == WM_DESTROY && IsWindow(window);
        return LRESULT{0};
    };
    DestroyWindow(MakeTestWindow());
    EXPECT_TRUE(wasThere);
}

TEST_F(WindowTest, EndIsToldOnce) {
    HWND const window = MakeTestWindow();
    DestroyWindow(window);
    EXPECT_EQ(m_Heard, (std::vector<Heard>{{window, WM_DESTROY, 0, 0}}));
}

TEST_F(WindowTest, EndedWindowCannotBeEndedAgain) {
    HWND const window = MakeTestWindow();
    DestroyWindow(window);
    for (HWND const gone : {window, HWND{}}) {
        SetLastError(0);
        EXPECT_FALSE(DestroyWindow(gone));
        // Wine takes it for a window of another thread.
        EXPECT_EQ(GetLastError(), UnderWine() ? ERROR_ACCESS_DENIED : ERROR_INVALID_WINDOW_HANDLE);
    }
}

TEST_F(WindowTest, OnlyItsOwnThreadEndsAWindow) {
    HWND const window = MakeTestWindow();
    BOOL ended = TRUE;
    DWORD error = 0;
    std::thread([&] { error = ErrorOf([&] { ended = DestroyWindow(window); }); }).join();
    EXPECT_FALSE(ended);
    EXPECT_EQ(error, ERROR_ACCESS_DENIED);
    EXPECT_TRUE(IsWindow(window));
    EXPECT_EQ(m_Heard, std::vector<Heard>{});
    DestroyWindow(window);
}

TEST_F(WindowTest, WindowEndsWithItsThread) {
    HWND window = nullptr;
    std::thread([&] { window = MakeTestWindow(); }).join();
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(m_Heard, std::vector<Heard>{});
}

TEST_F(WindowTest, CloseEndsTheWindowByDefault) {
    HWND const window = MakeTestWindow();
    EXPECT_EQ(SendMessageA(window, WM_CLOSE, 0, 0), 0);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(m_Heard, (std::vector<Heard>{{window, WM_CLOSE, 0, 0}, {window, WM_DESTROY, 0, 0}}));
}

TEST_F(WindowTest, OtherMessagesHaveNoDefaultEffect) {
    HWND const window = MakeTestWindow();
    EXPECT_EQ(DefWindowProcA(window, RING, 1, 2), 0);
    EXPECT_TRUE(IsWindow(window));
    DestroyWindow(window);
}

TEST_F(WindowTest, DispatchRunsTheProcedureWithTheMessage) {
    HWND const window = MakeTestWindow();
    ThreadHandler() = [this](HWND target, UINT message, WPARAM wParam, LPARAM lParam) {
        m_Heard.push_back({target, message, wParam, lParam});
        return LRESULT{-7};
    };
    MSG const message{window, RING, ~WPARAM{0}, -2, 0, {0, 0}};
    EXPECT_FALSE(TranslateMessage(&message));
    EXPECT_EQ(DispatchMessageA(&message), -7);
    EXPECT_EQ(m_Heard, (std::vector<Heard>{{window, RING, ~WPARAM{0}, -2}}));
    ThreadHandler() = nullptr;
    DestroyWindow(window);
}

TEST_F(WindowTest, DispatchToNoWindowDoesNothing) {
    HWND const window = MakeTestWindow();
    DestroyWindow(window);
    m_Heard.clear();
    MSG const toGone{window, RING, 0, 0, 0, {0, 0}};
    MSG const toNone{nullptr, RING, 0, 0, 0, {0, 0}};
    EXPECT_EQ(DispatchMessageA(&toGone), 0);
    EXPECT_EQ(DispatchMessageA(&toNone), 0);
    EXPECT_EQ(m_Heard, std::vector<Heard>{});
}

TEST(TickCountTest, RunsInMillisecondsAndNeverStepsBack) {
    ULONGLONG const from = GetTickCount64();
    Sleep(100);
    ULONGLONG const to = GetTickCount64();
    EXPECT_GE(to - from, 84u);
    EXPECT_LT(to - from, 10'000u);
}
