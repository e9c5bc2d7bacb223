// Loading documents: what is accepted, what is refused, and what is said about it.
#include <string>

#include "tests/platform/XmlFixture.h"

namespace {

using Names = std::vector<std::wstring>;

constexpr HRESULT FILE_NOT_FOUND = static_cast<HRESULT>(0x800C0006);
constexpr HRESULT DTD_PROHIBITED = static_cast<HRESULT>(0xC00CE584);
constexpr HRESULT END_TAG_MISMATCH = static_cast<HRESULT>(0xC00CE56D);
constexpr HRESULT MISSING_ROOT = static_cast<HRESULT>(0xC00CE558);
constexpr HRESULT MAX_ELEMENT_DEPTH = static_cast<HRESULT>(0xC00CEE81);

// Elements of this depth.
std::string Nested(int depth) {
    std::string text;
    for (int i = 0; i != depth; ++i)
        text += "<a>";
    for (int i = 0; i != depth; ++i)
        text += "</a>";
    return text;
}

class XmlDocumentTest : public XmlFixture {
protected:
    void ExpectRefused(HRESULT result, HRESULT code) {
        EXPECT_EQ(result, S_FALSE);
        EXPECT_EQ(m_Successful, VARIANT_FALSE);
        XmlError const error = ParseError();
        EXPECT_LT(error.code, 0);
        EXPECT_FALSE(error.reason.empty());
        // Wine answers E_FAIL to everything.
        EXPECT_EQ(error.code, UnderWine() ? E_FAIL : code);
        ComPtr<IXMLDOMElement> root;
        EXPECT_EQ(m_Document->get_documentElement(root.Receive()), S_FALSE);
        EXPECT_FALSE(root);
    }
};

} // namespace

TEST_F(XmlDocumentTest, NewDocumentIsEmptyAndWithoutError) {
    ComPtr<IXMLDOMElement> root;
    EXPECT_EQ(m_Document->get_documentElement(root.Receive()), S_FALSE);
    EXPECT_FALSE(root);
    XmlError const error = ParseError();
    EXPECT_EQ(error.code, S_OK);
    EXPECT_EQ(error.reason, L"");
    EXPECT_EQ(error.line, 0);
    EXPECT_EQ(error.column, 0);
}

TEST_F(XmlDocumentTest, WellFormedFileIsLoaded) {
    EXPECT_EQ(Load("<?xml version=\"1.0\"?>\n<suite/>\n"), S_OK);
    EXPECT_EQ(m_Successful, VARIANT_TRUE);
    EXPECT_EQ(ParseError().code, S_OK);
    EXPECT_EQ(NameOf(QueryFor<IXMLDOMNode>(Root())), L"suite");
}

TEST_F(XmlDocumentTest, SecondFileTakesThePlaceOfTheFirst) {
    Load("<first/>");
    auto const first = Root();
    EXPECT_EQ(Load("<second/>"), S_OK);
    EXPECT_EQ(NameOf(QueryFor<IXMLDOMNode>(Root())), L"second");
    EXPECT_EQ(NameOf(QueryFor<IXMLDOMNode>(first)), L"first");
}

TEST_F(XmlDocumentTest, RefusedFileLeavesTheDocumentEmpty) {
    Load("<first/>");
    ExpectRefused(Load("<a><b></a>"), END_TAG_MISMATCH);
}

TEST_F(XmlDocumentTest, MissingFileIsRefusedWithoutAFailedCall) {
    ExpectRefused(LoadFile(m_Folder.Name("missing.xml")), FILE_NOT_FOUND);
}

TEST_F(XmlDocumentTest, FolderIsRefusedWithoutAFailedCall) {
    ExpectRefused(LoadFile(m_Folder.Path().wstring()), E_ACCESSDENIED);
}

TEST_F(XmlDocumentTest, EmptyFileHasNoRoot) { ExpectRefused(Load(""), MISSING_ROOT); }

TEST_F(XmlDocumentTest, NullNameLoadsNothing) {
    Load("<first/>");
    VARIANT nothing;
    VariantInit(&nothing);
    nothing.vt = VT_BSTR;
    nothing.bstrVal = nullptr;
    EXPECT_EQ(m_Document->load(nothing, &m_Successful), S_FALSE);
    EXPECT_EQ(m_Successful, VARIANT_FALSE);
    // Wine reports no error of the load; both have no valid document then.
    if (!UnderWine()) {
        EXPECT_EQ(ParseError().code, E_INVALIDARG);
    }
    XmlError error{};
    EXPECT_EQ(Validate(error), S_FALSE);
    EXPECT_EQ(error.code, static_cast<HRESULT>(E_XML_NOTWF));
}

TEST_F(XmlDocumentTest, ErrorTellsFileLineColumnAndReason) {
    EXPECT_EQ(Load("<suite>\n  <test></test>\n  <test></tset>\n</suite>\n"), S_FALSE);
    XmlError const error = ParseError();
    if (UnderWine()) {
        // Wine tells nothing but that there is an error.
        EXPECT_LT(error.code, 0);
        return;
    }
    EXPECT_EQ(error.line, 3);
    EXPECT_EQ(error.column, 16);
    EXPECT_NE(error.reason.find(L"tset"), std::wstring::npos) << error.reason.size();
    EXPECT_NE(error.url.find(L"document.xml"), std::wstring::npos);
}

TEST_F(XmlDocumentTest, DoctypeIsRefused) {
    if (UnderWine()) GTEST_SKIP() << "Wine accepts it";
    ExpectRefused(Load("<!DOCTYPE a [<!ELEMENT a ANY>]>\n<a/>"), DTD_PROHIBITED);
    EXPECT_EQ(ParseError().line, 1);
}

TEST_F(XmlDocumentTest, EntityIsNeitherDeclaredNorExpanded) {
    if (UnderWine()) GTEST_SKIP() << "Wine accepts it";
    ExpectRefused(
        Load("<!DOCTYPE a [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><a>&x;</a>"), DTD_PROHIBITED);
    ExpectRefused(Load("<a>&x;</a>"), static_cast<HRESULT>(0xC00CE57C));
}

TEST_F(XmlDocumentTest, PredefinedEntitiesAndReferencesToCharactersAreText) {
    EXPECT_EQ(Load("<a b='&lt;&amp;&gt;&quot;&apos;&#65;&#x42;'/>"), S_OK);
    EXPECT_EQ(TextValueOf(ItemOf(AttributesOf(Root()), 0)), L"<&>\"'AB");
}

TEST_F(XmlDocumentTest, ElementsMayNest256Deep) {
    EXPECT_EQ(Load(Nested(256)), S_OK);
    // Wine has a limit of its own.
    if (!UnderWine()) ExpectRefused(Load(Nested(257)), MAX_ELEMENT_DEPTH);
}

TEST_F(XmlDocumentTest, DeepNestingEndsInAnErrorAndNotInACrash) {
    if (UnderWine()) GTEST_SKIP() << "Wine has a limit of its own";
    ExpectRefused(Load(Nested(100'000)), MAX_ELEMENT_DEPTH);
}

TEST_F(XmlDocumentTest, TextOutsideOfAsciiIsRead) {
    EXPECT_EQ(
        Load("\xEF\xBB\xBF<a b='Pr\xC3\xBC"
             "fung \xE2\x82\xAC'/>"),
        S_OK);
    EXPECT_EQ(TextValueOf(ItemOf(AttributesOf(Root()), 0)), L"Pr\u00FCfung \u20AC");
}

TEST_F(XmlDocumentTest, DeclaredEncodingIsFollowed) {
    EXPECT_EQ(Load("<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xFC'/>"), S_OK);
    EXPECT_EQ(TextValueOf(ItemOf(AttributesOf(Root()), 0)), L"\u00FC");
}

TEST_F(XmlDocumentTest, BytesThatAreNoTextAreRefused) {
    EXPECT_EQ(Load("<a b='\xFF\xFE'/>"), S_FALSE);
    EXPECT_LT(ParseError().code, 0);
}

TEST_F(XmlDocumentTest, UndeclaredPrefixIsRefused) {
    if (UnderWine()) GTEST_SKIP() << "Wine accepts it";
    EXPECT_EQ(Load("<p:a/>"), S_FALSE);
    EXPECT_LT(ParseError().code, 0);
}

TEST_F(XmlDocumentTest, BothSeparatorsNameAFile) {
    auto const name = m_Folder.Write("folder/inner.xml", "<a/>");
    for (wchar_t const separator : {L'/', L'\\'}) {
        std::wstring alike = name;
        for (wchar_t & each : alike)
            if (each == L'/' || each == L'\\') each = separator;
        EXPECT_EQ(LoadFile(alike), S_OK);
    }
}

TEST_F(XmlDocumentTest, NothingIsFetchedOverANetwork) {
    if (ON_WINDOWS) GTEST_SKIP() << "Windows would try to";
    ExpectRefused(LoadFile(L"http://127.0.0.1:9/a.xml"), FILE_NOT_FOUND);
}

TEST_F(XmlDocumentTest, PropertyThatIsNotKnownIsRefused) {
    EXPECT_EQ(
        m_Document->setProperty(Bstr(L"SelectionLanguage"), Bstr(L"XPath").AsVariant()), S_OK);
    EXPECT_LT(m_Document->setProperty(Bstr(L"NoSuchProperty"), Bstr(L"1").AsVariant()), 0);
    EXPECT_LT(m_Document->setProperty(Bstr(L"SelectionLanguage"), Bstr(L"Klingon").AsVariant()), 0);
}

TEST_F(XmlDocumentTest, OneCountsAsTrue) {
    EXPECT_EQ(m_Document->put_validateOnParse(1), S_OK);
    EXPECT_EQ(m_Document->put_resolveExternals(1), S_OK);
    EXPECT_EQ(m_Document->put_validateOnParse(VARIANT_FALSE), S_OK);
    EXPECT_EQ(m_Document->put_resolveExternals(VARIANT_FALSE), S_OK);
}

TEST_F(XmlDocumentTest, FailedCallLeavesAnErrorObject) {
    if (UnderWine()) GTEST_SKIP() << "Wine never does";
    EXPECT_LT(m_Document->setProperty(Bstr(L"NoSuchProperty"), Bstr(L"1").AsVariant()), 0);
    auto const support = QueryFor<ISupportErrorInfo>(m_Document);
    ASSERT_TRUE(support);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(InterfaceId<IXMLDOMDocument2>), S_OK);
    ComPtr<IErrorInfo> error;
    ASSERT_EQ(GetErrorInfo(0, error.Receive()), S_OK);
    BSTR text = nullptr;
    EXPECT_EQ(error->GetDescription(&text), S_OK);
    EXPECT_NE(Take(text).find(L"NoSuchProperty"), std::wstring::npos);
    EXPECT_EQ(GetErrorInfo(0, error.Receive()), S_FALSE);
}
