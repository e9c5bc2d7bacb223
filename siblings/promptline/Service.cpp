// The contract's functions, and the service that stands behind them on the window's thread.
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "siblings/promptline/Desk.h"
#include "siblings/promptline/Face.h"

CWnd * AppMainWnd() { return Desk::The().MainWindow(); }

int PostHelperDialogCreateMessage(CWnd *, long long state) {
    auto * const posted = reinterpret_cast<CHelperDialogState *>(static_cast<std::intptr_t>(state));
    return Desk::The().Post(Desk::CreateRequest, posted) ? 1 : 0;
}

int PostHelperDialogDestroyMessage(CWnd *) {
    return Desk::The().Post(Desk::DestroyRequest, nullptr) ? 1 : 0;
}

TS_STATUS WaitForHelperDialogCreationToComplete() {
    return Desk::The().WaitForCreation() ? TS_SUCCESS : TS_FAILED;
}

TS_STATUS WaitForHelperDialogDestructionToComplete() {
    return Desk::The().WaitForDestruction() ? TS_SUCCESS : TS_FAILED;
}

void ResetHelperDialogs() { Desk::The().Reset(); }

bool DialogTimedOut() { return Desk::The().TimedOut(); }

CPromptListener::~CPromptListener() = default;

namespace {

constexpr char WindowClass[] = "Promptline.Desk";

[[noreturn]] void Fail() {
    throw std::runtime_error(
        "the window behind the operator's questions cannot be made (error "
        + std::to_string(GetLastError())
        + "). Only one program part may serve them, in a session that may have windows.");
}

std::unique_ptr<Face> MakeFace(Pump & pump, CPromptListener * listener) {
    char const * const file = std::getenv("QN_PROMPTS");
    if (file != nullptr && *file != 0) return MakeFileFace(file);
    return MakeOperatorsFace(pump, listener);
}

} // namespace

// A window of one's own, so that the host's procedure needs to know nothing of the requests.
struct CPromptService::Parts {
    class Window {
    public:
        Window();
        Window(Window const &) = delete;
        Window & operator=(Window const &) = delete;
        ~Window();

        HWND handle = nullptr;
    };

    explicit Parts(CPromptListener * listener)
        : pump(window.handle), face(MakeFace(pump, listener)) {}

    static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Tick() { pump.Ticking(Desk::The().Tick()); }

    Window window;
    Pump pump;
    std::unique_ptr<Face> face;

    // Read by the window's procedure, on the window's thread.
    static Parts * inService;
};

CPromptService::Parts * CPromptService::Parts::inService = nullptr;

CPromptService::Parts::Window::Window() {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = Receive;
    windowClass.lpszClassName = WindowClass;
    if (RegisterClassA(&windowClass) == 0) Fail();
    handle =
        CreateWindowExA(0, WindowClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    if (handle != nullptr) return;
    UnregisterClassA(WindowClass, nullptr);
    Fail();
}

CPromptService::Parts::Window::~Window() {
    DestroyWindow(handle);
    UnregisterClassA(WindowClass, nullptr);
}

LRESULT CALLBACK
CPromptService::Parts::Receive(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    bool const isRequest = message >= Desk::CreateRequest && message <= Desk::SettleRequest;
    if (inService == nullptr || (!isRequest && !Pump::IsTick(message)))
        return DefWindowProcA(window, message, wParam, lParam);
    if (isRequest) Desk::The().Serve(message, lParam);
    // A modal dialog may have outlived the service.
    if (inService != nullptr) inService->Tick();
    return 0;
}

CPromptService::CPromptService(HWND mainWindow, CPromptListener * listener)
    : m_Parts(std::make_unique<Parts>(listener)) {
    Parts::inService = m_Parts.get();
    Desk::The().Open(m_Parts->window.handle, mainWindow, m_Parts->face.get(), listener);
}

CPromptService::~CPromptService() {
    Desk::The().Close();
    Parts::inService = nullptr;
}

void CPromptService::Abort() { Desk::The().AbortAll("aborted by the operator"); }

int CPromptService::Descriptor() const { return m_Parts->pump.Descriptor(); }

void CPromptService::Serve() {
    auto const [tick, input] = m_Parts->pump.Take();
    if (tick) m_Parts->Tick();
    if (input) m_Parts->face->Serve();
}

bool CPromptService::TakesMessage(void * message) {
    return m_Parts->face->TakesMessage(*static_cast<MSG *>(message));
}

void CPromptService::BeforeOutput() { m_Parts->face->BeforeOutput(); }
void CPromptService::AfterOutput() { m_Parts->face->AfterOutput(); }
