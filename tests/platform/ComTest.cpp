// Starting COM, making objects, texts and values, and the exception that a failed call becomes.
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "platform/ComPtr.h"
#include "platform/Xml.h"
#include "tests/platform/Host.h"

namespace {

HRESULT MakeDocument(void ** made) {
    return CoCreateInstance(
        CLSID_DOMDocument60, nullptr, CLSCTX_ALL, InterfaceId<IXMLDOMDocument2>, made);
}

// On a thread of its own, on which COM has not started.
template <typename Body>
void OnFreshThread(Body const & body) {
    std::thread(body).join();
}

} // namespace

TEST(ComTest, StartsAreCounted) {
    OnFreshThread([] {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_FALSE);
        CoUninitialize();
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        CoUninitialize();
    });
}

TEST(ComTest, OtherModeIsRefused) {
    OnFreshThread([] {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
        CoUninitialize();
    });
}

TEST(ComTest, NothingIsMadeBeforeTheStart) {
    OnFreshThread([] {
        void * made = &made;
        EXPECT_EQ(MakeDocument(&made), CO_E_NOTINITIALIZED);
        EXPECT_EQ(made, nullptr);
    });
}

TEST(ComTest, NothingIsMadeBehindTheEnd) {
    OnFreshThread([] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        CoUninitialize();
        void * made = nullptr;
        EXPECT_EQ(MakeDocument(&made), CO_E_NOTINITIALIZED);
    });
}

TEST(ComTest, MultiThreadedStartServesAllThreads) {
    OnFreshThread([] {
        ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        OnFreshThread([] {
            ComPtr<IXMLDOMDocument2> document;
            EXPECT_EQ(MakeDocument(document.ReceiveUntyped()), S_OK);
        });
        CoUninitialize();
    });
}

TEST(ComTest, UnknownClassAndUnknownInterfaceAreRefused) {
    OnFreshThread([] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        void * made = &made;
        CLSID const unknown = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
        EXPECT_EQ(
            CoCreateInstance(unknown, nullptr, CLSCTX_ALL, InterfaceId<IUnknown>, &made),
            REGDB_E_CLASSNOTREG);
        EXPECT_EQ(made, nullptr);
        EXPECT_EQ(
            CoCreateInstance(
                CLSID_DOMDocument60, nullptr, CLSCTX_ALL, InterfaceId<IXMLDOMElement>, &made),
            E_NOINTERFACE);
        EXPECT_EQ(made, nullptr);
        CoUninitialize();
    });
}

TEST(ComTest, ObjectIsRunningFromTheStart) {
    OnFreshThread([] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        {
            ComPtr<IXMLDOMDocument2> document;
            ASSERT_EQ(MakeDocument(document.ReceiveUntyped()), S_OK);
            EXPECT_EQ(OleRun(document.Get()), S_OK);
        }
        CoUninitialize();
    });
}

TEST(ComTest, ReferencesAreCounted) {
    OnFreshThread([] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        ComPtr<IXMLDOMDocument2> document;
        ASSERT_EQ(MakeDocument(document.ReceiveUntyped()), S_OK);
        EXPECT_EQ(document->AddRef(), 2u);
        EXPECT_EQ(document->Release(), 1u);
        {
            ComPtr<IXMLDOMDocument2> const copy = document;
            EXPECT_EQ(document->AddRef(), 3u);
            EXPECT_EQ(document->Release(), 2u);
        }
        EXPECT_EQ(document->AddRef(), 2u);
        EXPECT_EQ(document->Release(), 1u);
        document.Reset();
        CoUninitialize();
    });
}

TEST(ComTest, TextKnowsItsLength) {
    BSTR const text = SysAllocString(L"12345");
    EXPECT_EQ(std::wstring(text), L"12345");
    EXPECT_EQ(SysStringLen(text), 5u);
    SysFreeString(text);
    BSTR const withNul = SysAllocStringLen(L"a\0b", 3);
    EXPECT_EQ(SysStringLen(withNul), 3u);
    EXPECT_EQ(std::wstring(withNul, 4), std::wstring(L"a\0b\0", 4));
    SysFreeString(withNul);
}

TEST(ComTest, NullTextIsEmpty) {
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    SysFreeString(nullptr);
}

TEST(ComTest, ClearedValueIsEmpty) {
    VARIANT value;
    VariantInit(&value);
    EXPECT_EQ(value.vt, VT_EMPTY);
    value.vt = VT_BSTR;
    value.bstrVal = SysAllocString(L"text");
    EXPECT_EQ(VariantClear(&value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
}

TEST(ComTest, PublishedSizesHold) {
    EXPECT_EQ(sizeof(VARIANT), 24u);
    EXPECT_EQ(sizeof(GUID), 16u);
}

TEST(ComPtrTest, EmptyReferenceIsAnErrorToUse) {
    ComPtr<IXMLDOMElement> const empty;
    try {
        empty->AddRef();
        ADD_FAILURE();
    } catch (_com_error const & failure) {
        EXPECT_EQ(failure.Error(), E_POINTER);
        EXPECT_EQ(failure.ErrorInfo(), nullptr);
    }
    EXPECT_FALSE(QueryFor<IXMLDOMNode>(empty));
}
