// Documents from files, through the real components: what a suite sees.
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/CAppState.h"
#include "siblings/Keelbase.h"
#include "tests/platform/Host.h"
#include "tests/support/TextFolder.h"
#include "tests/xml/OpenDoc.h"
#include "xml/CComSessionMgr.h"

namespace {

using Rows = std::vector<CDOMDoc::Node>;

// Accepts a root of this name with whatever it contains.
std::string const AnyOf =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='suite'/>"
    "</xs:schema>";

std::string const Limits =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' targetNamespace='urn:limits'>"
    "<xs:element name='suite'><xs:complexType>"
    "<xs:attribute name='limit' type='xs:int' use='required'/>"
    "</xs:complexType></xs:element></xs:schema>";

class CDOMDocTest : public testing::Test {
protected:
    std::unique_ptr<OpenDoc> MakeAny() {
        return std::make_unique<OpenDoc>(m_Folder.Write("any.xsd", AnyOf), L"");
    }
    std::unique_ptr<OpenDoc> MakeLimits() {
        return std::make_unique<OpenDoc>(m_Folder.Write("limits.xsd", Limits), L"urn:limits");
    }

    bool Validate(CDOMDoc & doc, std::string_view text) {
        return doc.ValidateDoc(m_Folder.Write("suite.xml", text).c_str());
    }

    // The result of a call, as the code of the _com_error that it throws; 0: none.
    template <typename Call>
    static HRESULT Failure(Call const & call) {
        try {
            call();
        } catch (_com_error const & failure) {
            return failure.Error();
        }
        return 0;
    }

    // The first, so that every document is gone before it ends.
    CComSessionMgr const m_Session;
    TextFolder m_Folder;
};

} // namespace

TEST_F(CDOMDocTest, WorkedExampleComesOutRowByRow) {
    auto const doc = MakeAny();
    ASSERT_TRUE(Validate(
        *doc, "<suite xmlns:p='urn:p' label='Main suite'>\n"
              "  <group name='Timing'>\n"
              "    <test id='t1'/>\n"
              "    <p:check p:name='Bus reset'/>\n"
              "    <item label='' name='Ignored'/>\n"
              "  </group>\n"
              "  <note/>\n"
              "</suite>\n"));
    EXPECT_TRUE(doc->ParseDoc());
    EXPECT_EQ(
        doc->GetNodes(), (Rows{
                             {1, L"Main suite"},
                             {2, L"Timing"},
                             {3, L"test"},
                             {3, L"Bus reset"},
                             {3, L"<<Unknown element>>"},
                             {2, L"note"},
                         }));
}

TEST_F(CDOMDocTest, DeclarationsAreKeys) {
    auto const doc = MakeAny();
    ASSERT_TRUE(Validate(*doc, "<suite xmlns:p='urn:p' label='Main suite'/>"));
    EXPECT_EQ(
        doc->GetAllAttributes(doc->GetRootElement()),
        (CDOMDoc::Attributes{{L"label", L"Main suite"}, {L"p", L"urn:p"}}));
}

TEST_F(CDOMDocTest, FirstAndLastOfANameAreThoseOfTheDocument) {
    auto const doc = MakeAny();
    ASSERT_TRUE(
        Validate(*doc, "<suite xmlns:p='urn:p' xmlns:q='urn:q' q:label='first' p:label='last'/>"));
    auto const root = doc->GetRootElement();
    EXPECT_EQ(doc->GetAttribute(root, L"label"), L"first");
    EXPECT_EQ(doc->GetAttribute(root, L"q:label"), L"");
    EXPECT_EQ(doc->GetAttribute(root, L"absent"), L"");
    EXPECT_EQ(doc->GetAllAttributes(root)[L"label"], L"last");
}

TEST_F(CDOMDocTest, ValidityIsTheResult) {
    auto const doc = MakeLimits();
    EXPECT_TRUE(Validate(*doc, "<p:suite xmlns:p='urn:limits' limit='5'/>"));
    EXPECT_FALSE(Validate(*doc, "<p:suite xmlns:p='urn:limits' limit='many'/>"));
    EXPECT_FALSE(Validate(*doc, "<p:suite xmlns:p='urn:other' limit='5'/>"));
    EXPECT_FALSE(Validate(*doc, "<other/>"));
    EXPECT_FALSE(Validate(*doc, "<p:suite xmlns:p='urn:limits' limit='5'>"));
    EXPECT_TRUE(Validate(*doc, "<p:suite xmlns:p='urn:limits' limit='5'/>"));
    EXPECT_FALSE(doc->DOMError());
}

TEST_F(CDOMDocTest, DocumentThatDoesNotValidateOnLoadIsValidatedAllTheSame) {
    auto const doc = MakeLimits();
    doc->CreateDocument(m_Folder.Name("limits.xsd"), L"urn:limits", false);
    EXPECT_TRUE(Validate(*doc, "<p:suite xmlns:p='urn:limits' limit='5'/>"));
    EXPECT_FALSE(Validate(*doc, "<p:suite xmlns:p='urn:limits' limit='many'/>"));
}

TEST_F(CDOMDocTest, MissingFileIsFalse) {
    auto const doc = MakeLimits();
    EXPECT_FALSE(doc->ValidateDoc(m_Folder.Name("missing.xml").c_str()));
}

TEST_F(CDOMDocTest, NullNameIsFalse) { EXPECT_FALSE(MakeLimits()->ValidateDoc(nullptr)); }

TEST_F(CDOMDocTest, SecondFileTakesThePlaceOfTheFirst) {
    auto const doc = MakeAny();
    EXPECT_TRUE(Validate(*doc, "<suite name='one'/>"));
    EXPECT_TRUE(Validate(*doc, "<suite name='two'/>"));
    EXPECT_TRUE(doc->ParseDoc());
    EXPECT_EQ(doc->GetNodes(), (Rows{{1, L"two"}}));
}

TEST_F(CDOMDocTest, WalkWithoutADocumentIsAnEmptyReference) {
    auto const doc = MakeAny();
    EXPECT_FALSE(doc->GetRootElement());
    EXPECT_EQ(Failure([&] { doc->ParseDoc(); }), E_POINTER);
    EXPECT_TRUE(doc->GetNodes().empty());
}

TEST_F(CDOMDocTest, TextContentLeavesTheWalkWithTheRowsSoFar) {
    auto const doc = MakeAny();
    ASSERT_TRUE(Validate(*doc, "<suite><a/><b>text</b><c/></suite>"));
    EXPECT_EQ(Failure([&] { doc->ParseDoc(); }), E_POINTER);
    EXPECT_EQ(doc->GetNodes(), (Rows{{1, L"suite"}, {2, L"a"}, {2, L"b"}}));
}

TEST_F(CDOMDocTest, CommentLeavesTheWalkToo) {
    auto const doc = MakeAny();
    ASSERT_TRUE(Validate(*doc, "<suite><!-- none --></suite>"));
    EXPECT_EQ(Failure([&] { doc->ParseDoc(); }), E_POINTER);
    long length = 0;
    long count = 0;
    ComPtr<IXMLDOMNodeList> list;
    doc->GetChildList(doc->GetRootElement(), list.Receive(), &length, &count);
    EXPECT_EQ(length, 1);
    EXPECT_EQ(count, 0);
}

TEST_F(CDOMDocTest, CommentsBesideTheRootDoNoHarm) {
    auto const doc = MakeAny();
    ASSERT_TRUE(Validate(*doc, "<!-- one -->\n<suite/>\n<!-- two -->\n"));
    EXPECT_TRUE(doc->ParseDoc());
    EXPECT_EQ(doc->GetNodes(), (Rows{{1, L"suite"}}));
}

TEST_F(CDOMDocTest, DocumentOf256LevelsIsWalked) {
    auto const doc = MakeAny();
    std::string text = "<suite>";
    for (int i = 1; i != 256; ++i)
        text += "<n>";
    for (int i = 1; i != 256; ++i)
        text += "</n>";
    ASSERT_TRUE(Validate(*doc, text + "</suite>"));
    EXPECT_TRUE(doc->ParseDoc());
    ASSERT_EQ(doc->GetNodes().size(), 256u);
    EXPECT_EQ(doc->GetNodes().back().first, 256);
}

TEST_F(CDOMDocTest, SchemaThatCannotBeLoadedIsNamedInTheText) {
    auto const missing = m_Folder.Name("missing.xsd");
    try {
        OpenDoc const doc(missing, L"urn:limits");
        ADD_FAILURE();
    } catch (CQNDOMDocException const & failure) {
        EXPECT_EQ(
            failure.what(), "DOM Doc Create Exception (schema: \"" + *Utf16ToUtf8(missing)
                                + "\", namespace \"urn:limits\") - "
                                + _com_error(E_FAIL).ErrorMessage());
    }
}

TEST_F(CDOMDocTest, OtherSchemaIsBoundInPlaceOfTheFirst) {
    auto const doc = MakeAny();
    EXPECT_TRUE(Validate(*doc, "<suite/>"));
    doc->AttachSchema(m_Folder.Write("limits.xsd", Limits), L"urn:limits");
    EXPECT_FALSE(Validate(*doc, "<suite/>"));
    EXPECT_TRUE(Validate(*doc, "<p:suite xmlns:p='urn:limits' limit='5'/>"));
}

TEST_F(CDOMDocTest, CopySharesItsTableAndItsTexts) {
    auto const doc = MakeAny();
    ASSERT_TRUE(Validate(*doc, "<suite/>"));
    doc->m_Document->AddRef();
    ULONG const before = doc->m_Document->Release();
    alignas(OpenDoc) std::byte storage[sizeof(OpenDoc)];
    auto & copy = *new (storage) OpenDoc(*doc);
    EXPECT_EQ(copy.m_Document.Get(), doc->m_Document.Get());
    EXPECT_EQ(&copy.GetNodes(), &doc->GetNodes());
    EXPECT_EQ(copy.m_Schema, doc->m_Schema);
    EXPECT_EQ(copy.SchemaNamespace(), doc->SchemaNamespace());
    doc->m_Document->AddRef();
    EXPECT_EQ(doc->m_Document->Release(), before + 1);
    copy.ParseDoc();
    EXPECT_EQ(doc->GetNodes(), (Rows{{1, L"suite"}}));
    // Abandoned: its destructor would delete what the source deletes.
    copy.m_Document.Reset();
}

TEST_F(CDOMDocTest, FileWithAPathOutsideOfAsciiIsFound) {
    auto const doc = MakeAny();
    std::ofstream(m_Folder.Path() / u8"Pr\u00FCfung.xml") << "<suite/>";
    std::wstring const name = m_Folder.Path().wstring() + L"/Pr\u00FCfung.xml";
    EXPECT_TRUE(doc->ValidateDoc(name.c_str()));
}
