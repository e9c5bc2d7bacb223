// The error object that a failing method leaves behind for its thread.
#pragma once

#include <string>

#include "platform/linux/ComObject.h"

// Leaves the reason (UTF-8) behind and returns `result`, for a method to end with. Without memory
// for it there is no error object.
HRESULT FailWith(HRESULT result, std::string const & reason);

// The half of an object that says that its methods leave an error object behind.
class ErrorSource final : public ISupportErrorInfo {
public:
    explicit ErrorSource(IUnknown & owner) : m_Owner(owner) {}

    HRESULT QueryInterface(IID const & id, void ** object) override {
        return m_Owner.QueryInterface(id, object);
    }
    ULONG AddRef() override { return m_Owner.AddRef(); }
    ULONG Release() override { return m_Owner.Release(); }
    HRESULT InterfaceSupportsErrorInfo(IID const &) override { return S_OK; }

private:
    IUnknown & m_Owner;
};
