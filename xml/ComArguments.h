// What is handed to a component, or received from one, for a scope.
#pragma once

#include <string_view>

#include "platform/ComPtr.h"

// A text as an argument. Throws _com_error E_OUTOFMEMORY when it cannot be allocated; null stays
// null.
class TextArgument {
public:
    explicit TextArgument(wchar_t const * text) : m_Text(SysAllocString(text)) {
        if (m_Text == nullptr && text != nullptr) throw _com_error(E_OUTOFMEMORY);
    }
    TextArgument(TextArgument const &) = delete;
    TextArgument & operator=(TextArgument const &) = delete;
    ~TextArgument() { SysFreeString(m_Text); }

    BSTR Get() const { return m_Text; }

private:
    BSTR const m_Text;
};

// A received value.
class Value {
public:
    Value() { VariantInit(&m_Value); }
    // A text, null among them.
    explicit Value(wchar_t const * text) : Value() {
        m_Value.bstrVal = SysAllocString(text);
        m_Value.vt = VT_BSTR;
        if (m_Value.bstrVal == nullptr && text != nullptr) throw _com_error(E_OUTOFMEMORY);
    }
    // An object, with a reference.
    explicit Value(IDispatch * object) : Value() {
        object->AddRef();
        m_Value.pdispVal = object;
        m_Value.vt = VT_DISPATCH;
    }
    Value(Value const &) = delete;
    Value & operator=(Value const &) = delete;
    ~Value() { VariantClear(&m_Value); }

    VARIANT const & Get() const { return m_Value; }
    VARIANT * Receive() { return &m_Value; }

private:
    VARIANT m_Value;
};

// What a received text holds. Null reads as an empty one.
inline std::wstring_view ViewOf(BSTR text) {
    return text != nullptr ? std::wstring_view(text, SysStringLen(text)) : std::wstring_view();
}

// A received text.
class ReceivedText {
public:
    ReceivedText() = default;
    ReceivedText(ReceivedText const &) = delete;
    ReceivedText & operator=(ReceivedText const &) = delete;
    ~ReceivedText() { SysFreeString(m_Text); }

    BSTR * Receive() { return &m_Text; }
    std::wstring_view View() const { return ViewOf(m_Text); }

private:
    BSTR m_Text = nullptr;
};
