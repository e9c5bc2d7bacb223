// What a document asks of the components, call by call, and what becomes of each failing call.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "support/Allocations.h"
#include "tests/xml/FakeDomFixture.h"

MORVEX_WRAPPED(GetErrorInfo)
MORVEX_WRAPPED(SysAllocString)
MORVEX_WRAPPED(FormatMessageA)
MORVEX_WRAPPED(LocalAlloc)

namespace {

using Calls = std::vector<std::string>;

// The system has no text for any code.
auto WithoutSystemTexts() {
    return Diversion(wrapped_FormatMessageA, [](auto...) { return DWORD{0}; });
}

class CDOMDocCallsTest : public FakeDomFixture {
protected:
    std::string EndOfMaking() {
        return EndOf([this] { Make(); });
    }

    // What the constructor makes of a call that fails.
    std::string EndOfMakingWithout(char const * call) {
        m_Dom.Fail(call, AFailure);
        std::string const end = EndOfMaking();
        m_Dom.Succeed();
        return end;
    }
};

constexpr char Wrapped[] =
    "DOM Doc Create Exception (schema: \"limits.xsd\", namespace \"urn:limits\") - ";

} // namespace

TEST_F(CDOMDocCallsTest, DocumentIsMadeInThisOrder) {
    Make();
    EXPECT_EQ(
        m_Dom.m_Calls,
        (Calls{
            "CoCreateInstance document 23 IUnknown", "OleRun", "QueryInterface",
            "CoCreateInstance cache 23 IUnknown", "OleRun", "QueryInterface",
            "add urn:limits limits.xsd", "schemas object", "async 0", "validateOnParse 1",
            "resolveExternals 1", "setProperty SelectionLanguage XPath"}));
}

TEST_F(CDOMDocCallsTest, DocumentCanBeMadeWithoutValidating) {
    auto const doc = Make();
    m_Dom.m_Calls.clear();
    doc->CreateDocument(L"other.xsd", L"", false);
    EXPECT_EQ(m_Dom.Count("add  other.xsd"), 1);
    EXPECT_EQ(m_Dom.Count("validateOnParse 0"), 1);
    EXPECT_EQ(m_Dom.Count("resolveExternals 0"), 1);
}

TEST_F(CDOMDocCallsTest, NewDocumentTakesThePlaceOfTheOldOne) {
    auto const doc = Make();
    int const live = g_LiveDoubles;
    doc->CreateDocument(L"limits.xsd", L"urn:limits", true);
    EXPECT_EQ(g_LiveDoubles, live);
}

TEST_F(CDOMDocCallsTest, MembersAreSetWhenTheDocumentStands) {
    auto const doc = Make();
    EXPECT_EQ(*doc->m_Schema, L"limits.xsd");
    EXPECT_STREQ(doc->SchemaNamespace(), L"urn:limits");
    EXPECT_TRUE(doc->GetNodes().empty());
    EXPECT_EQ(&doc->GetNodes(), doc->m_Nodes);
    EXPECT_EQ(doc->m_Level, 0);
    EXPECT_EQ(doc->XMLVersion(), 6u);
    EXPECT_EQ(CDOMDoc::CURRENT_MSXML_VERSION, 6u);
    EXPECT_FALSE(doc->DOMError());
}

TEST_F(CDOMDocCallsTest, DocumentThatCannotBeMadeHasATextOfItsOwn) {
    std::string const text = "Couldn't create XML DOM document.  (status=0x80041234 (2147750452))";
    EXPECT_EQ(EndOfMakingWithout("CoCreateInstance document"), text);
    EXPECT_EQ(EndOfMakingWithout("OleRun"), text);
    EXPECT_EQ(EndOfMakingWithout("QueryInterface"), text);
}

TEST_F(CDOMDocCallsTest, CacheThatCannotBeMadeHasATextOfItsOwn) {
    std::string const text = "Couldn't create Schema Collection.  (status=0x80041234 (2147750452))";
    EXPECT_EQ(EndOfMakingWithout("CoCreateInstance cache"), text);
    for (char const * second : {"OleRun", "QueryInterface"}) {
        m_Dom.Fail(second, AFailure, 2);
        EXPECT_EQ(EndOfMaking(), text);
        m_Dom.Succeed();
    }
}

TEST_F(CDOMDocCallsTest, DocumentIsEmptyWhenItCannotBeMadeAnew) {
    auto const doc = Make();
    m_Dom.Fail("QueryInterface", AFailure);
    EndOf([&] { doc->CreateDocument(L"limits.xsd", L"urn:limits", true); });
    EXPECT_FALSE(doc->m_Document);
    EXPECT_FALSE(doc->DOMError());
    m_Dom.Succeed();
    for (auto const & call : std::vector<std::function<void()>>{
             [&] { doc->ValidateDoc(L"file.xml"); }, [&] { doc->GetRootElement(); },
             [&] { doc->AttachSchema(L"limits.xsd", L"urn:limits"); }, [&] { doc->ParseDoc(); }})
        EXPECT_EQ(EndOf(call), "_com_error 80004003");
}

TEST_F(CDOMDocCallsTest, FailedCallInTheConstructorIsWrapped) {
    auto const noTexts = WithoutSystemTexts();
    for (char const * call :
         {"add", "schemas", "async", "validateOnParse", "resolveExternals", "setProperty"}) {
        SCOPED_TRACE(call);
        EXPECT_EQ(EndOfMakingWithout(call), std::string(Wrapped) + "IDispatch error #4148");
    }
}

TEST_F(CDOMDocCallsTest, WrappedFailureBearsTheSystemsText) {
    Diversion const text(
        wrapped_FormatMessageA,
        [](DWORD, void const *, DWORD code, DWORD, char * buffer, DWORD, auto) {
            EXPECT_EQ(code, static_cast<DWORD>(AFailure));
            auto * const copy = static_cast<char *>(wrapped_LocalAlloc.Real(LMEM_FIXED, 16));
            std::strcpy(copy, "It failed.\r\n");
            std::memcpy(buffer, &copy, sizeof copy);
            return DWORD{12};
        });
    EXPECT_EQ(EndOfMakingWithout("add"), std::string(Wrapped) + "It failed.");
}

TEST_F(CDOMDocCallsTest, WrappedFailureWithoutAnyTextBearsItsCode) {
    auto const noTexts = WithoutSystemTexts();
    Diversion const noMemory(wrapped_LocalAlloc, [](auto...) { return HLOCAL{}; });
    EXPECT_EQ(EndOfMakingWithout("add"), std::string(Wrapped) + "COM Error Code 0x80041234");
}

TEST_F(CDOMDocCallsTest, RefusedSchemaIsAComError) {
    auto const doc = Make();
    m_Dom.Fail("add", AFailure);
    EXPECT_EQ(
        EndOf([&] { doc->AttachSchema(L"other.xsd", L"urn:limits"); }), "_com_error 80041234");
}

TEST_F(CDOMDocCallsTest, FailedCallOutsideOfTheConstructorIsAComError) {
    auto const doc = Make();
    for (char const * call :
         {"add", "schemas", "async", "validateOnParse", "resolveExternals", "setProperty"}) {
        SCOPED_TRACE(call);
        m_Dom.Fail(call, AFailure);
        EXPECT_EQ(
            EndOf([&] { doc->CreateDocument(L"limits.xsd", L"urn:limits", true); }),
            "_com_error 80041234");
        m_Dom.Succeed();
    }
}

TEST_F(CDOMDocCallsTest, ErrorObjectIsAskedForUnderTheDeclaringInterface) {
    struct Case {
        char const * call;
        IID declaring;
    };
    auto const doc = Make();
    for (auto const & [call, declaring] : {
             Case{"add", InterfaceId<IXMLDOMSchemaCollection>},
             Case{"schemas", InterfaceId<IXMLDOMDocument2>},
             Case{"async", InterfaceId<IXMLDOMDocument>},
             Case{"validateOnParse", InterfaceId<IXMLDOMDocument>},
             Case{"resolveExternals", InterfaceId<IXMLDOMDocument>},
             Case{"setProperty", InterfaceId<IXMLDOMDocument2>},
             Case{"load", InterfaceId<IXMLDOMDocument>},
             Case{"parseError", InterfaceId<IXMLDOMDocument>},
             Case{"errorCode", InterfaceId<IXMLDOMParseError>},
             Case{"validate", InterfaceId<IXMLDOMDocument2>},
             Case{"hasChildNodes", InterfaceId<IXMLDOMNode>},
         }) {
        SCOPED_TRACE(call);
        m_Dom.m_Explained = {IID{}};
        m_Dom.m_AskedForErrorsOf.clear();
        m_Dom.Fail(call, AFailure);
        EndOf([&] {
            doc->CreateDocument(L"limits.xsd", L"urn:limits", true);
            doc->ValidateDoc(L"file.xml");
            doc->ParseDoc();
        });
        m_Dom.Succeed();
        ASSERT_EQ(m_Dom.m_AskedForErrorsOf.size(), 1u);
        EXPECT_TRUE(m_Dom.m_AskedForErrorsOf.front() == declaring);
    }
}

TEST_F(CDOMDocCallsTest, ErrorObjectTravelsWithTheFailure) {
    auto const doc = Make();
    auto * const left = NewFakeError(m_Dom, 0);
    Diversion const errors(wrapped_GetErrorInfo, [left](ULONG reserved, IErrorInfo ** error) {
        EXPECT_EQ(reserved, 0u);
        left->AddRef();
        *error = reinterpret_cast<IErrorInfo *>(left);
        return S_OK;
    });
    m_Dom.Fail("load", AFailure);
    m_Dom.m_Explained = {InterfaceId<IXMLDOMDocument>};
    try {
        doc->ValidateDoc(L"file.xml");
        ADD_FAILURE();
    } catch (_com_error const & failure) {
        auto * const error = failure.ErrorInfo();
        EXPECT_EQ(reinterpret_cast<IXMLDOMParseError *>(error), left);
        error->Release();
    }
    m_Dom.m_Explained = {InterfaceId<IXMLDOMDocument2>};
    try {
        doc->ValidateDoc(L"file.xml");
        ADD_FAILURE();
    } catch (_com_error const & failure) {
        EXPECT_EQ(failure.ErrorInfo(), nullptr);
    }
    left->Release();
}

TEST_F(CDOMDocCallsTest, LackOfMemoryInTheConstructorPasses) {
    Make();
    bool isMade = false;
    for (std::size_t granted = 0; !isMade && granted < 200; ++granted) {
        AllocationWatch watch(granted);
        bool isOut = false;
        {
            std::wstring const empty;
            try {
                OpenDoc const doc(empty, empty);
                isMade = true;
            } catch (std::bad_alloc const &) {
                isOut = true;
            }
        }
        watch.End();
        EXPECT_TRUE(isMade || isOut);
        EXPECT_EQ(g_LiveDoubles, 0);
    }
    EXPECT_TRUE(isMade);
}

TEST_F(CDOMDocCallsTest, TextThatCannotBePassedOnIsLackOfMemory) {
    auto const doc = Make();
    Diversion const noTexts(wrapped_SysAllocString, [](auto...) { return BSTR{}; });
    EXPECT_EQ(EndOf([&] { doc->ValidateDoc(L"file.xml"); }), "_com_error 8007000E");
    EXPECT_EQ(
        EndOf([&] { doc->AttachSchema(L"limits.xsd", L"urn:limits"); }), "_com_error 8007000E");
}

TEST_F(CDOMDocCallsTest, FileIsLoadedAndThenValidated) {
    auto const doc = Make();
    m_Dom.m_Calls.clear();
    EXPECT_TRUE(doc->ValidateDoc(L"file.xml"));
    EXPECT_EQ(
        m_Dom.m_Calls,
        (Calls{"load file.xml", "parseError", "errorCode", "validate", "errorCode"}));
    EXPECT_FALSE(doc->DOMError());
    EXPECT_TRUE(doc->GetNodes().empty());
}

TEST_F(CDOMDocCallsTest, SecondFileIsLoadedLikeTheFirst) {
    auto const doc = Make();
    EXPECT_TRUE(doc->ValidateDoc(L"first.xml"));
    EXPECT_TRUE(doc->ValidateDoc(L"second.xml"));
    EXPECT_EQ(m_Dom.Count("load first.xml"), 1);
    EXPECT_EQ(m_Dom.Count("load second.xml"), 1);
}

TEST_F(CDOMDocCallsTest, NullNameIsPassedOnAsANullText) {
    auto const doc = Make();
    EXPECT_TRUE(doc->ValidateDoc(nullptr));
    EXPECT_EQ(m_Dom.Count("load null"), 1);
}

TEST_F(CDOMDocCallsTest, FileThatDoesNotLoadIsNotValidated) {
    auto const doc = Make();
    m_Dom.m_LoadCode = -1;
    m_Dom.m_Calls.clear();
    EXPECT_FALSE(doc->ValidateDoc(L"file.xml"));
    EXPECT_EQ(m_Dom.Count("validate"), 0);
    EXPECT_FALSE(doc->DOMError());
}

TEST_F(CDOMDocCallsTest, FileThatIsNotValidIsFalse) {
    auto const doc = Make();
    m_Dom.m_ValidateCode = -1;
    EXPECT_FALSE(doc->ValidateDoc(L"file.xml"));
    EXPECT_FALSE(doc->DOMError());
}

TEST_F(CDOMDocCallsTest, PositiveErrorCodePasses) {
    auto const doc = Make();
    m_Dom.m_LoadCode = 1;
    m_Dom.m_ValidateCode = 0x7FFFFFFF;
    EXPECT_TRUE(doc->ValidateDoc(L"file.xml"));
    EXPECT_EQ(m_Dom.Count("validate"), 1);
}

TEST_F(CDOMDocCallsTest, FailedCallWhileValidatingIsAComError) {
    auto const doc = Make();
    for (char const * call : {"load", "parseError", "errorCode", "validate"}) {
        SCOPED_TRACE(call);
        m_Dom.Fail(call, AFailure);
        EXPECT_EQ(EndOf([&] { doc->ValidateDoc(L"file.xml"); }), "_com_error 80041234");
        m_Dom.Succeed();
    }
    m_Dom.Fail("errorCode", AFailure, 2);
    EXPECT_EQ(EndOf([&] { doc->ValidateDoc(L"file.xml"); }), "_com_error 80041234");
}

TEST_F(CDOMDocCallsTest, MissingErrorObjectIsAnEmptyReference) {
    auto const doc = Make();
    m_Dom.m_HasNoErrorObject = true;
    EXPECT_EQ(EndOf([&] { doc->ValidateDoc(L"file.xml"); }), "_com_error 80004003");
}

TEST_F(CDOMDocCallsTest, RootThatCannotBeReadHasATextOfItsOwn) {
    auto const doc = Make();
    m_Dom.Fail("documentElement", AFailure);
    EXPECT_EQ(EndOf([&] { doc->GetRootElement(); }), "Couldn't get Root Element.");
}

TEST_F(CDOMDocCallsTest, RootIsEmptyWhenNothingIsLoaded) {
    auto const doc = Make();
    m_Dom.m_HasRoot = false;
    EXPECT_FALSE(doc->GetRootElement());
}

TEST_F(CDOMDocCallsTest, ErrorIsCheckedByTheSignOfItsCode) {
    auto const doc = Make();
    for (LONG const code : {-1, 0, 1}) {
        ComPtr<IXMLDOMParseError> error;
        *error.Receive() = NewFakeError(m_Dom, code);
        EXPECT_EQ(doc->CheckDocLoad(error), code >= 0);
    }
    ComPtr<IXMLDOMParseError> none;
    EXPECT_EQ(EndOf([&] { doc->CheckDocLoad(none); }), "_com_error 80004003");
}

TEST_F(CDOMDocCallsTest, CleanupReleasesTheErrorAndNothingElse) {
    auto const doc = Make();
    doc->FailedLoadCleanup();
    EXPECT_FALSE(doc->DOMError());
    *doc->m_ParseError.Receive() = NewFakeError(m_Dom, -1);
    EXPECT_EQ(&doc->DOMError(), &doc->m_ParseError);
    int const live = g_LiveDoubles;
    doc->FailedLoadCleanup();
    EXPECT_EQ(g_LiveDoubles, live - 1);
    EXPECT_FALSE(doc->DOMError());
    EXPECT_TRUE(doc->m_Document);
}

TEST_F(CDOMDocCallsTest, HookForDerivedClassesLooksAtNothing) {
    auto const doc = Make();
    m_Dom.m_Calls.clear();
    EXPECT_TRUE(doc->CanLoadDoc(nullptr, nullptr));
    EXPECT_TRUE(m_Dom.m_Calls.empty());
}

TEST_F(CDOMDocCallsTest, EndReleasesTheDocumentAndThenTheTexts) {
    auto doc = Make();
    *doc->m_ParseError.Receive() = NewFakeError(m_Dom, -1);
    std::vector<void const *> const expected = {doc->m_Nodes, doc->m_Schema, doc->m_Namespace};
    AllocationWatch watch;
    doc.reset();
    watch.End();
    EXPECT_EQ(g_LiveDoubles, 0);
    std::vector<void const *> released;
    for (void const * block : watch.Released())
        if (std::ranges::find(expected, block) != expected.end()) released.push_back(block);
    EXPECT_EQ(released, expected);
}
