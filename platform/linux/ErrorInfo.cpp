// One error object for each thread, until it is read or COM ends on the thread.
#include "platform/linux/ErrorInfo.h"

#include <utility>

#include "platform/ComPtr.h"
#include "platform/linux/ComText.h"

namespace {

class ErrorText : public ComObject<IErrorInfo> {
public:
    explicit ErrorText(std::string text) : m_Text(std::move(text)) {}

    HRESULT GetDescription(BSTR * text) override {
        if (!Clear(text)) return E_POINTER;
        return AsMethod([&] {
            *text = NewText(m_Text);
            return S_OK;
        });
    }

private:
    std::string const m_Text;
};

thread_local ComPtr<IErrorInfo> t_Error;

} // namespace

HRESULT FailWith(HRESULT result, std::string const & reason) {
    t_Error.Reset();
    AsMethod([&] {
        *t_Error.Receive() = new ErrorText(reason);
        return S_OK;
    });
    return result;
}

HRESULT GetErrorInfo(ULONG, IErrorInfo ** error) {
    if (error == nullptr) return E_POINTER;
    *error = t_Error.Detach();
    return *error != nullptr ? S_OK : S_FALSE;
}

HRESULT SetErrorInfo(ULONG, IErrorInfo * error) {
    t_Error = ComPtr<IErrorInfo>(error);
    return S_OK;
}
